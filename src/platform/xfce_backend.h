#pragma once

#include "desktop_backend.h"

#include <QDBusConnection>
// Complete, so that D-Bus can match the slot that takes it.
#include <QDBusVariant>
#include <QHash>

// XFCE: xfdesktop's backdrop settings in xfconf, over D-Bus. One picture per monitor and per
// workspace; Quennet sets every workspace of a monitor and reads the first one back.
class XfceBackend : public DesktopBackend
{
    Q_OBJECT

public:
    explicit XfceBackend(const QDBusConnection &bus, QObject *parent = nullptr);

    [[nodiscard]] static bool isXfce(const QString &currentDesktop);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

private Q_SLOTS:
    void propertyChanged(const QString &channel, const QString &property, const QDBusVariant &value);

private:
    // The "last-image" properties of a monitor's workspaces; workspace0 when there are none yet.
    [[nodiscard]] QStringList imageProperties(const QString &connector) const;

    QDBusConnection m_bus;
};
