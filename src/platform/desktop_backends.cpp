#include "desktop_backends.h"

#include "gsettings_backend.h"
#include "x11_backend.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcBackends, "app.quennet.Quennet.Desktop")

using namespace Qt::Literals::StringLiterals;

namespace DesktopBackends
{
DesktopBackend *make(const QString &currentDesktop, const QString &folder, QObject *parent)
{
    DesktopBackend *backend = nullptr;
    if (const auto family = GSettingsBackend::familyOf(currentDesktop);
        family && GSettingsBackend::isAvailable(*family))
        backend = new GSettingsBackend(*family, folder, parent);
    else
        backend = new X11Backend(folder + u"/desktop-x11.json"_s, parent);
    qCInfo(lcBackends) << "Desktop" << currentDesktop << "uses" << backend->name();
    return backend;
}
} // namespace DesktopBackends
