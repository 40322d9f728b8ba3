#pragma once

#include <QString>

class DoNotDisturb;
class QObject;

// Picks the Do Not Disturb watcher for the running desktop, as DesktopBackends picks a backend.
namespace DoNotDisturbWatchers {
// Never null: Plasma's notification server, XFCE's xfconf, then the GNOME family's GSettings
// key by XDG_CURRENT_DESKTOP; else one that never turns on.
[[nodiscard]] DoNotDisturb *make(const QString &currentDesktop, QObject *parent = nullptr);
} // namespace DoNotDisturbWatchers
