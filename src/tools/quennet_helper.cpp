// quennet-helper: keeps the wallpaper Quennet set on every workspace (see WorkspaceKeeper). One
// runs per session: it owns app.quennet.Quennet.helper on the session bus and writes its pid file.

#include "application_folder.h"
#include "atomic_file.h"
#include "clock.h"
#include "desktop_backend.h"
#include "desktop_backends.h"
#include "helper_process.h"
#include "helper_service.h"
#include "logging.h"
#include "placement_records.h"
#include "translations.h"
#include "workspace_keeper.h"
#include "xfce_backend.h"

#include <QDBusConnection>
#include <QFile>
#include <QGuiApplication>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    Translations::install(application);
    QGuiApplication::setApplicationName(u"quennet-helper"_s);

    // Only XFCE keeps a picture per workspace, and only without its single-workspace mode,
    // which can be turned off at any time: everywhere else there is nothing to keep.
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    if (!XfceBackend::isXfce(desktop)) {
        qCInfo(lcSpacesHelper) << "Desktop" << desktop
                               << "shares one picture across workspaces: nothing to do";
        return 0;
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    // One helper per session: a second one leaves it to the first. A helper ended by a signal
    // leaves its pid file behind, which names no helper process from then on.
    if (bus.isConnected() && !bus.registerService(QLatin1StringView(HelperBus::service))) {
        qCInfo(lcSpacesHelper) << "A helper runs already";
        return 0;
    }
    const QString pidFile = HelperBus::pidFilePath();
    if (!writeAtomically(pidFile, QByteArray::number(qint64(::getpid()))))
        qCWarning(lcSpacesHelper) << "Couldn't write" << pidFile;

    const QString folder = applicationFolder();
    DesktopBackend *backend = DesktopBackends::make(desktop, folder, &application);
    WorkspaceKeeper keeper(backend, PlacementRecords(folder), std::make_shared<Clock>());
    QObject service;
    new HelperService(&service, &keeper);
    if (bus.isConnected())
        bus.registerObject(QLatin1StringView(HelperBus::path), &service,
                           QDBusConnection::ExportAdaptors);
    keeper.start();

    const int status = QGuiApplication::exec();
    QFile::remove(pidFile);
    return status;
}
