#pragma once

#include <QString>

class DesktopBackend;
class QObject;

// Picks the backend for the running desktop from XDG_CURRENT_DESKTOP and what is there.
namespace DesktopBackends
{
// folder: where backends keep their files (spanned pictures, what they set). Never null: without
// a better choice the X11 backend is used, which reports failures when asked to set.
[[nodiscard]] DesktopBackend *make(const QString &currentDesktop, const QString &folder,
                                   QObject *parent = nullptr);
} // namespace DesktopBackends
