#pragma once

#include <QString>

class DesktopBackend;
class QObject;

// Picks the backend for the running desktop from XDG_CURRENT_DESKTOP and what is there.
namespace DesktopBackends {
// folder: where backends keep their files (spanned pictures, what they set). Never null: sway
// by its socket, Hyprland by its instance signature, then Plasma, XFCE and the GNOME family by
// XDG_CURRENT_DESKTOP, then xwallpaper outside Wayland; any other Wayland compositor gets the
// desktop portal.
[[nodiscard]] DesktopBackend *make(const QString &currentDesktop, const QString &folder,
                                   QObject *parent = nullptr);
} // namespace DesktopBackends
