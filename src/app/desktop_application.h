#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusVariant>
#include <QVariantMap>
#include <functional>

// The freedesktop Application interface beside the automation on /app/quennet/Quennet: docks,
// app grids and launchers start Quennet and its desktop entry's actions ("Shuffle Now",
// "Settings") through it, which also works with no tray at all.
class DesktopApplication : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    struct Actions {
        std::function<void()> openMain;
        std::function<void()> openSettings;
        std::function<void()> shuffleNow;
    };

    // object: the object registered on the bus at the application's path.
    DesktopApplication(QObject *object, Actions actions);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameter,
                        const QVariantMap &platformData);

private:
    Actions m_actions;
};
