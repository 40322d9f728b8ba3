#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

#include <QDBusConnection>

// The last resort: the desktop portal's Wallpaper interface. One picture for all screens, no
// way to read it back, and the desktop may ask the user first; the answer is what this backend
// last had accepted.
class PortalBackend : public DesktopBackend
{
    Q_OBJECT

public:
    PortalBackend(const QDBusConnection &bus, const QString &stateFile, QObject *parent = nullptr);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

private:
    QDBusConnection m_bus;
    ShownPictures m_shown;
};
