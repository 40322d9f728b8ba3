#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

#include <QDBusConnection>
#include <chrono>

// The last resort: the desktop portal's Wallpaper interface. One picture for all screens, no
// way to read it back, and the desktop may ask the user first; the answer is what this backend
// last had accepted.
class PortalBackend : public DesktopBackend {
    Q_OBJECT

public:
    PortalBackend(QDBusConnection bus, const QString &stateFile, QObject *parent = nullptr);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

    // How long the desktop, and the user it may ask, may take to answer.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

private:
    QDBusConnection m_bus;
    ShownPictures m_shown;
    std::chrono::milliseconds m_timeout = std::chrono::minutes(5);
};
