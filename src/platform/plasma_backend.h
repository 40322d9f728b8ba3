#pragma once

#include "desktop_backend.h"

#include <QDBusConnection>

// KDE Plasma: a script run by the shell (org.kde.PlasmaShell evaluateScript) sets and reads the
// image of each screen's desktop. Plasma numbers screens its own way, so screens are matched
// by their geometry. Plasma tells no one when its wallpaper changes: outside changes show at
// the next refresh.
class PlasmaBackend : public DesktopBackend
{
    Q_OBJECT

public:
    explicit PlasmaBackend(const QDBusConnection &bus, QObject *parent = nullptr);

    [[nodiscard]] static bool isPlasma(const QString &currentDesktop);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

private:
    QDBusConnection m_bus;
};
