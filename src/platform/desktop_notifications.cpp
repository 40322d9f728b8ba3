#include "desktop_notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>

using namespace Qt::Literals::StringLiterals;

namespace {
Q_LOGGING_CATEGORY(lcNotifications, "app.quennet.Quennet.Notifications")

const auto service = u"org.freedesktop.Notifications"_s;
const auto path = u"/org/freedesktop/Notifications"_s;
const auto actionKey = u"fix"_s;
} // namespace

DesktopNotifications::DesktopNotifications(const QDBusConnection &bus, std::function<bool()> seen,
                                           QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_seen(std::move(seen))
{
    m_bus.connect(service, path, service, u"ActionInvoked"_s, this,
                  SLOT(actionInvoked(uint, QString)));
    m_bus.connect(service, path, service, u"NotificationClosed"_s, this, SLOT(closed(uint, uint)));
}

void DesktopNotifications::notify(Notification notification)
{
    if (m_seen())
        return;
    if (m_sending.contains(notification.topic)) {
        m_sending[notification.topic] = std::move(notification);
        return;
    }
    send(std::move(notification));
}

void DesktopNotifications::send(Notification notification)
{
    m_sending.insert(notification.topic, std::nullopt);
    auto message = QDBusMessage::createMethodCall(service, path, service, u"Notify"_s);
    const uint replaces = m_shown.value(notification.topic);
    // The body may be read as markup: what the shop wrote stays text.
    message << u"Quennet"_s << replaces << u"app.quennet.Quennet"_s << notification.title
            << notification.body.toHtmlEscaped()
            << QStringList { actionKey, notification.actionLabel }
            << QVariantMap { { u"desktop-entry"_s, u"app.quennet.Quennet"_s },
                             { u"urgency"_s, QVariant::fromValue(uchar(1)) } }
            << -1;
    auto *call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, topic = notification.topic, action = std::move(notification.action)](
                QDBusPendingCallWatcher *watcher) {
                watcher->deleteLater();
                const QDBusPendingReply<uint> reply = *watcher;
                if (reply.isError()) {
                    qCInfo(lcNotifications) << "No notification shown:" << reply.error().message();
                } else {
                    m_actions.remove(m_shown.value(topic));
                    m_shown.insert(topic, reply.value());
                    m_actions.insert(reply.value(), action);
                }
                if (auto next = m_sending.take(topic))
                    send(std::move(*next));
            });
}

void DesktopNotifications::actionInvoked(uint id, const QString &key)
{
    // The server sends every client's actions to every client: only ours count.
    const auto action = m_actions.constFind(id);
    if (key == actionKey && action != m_actions.cend() && *action)
        (*action)();
}

void DesktopNotifications::closed(uint id, uint)
{
    if (!m_actions.remove(id))
        return;
    for (auto it = m_shown.begin(); it != m_shown.end(); ++it) {
        if (it.value() == id) {
            m_shown.erase(it);
            break;
        }
    }
}
