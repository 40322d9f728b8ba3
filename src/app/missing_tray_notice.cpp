#include "missing_tray_notice.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {
Q_LOGGING_CATEGORY(lcTray, "app.quennet.Quennet.Tray")

const auto service = u"org.freedesktop.Notifications"_s;
const auto path = u"/org/freedesktop/Notifications"_s;
} // namespace

MissingTrayNotice::MissingTrayNotice(const QDBusConnection &bus, Hooks hooks, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_hooks(std::move(hooks))
{
    m_bus.connect(service, path, service, u"ActionInvoked"_s, this,
                  SLOT(actionInvoked(uint, QString)));
}

void MissingTrayNotice::check(std::chrono::milliseconds grace)
{
    QTimer::singleShot(grace, this, [this] {
        if (!m_hooks.hostAvailable())
            notify();
    });
}

void MissingTrayNotice::notify()
{
    qCInfo(lcTray) << "No tray host: saying so";
    auto message = QDBusMessage::createMethodCall(service, path, service, u"Notify"_s);
    message << u"Quennet"_s << uint(0) << u"app.quennet.Quennet"_s << u"Quennet is running"_s
            << u"This desktop has no tray for its icon. Open Quennet from your apps to use it."_s
            << QStringList{u"default"_s, u"Open Quennet"_s}
            << QVariantMap{{u"desktop-entry"_s, u"app.quennet.Quennet"_s}} << -1;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError())
            qCWarning(lcTray) << "Couldn't say the tray is missing:" << reply.error().message();
        else
            m_id = reply.value();
    });
}

void MissingTrayNotice::actionInvoked(uint id, const QString &action)
{
    if (m_id != 0 && id == m_id && action == "default"_L1)
        m_hooks.openMain();
}
