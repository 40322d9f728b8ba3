#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

// Without a tray host (GNOME without its tray extension) the icon shows nowhere, and a start at
// login would look like no start at all. Shortly after login, if no host has turned up, this says
// so once with a desktop notification whose action opens the main window.
class MissingTrayNotice : public QObject
{
    Q_OBJECT

public:
    struct Hooks {
        std::function<bool()> hostAvailable;
        std::function<void()> openMain;
    };

    MissingTrayNotice(const QDBusConnection &bus, Hooks hooks, QObject *parent = nullptr);

    // Hosts start with the session too: they get this long to appear.
    void check(std::chrono::milliseconds grace);

private Q_SLOTS:
    void actionInvoked(uint id, const QString &action);

private:
    void notify();

    QDBusConnection m_bus;
    Hooks m_hooks;
    uint m_id = 0;
};
