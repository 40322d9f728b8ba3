// A stand-in for the desktop portal's colour scheme (org.freedesktop.appearance color-scheme) on
// the session bus, for the demo and whole-program tests where no desktop runs one. The scheme is
// read from a file ("dark" or "light") and followed as the file changes, with the portal's
// SettingChanged signal; any other setting is not found, as on a desktop that lacks it.
//
//   quennet-colour-scheme FILE
#include "bus_stand_in.h"

#include <QCoreApplication>
#include <QDBusVariant>
#include <QFile>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        qCritical("usage: quennet-colour-scheme FILE");
        return 2;
    }
    // 1 prefers dark, 2 prefers light.
    const auto read = [file = QString::fromLocal8Bit(argv[1])] {
        QFile scheme(file);
        return scheme.open(QIODevice::ReadOnly) && scheme.readAll().trimmed() == "dark" ? 1u : 2u;
    };
    uint scheme = read();
    BusStandIn portal(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        [&scheme](const QDBusMessage &call) {
            const QVariantList arguments = call.arguments();
            if (call.member() != "Read"_L1)
                return QDBusMessage();
            if (arguments.value(0) != u"org.freedesktop.appearance"_s
                || arguments.value(1) != u"color-scheme"_s)
                return call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                                             u"Requested setting not found"_s);
            // Read wraps the value in one more variant than the signal does.
            return call.createReply(
                QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)))));
        });
    if (!portal.start()) {
        qCritical("quennet-colour-scheme: the portal's name is taken");
        return 1;
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const uint now = read();
        if (now == scheme)
            return;
        scheme = now;
        portal.emitSignal(u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
                          { u"org.freedesktop.appearance"_s, u"color-scheme"_s,
                            QVariant::fromValue(QDBusVariant(scheme)) });
    });
    timer.start(200);
    return QCoreApplication::exec();
}
