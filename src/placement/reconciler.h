#pragma once

#include "download_cache.h"
#include "owned_pack.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <optional>

class Displays;
class DownloadThread;
class Shop;
class WallpaperRequests;
class WallpaperSetter;

// Brings the displays up to date after each check of the library: when the shop has replaced a
// file that a display shows (same colourway and edition, new file id), the new file is
// downloaded in the background, the displays move over to it, and the old file goes under the
// keep rule. A failed update leaves the old file where it is.
class Reconciler : public QObject {
    Q_OBJECT

public:
    struct Services {
        Shop *shop = nullptr;
        Displays *displays = nullptr;
        WallpaperSetter *setter = nullptr;
        WallpaperRequests *requests = nullptr;
        DownloadThread *thread = nullptr; // where old files are deleted
    };

    explicit Reconciler(Services services, QObject *parent = nullptr);

    // Runs a pass over the given packs now, or once the pass under way has ended.
    void request(QMap<QString, OwnedPack> owned);

Q_SIGNALS:
    // A pass ended with nothing more asked for.
    void settled();

private:
    // An installed file and the file that has replaced it.
    struct Replacement {
        DownloadCache::InstalledFile old;
        WallpaperFile current;
    };

    static QCoro::Task<> run(QPointer<Reconciler> self, QMap<QString, OwnedPack> owned);
    static QCoro::Task<> update(QPointer<Reconciler> self, Replacement replacement);
    [[nodiscard]] QList<Replacement> replacements(const QMap<QString, OwnedPack> &owned) const;
    // The attached displays whose records name this file's colourway and edition.
    [[nodiscard]] QStringList showing(const WallpaperFile &file) const;

    Services m_services;
    bool m_running = false;
    std::optional<QMap<QString, OwnedPack>> m_requested;
};
