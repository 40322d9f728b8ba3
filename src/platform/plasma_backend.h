#pragma once

#include "desktop_backend.h"

#include <QDBusConnection>
#include <QHash>

// KDE Plasma: a script run by the shell (org.kde.PlasmaShell evaluateScript) sets and reads the
// image of each screen's desktop. Plasma numbers screens its own way, so screens are matched
// by their geometry. What each shows is read back without waiting, at start, after each set, and
// when the screens change or Quennet becomes active again (Plasma tells no one when its wallpaper
// changes); picture() answers from the last reading.
class PlasmaBackend : public DesktopBackend {
    Q_OBJECT

public:
    explicit PlasmaBackend(QDBusConnection bus, QObject *parent = nullptr);

    [[nodiscard]] static bool isPlasma(const QString &currentDesktop);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;
    // Emits picturesChanged when the answer differs from the last one.
    QCoro::Task<> readBack() override;

private:
    QDBusConnection m_bus;
    // The image of each desktop by its screen's geometry; empty for another kind of wallpaper.
    QHash<QString, QString> m_shown;
};
