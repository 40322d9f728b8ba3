// A stand-in for the desktop portal's colour scheme (org.freedesktop.appearance color-scheme) on
// the session bus, for the demo and whole-program tests where no desktop runs one. The scheme is
// read from a file ("dark" or "light") and followed as the file changes, with the portal's
// SettingChanged signal; any other setting is not found, as on a desktop that lacks it.
//
//   quennet-colour-scheme FILE
#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class Portal
    : public QObject
    , protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(QString file)
        : m_file(std::move(file))
    {
        m_scheme = read();
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, &Portal::follow);
        timer->start(200);
    }

public Q_SLOTS:
    // Read wraps the value in one more variant than the signal does.
    QDBusVariant Read(const QString &space, const QString &key)
    {
        if (space != "org.freedesktop.appearance"_L1 || key != "color-scheme"_L1) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                           u"Requested setting not found"_s);
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme)));
    }

private:
    // 1 prefers dark, 2 prefers light.
    uint read() const
    {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == "dark" ? 1 : 2;
    }

    void follow()
    {
        const uint scheme = read();
        if (scheme == m_scheme)
            return;
        m_scheme = scheme;
        auto signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s
               << QVariant::fromValue(QDBusVariant(scheme));
        QDBusConnection::sessionBus().send(signal);
    }

    QString m_file;
    uint m_scheme = 0;
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        qCritical("usage: quennet-colour-scheme FILE");
        return 2;
    }
    Portal portal(QString::fromLocal8Bit(argv[1]));
    auto bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                            QDBusConnection::ExportAllSlots)
        || !bus.registerService(u"org.freedesktop.portal.Desktop"_s)) {
        qCritical("quennet-colour-scheme: the portal's name is taken");
        return 1;
    }
    return QCoreApplication::exec();
}

#include "colour_scheme_portal.moc"
