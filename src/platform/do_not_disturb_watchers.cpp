#include "do_not_disturb_watchers.h"

#include "dbus_do_not_disturb.h"
#include "gnome_backend.h"
#include "gsettings_do_not_disturb.h"
#include "logging.h"
#include "plasma_backend.h"
#include "xfce_backend.h"

namespace DoNotDisturbWatchers {
DoNotDisturb *make(const QString &currentDesktop, QObject *parent)
{
    DoNotDisturb *watcher = nullptr;
    if (PlasmaBackend::isPlasma(currentDesktop)) {
        watcher = new NotificationsDoNotDisturb(QDBusConnection::sessionBus(), parent);
    } else if (XfceBackend::isXfce(currentDesktop)) {
        watcher = new XfconfDoNotDisturb(QDBusConnection::sessionBus(), parent);
    } else if (const auto family = GnomeBackend::familyOf(currentDesktop)) {
        using Family = GSettingsDoNotDisturb::Family;
        const Family settings = *family == GnomeBackend::Family::Cinnamon ? Family::Cinnamon
            : *family == GnomeBackend::Family::Mate                       ? Family::Mate
                                                                          : Family::Gnome;
        if (GSettingsDoNotDisturb::isAvailable(settings))
            watcher = new GSettingsDoNotDisturb(settings, parent);
    }
    if (!watcher)
        watcher = new NoDoNotDisturb(parent);
    qCInfo(lcDoNotDisturb) << "Desktop" << currentDesktop << "keeps Do Not Disturb in"
                           << watcher->name();
    return watcher;
}
} // namespace DoNotDisturbWatchers
