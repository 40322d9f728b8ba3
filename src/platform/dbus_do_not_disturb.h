#pragma once

#include "do_not_disturb.h"

#include <QDBusConnection>
// Complete, so that D-Bus can match the slots that take them.
#include <QDBusMessage>
#include <QDBusVariant>

// KDE Plasma's Do Not Disturb: the Inhibited property of the notification server
// (org.freedesktop.Notifications on /org/freedesktop/Notifications). Off while no server runs.
class NotificationsDoNotDisturb : public DoNotDisturb {
    Q_OBJECT

public:
    explicit NotificationsDoNotDisturb(QDBusConnection bus, QObject *parent = nullptr);

    [[nodiscard]] QString name() const override;

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated);

private:
    void read();

    QDBusConnection m_bus;
};

// XFCE's Do Not Disturb: xfce4-notifyd's /do-not-disturb in xfconf, over D-Bus.
class XfconfDoNotDisturb : public DoNotDisturb {
    Q_OBJECT

public:
    explicit XfconfDoNotDisturb(QDBusConnection bus, QObject *parent = nullptr);

    [[nodiscard]] QString name() const override;

private Q_SLOTS:
    void propertySignal(const QDBusMessage &message);

private:
    void read();

    QDBusConnection m_bus;
};
