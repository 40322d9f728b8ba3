#pragma once

#include "download_cache.h"
#include "owned_pack.h"
#include "placement_records.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <functional>

class DownloadThread;
class WallpaperRequests;
class WallpaperTarget;

// Brings the displays up to date after a refresh: when the shop has replaced a file that a
// display shows (same colourway and edition, new file id), the new file is downloaded in the
// background, the displays move over to it, and the old file goes under the keep rule. A failed
// update leaves the old file where it is.
class Reconciler : public QObject {
    Q_OBJECT

public:
    using Keep = std::function<bool(const QString &path)>;

    Reconciler(DownloadCache cache, WallpaperTarget *target, PlacementRecords records,
               WallpaperRequests *requests, DownloadThread *thread, Keep keep,
               QObject *parent = nullptr);

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

    DownloadCache m_cache;
    WallpaperTarget *m_target;
    PlacementRecords m_records;
    QPointer<WallpaperRequests> m_requests;
    QPointer<DownloadThread> m_thread;
    Keep m_keep;
    bool m_running = false;
    std::optional<QMap<QString, OwnedPack>> m_requested;
};
