#include "desktop_backends.h"

#include "gnome_backend.h"
#include "hyprland_backend.h"
#include "logging.h"
#include "plasma_backend.h"
#include "portal_backend.h"
#include "sway_backend.h"
#include "x11_backend.h"
#include "xfce_backend.h"

#include <QDBusConnection>

using namespace Qt::Literals::StringLiterals;

namespace DesktopBackends {
DesktopBackend *make(const QString &currentDesktop, const QString &folder, QObject *parent)
{
    DesktopBackend *backend = nullptr;
    if (const QString sway = qEnvironmentVariable("SWAYSOCK"); !sway.isEmpty())
        backend = new SwayBackend(sway, folder + u"/desktop-sway.json"_s, parent);
    else if (const QString hyprland = HyprlandBackend::instanceFolder(); !hyprland.isEmpty())
        backend = new HyprlandBackend(hyprland, folder + u"/desktop-hyprland.json"_s, parent);
    else if (PlasmaBackend::isPlasma(currentDesktop))
        backend = new PlasmaBackend(QDBusConnection::sessionBus(), parent);
    else if (XfceBackend::isXfce(currentDesktop))
        backend = new XfceBackend(QDBusConnection::sessionBus(), parent);
    else if (const auto family = GnomeBackend::familyOf(currentDesktop);
             family && GnomeBackend::isAvailable(*family))
        backend = new GnomeBackend(*family, folder, parent);
    // XWayland sets DISPLAY too, and a picture on its root window is seen by no one.
    else if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        backend = new X11Backend(folder + u"/desktop-x11.json"_s, parent);
    else
        backend = new PortalBackend(QDBusConnection::sessionBus(),
                                    folder + u"/desktop-portal.json"_s, parent);
    qCInfo(lcDesktop) << "Desktop" << currentDesktop << "uses" << backend->name();
    return backend;
}
} // namespace DesktopBackends
