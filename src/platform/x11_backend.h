#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

class X11RootWindow;

// Plain X11 window managers: xwallpaper draws each monitor's part of the root window. X cannot
// say which file a background came from, so the answer is what this backend set, for as long as
// the root background still looks the way it left it.
class X11Backend : public DesktopBackend {
    Q_OBJECT

public:
    // stateFile: where what was set is kept across restarts.
    explicit X11Backend(const QString &stateFile, QObject *parent = nullptr);
    ~X11Backend() override;

    // False without an X server or without xwallpaper.
    [[nodiscard]] static bool isAvailable();

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

private:
    // Forgets the screens whose part of the background changed since this backend drew it.
    void checkBackground();
    void remember(const QList<DesktopScreen> &screens);

    X11RootWindow *m_root = nullptr;
    ShownPictures m_shown;
    // Our own xwallpaper's drawing is not someone else's while it runs.
    int m_setting = 0;
};
