#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>

#include <functional>
#include <optional>

// Tells the user of a failure through the desktop's notifications (org.freedesktop.Notifications)
// when no window of Quennet shows it. Each notification has one action, the one that fixes it;
// a newer notification of the same topic replaces the older.
class DesktopNotifications : public QObject
{
    Q_OBJECT

public:
    struct Notification {
        QString topic; // one notification per topic at a time
        QString title;
        QString body; // plain text
        QString actionLabel;
        std::function<void()> action;
    };

    // seen: whether a window of Quennet shows the user what a notification would say.
    DesktopNotifications(const QDBusConnection &bus, std::function<bool()> seen,
                         QObject *parent = nullptr);

    void notify(Notification notification);

private Q_SLOTS:
    void actionInvoked(uint id, const QString &key);
    void closed(uint id, uint reason);

private:
    void send(Notification notification);

    QDBusConnection m_bus;
    std::function<bool()> m_seen;
    QHash<QString, uint> m_shown;                     // topic → id
    QHash<uint, std::function<void()>> m_actions;     // id → action
    // A topic's next notification waits for the id of the one being shown, to replace it.
    QHash<QString, std::optional<Notification>> m_sending;
};
