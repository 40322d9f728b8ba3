#include "desktop_backends.h"

#include "gnome_backend.h"
#include "plasma_backend.h"
#include "x11_backend.h"
#include "xfce_backend.h"

#include <QDBusConnection>

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcBackends, "app.quennet.Quennet.Desktop")

using namespace Qt::Literals::StringLiterals;

namespace DesktopBackends
{
DesktopBackend *make(const QString &currentDesktop, const QString &folder, QObject *parent)
{
    DesktopBackend *backend = nullptr;
    if (PlasmaBackend::isPlasma(currentDesktop))
        backend = new PlasmaBackend(QDBusConnection::sessionBus(), parent);
    else if (XfceBackend::isXfce(currentDesktop))
        backend = new XfceBackend(QDBusConnection::sessionBus(), parent);
    else if (const auto family = GnomeBackend::familyOf(currentDesktop);
        family && GnomeBackend::isAvailable(*family))
        backend = new GnomeBackend(*family, folder, parent);
    else
        backend = new X11Backend(folder + u"/desktop-x11.json"_s, parent);
    qCInfo(lcBackends) << "Desktop" << currentDesktop << "uses" << backend->name();
    return backend;
}
} // namespace DesktopBackends
