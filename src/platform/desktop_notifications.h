#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <functional>
#include <optional>

// Tells the user what no window of Quennet shows through the desktop's notifications: the
// notification server, or inside a sandbox the desktop portal. Each notification has one action,
// the one that fixes it, also taken by a click on the notification itself; a newer notification
// of the same topic replaces the older.
class DesktopNotifications : public QObject {
    Q_OBJECT

public:
    enum class Channel {
        Server, // org.freedesktop.Notifications
        Portal, // org.freedesktop.portal.Notification, the way out of a sandbox
    };

    struct Notification {
        QString topic; // one notification per topic at a time
        QString title;
        QString body; // plain text
        QString actionLabel;
        std::function<void()> action;
    };

    // seen: whether a window of Quennet shows the user what a notification would say.
    DesktopNotifications(QDBusConnection bus, Channel channel, std::function<bool()> seen,
                         QObject *parent = nullptr);

    // The portal inside a Flatpak sandbox, where the server is out of reach; else the server.
    static Channel channelHere();

    void notify(Notification notification);

private Q_SLOTS:
    void actionInvoked(uint id, const QString &key);
    void closed(uint id, uint reason);
    void portalActionInvoked(const QString &topic, const QString &key,
                             const QVariantList &parameter);

private:
    void sendToServer(Notification notification);
    void sendToPortal(const Notification &notification);
    void run(const QString &topic);

    QDBusConnection m_bus;
    Channel m_channel;
    std::function<bool()> m_seen;
    QHash<QString, std::function<void()>> m_actions; // topic → action of the one shown
    QHash<QString, uint> m_shown; // topic → the server's id
    // A topic's next notification waits for the server's id of the one being sent, to replace it.
    QHash<QString, std::optional<Notification>> m_sending;
};
