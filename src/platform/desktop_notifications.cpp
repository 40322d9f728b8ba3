#include "desktop_notifications.h"

#include "logging.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto server = u"org.freedesktop.Notifications"_s;
const auto serverPath = u"/org/freedesktop/Notifications"_s;
const auto portal = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto portalInterface = u"org.freedesktop.portal.Notification"_s;
// The server's key for a click on the notification itself.
const auto defaultKey = u"default"_s;
const auto actionKey = u"fix"_s;

bool isOurs(const QString &key)
{
    return key == actionKey || key == defaultKey;
}
} // namespace

DesktopNotifications::DesktopNotifications(QDBusConnection bus, Channel channel,
                                           std::function<bool()> seen, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_channel(channel)
    , m_seen(std::move(seen))
{
    if (m_channel == Channel::Portal) {
        m_bus.connect(portal, portalPath, portalInterface, u"ActionInvoked"_s, this,
                      SLOT(portalActionInvoked(QString, QString, QVariantList)));
        return;
    }
    m_bus.connect(server, serverPath, server, u"ActionInvoked"_s, this,
                  SLOT(actionInvoked(uint, QString)));
    m_bus.connect(server, serverPath, server, u"NotificationClosed"_s, this,
                  SLOT(closed(uint, uint)));
}

DesktopNotifications::Channel DesktopNotifications::channelHere()
{
    return QFileInfo::exists(u"/.flatpak-info"_s) ? Channel::Portal : Channel::Server;
}

void DesktopNotifications::notify(Notification notification)
{
    if (m_seen())
        return;
    if (m_channel == Channel::Portal) {
        sendToPortal(notification);
    } else if (m_sending.contains(notification.topic)) {
        m_sending[notification.topic] = std::move(notification);
    } else {
        sendToServer(std::move(notification));
    }
}

void DesktopNotifications::sendToServer(Notification notification)
{
    m_sending.insert(notification.topic, std::nullopt);
    auto message = QDBusMessage::createMethodCall(server, serverPath, server, u"Notify"_s);
    const uint replaces = m_shown.value(notification.topic);
    // The body may be read as markup: what the shop wrote stays text.
    message << u"Quennet"_s << replaces << u"app.quennet.Quennet"_s << notification.title
            << notification.body.toHtmlEscaped()
            << QStringList { defaultKey, notification.actionLabel, actionKey,
                             notification.actionLabel }
            << QVariantMap { { u"desktop-entry"_s, u"app.quennet.Quennet"_s },
                             { u"urgency"_s, QVariant::fromValue(uchar(1)) } }
            << -1;
    auto *call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, topic = notification.topic,
             action = std::move(notification.action)](QDBusPendingCallWatcher *watcher) {
                watcher->deleteLater();
                const QDBusPendingReply<uint> reply = *watcher;
                if (reply.isError()) {
                    qCInfo(lcNotifications) << "No notification shown:" << reply.error().message();
                } else {
                    m_shown.insert(topic, reply.value());
                    m_actions.insert(topic, action);
                }
                if (auto next = m_sending.take(topic))
                    sendToServer(std::move(*next));
            });
}

void DesktopNotifications::sendToPortal(const Notification &notification)
{
    // The portal knows our notifications by our own ids, so the topic replaces by itself.
    m_actions.insert(notification.topic, notification.action);
    QDBusArgument buttons;
    buttons.beginArray(qMetaTypeId<QVariantMap>());
    buttons << QVariantMap { { u"label"_s, notification.actionLabel }, { u"action"_s, actionKey } };
    buttons.endArray();
    auto message =
        QDBusMessage::createMethodCall(portal, portalPath, portalInterface, u"AddNotification"_s);
    message << notification.topic
            << QVariantMap { { u"title"_s, notification.title },
                             { u"body"_s, notification.body },
                             { u"priority"_s, u"normal"_s },
                             { u"default-action"_s, actionKey },
                             { u"buttons"_s, QVariant::fromValue(buttons) } };
    auto *call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [](QDBusPendingCallWatcher *watcher) {
        watcher->deleteLater();
        if (watcher->isError())
            qCInfo(lcNotifications) << "No notification shown:" << watcher->error().message();
    });
}

void DesktopNotifications::run(const QString &topic)
{
    if (const auto action = m_actions.constFind(topic); action != m_actions.cend() && *action)
        (*action)();
}

void DesktopNotifications::actionInvoked(uint id, const QString &key)
{
    // The server sends every client's actions to every client: only ours count.
    if (const QString topic = m_shown.key(id); isOurs(key) && !topic.isEmpty())
        run(topic);
}

void DesktopNotifications::closed(uint id, uint /*reason*/)
{
    if (const QString topic = m_shown.key(id); !topic.isEmpty()) {
        m_shown.remove(topic);
        m_actions.remove(topic);
    }
}

void DesktopNotifications::portalActionInvoked(const QString &topic, const QString &key,
                                               const QVariantList & /*parameter*/)
{
    if (isOurs(key))
        run(topic);
}
