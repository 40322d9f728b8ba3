#pragma once

#include "api_client.h"
#include "download_cache.h"
#include "notice.h"
#include "placement.h"
#include "shop_cache.h"
#include "shop_contents.h"
#include "transfers.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <functional>
#include <memory>

class Account;
class ArchiveSaver;
class AsyncMutex;
class CancelToken;
class Clock;
class Defaults;
class DownloadThread;
class Keychain;
class LibraryRefresher;
class PeriodicCheck;
class ShownFiles;

using OwnedPacks = QMap<QString, OwnedPack>;
using DownloadProgress = QHash<QString, double>;
using SeenColourways = QMap<QString, QSet<QString>>;
using OptionalNotice = std::optional<Notice>;

// The one main-thread object that holds what the user may use: the catalogue, the library, which
// files are on disk, what is downloading and how far, and the notice for the panel. It refreshes
// the library (at start-up from its disk copy first) and makes wallpaper files local on demand.
class Shop : public QObject {
    Q_OBJECT
    Q_PROPERTY(Status status READ status NOTIFY stateChanged)
    Q_PROPERTY(QString stateMessage READ stateMessage NOTIFY stateChanged)
    Q_PROPERTY(QList<Pack> packs READ packs NOTIFY contentsChanged)
    Q_PROPERTY(QList<Phase> phases READ phases NOTIFY contentsChanged)
    Q_PROPERTY(OwnedPacks owned READ owned NOTIFY contentsChanged)
    Q_PROPERTY(OwnedPacks bought READ bought NOTIFY contentsChanged)
    Q_PROPERTY(OwnedPacks free READ freePacks NOTIFY contentsChanged)
    Q_PROPERTY(DownloadProgress progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool canRemoveDownloads READ canRemoveDownloads NOTIFY progressChanged)
    Q_PROPERTY(QSet<QString> downloaded READ downloaded NOTIFY downloadedChanged)
    Q_PROPERTY(QDateTime lastChecked READ lastChecked NOTIFY lastCheckedChanged)
    Q_PROPERTY(SeenColourways seen READ seen NOTIFY seenChanged)
    Q_PROPERTY(OptionalNotice message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool showsUnreleased READ showsUnreleased WRITE setShowsUnreleased NOTIFY
                   showsUnreleasedChanged)

public:
    enum class Status { Loading, Ready, Failed };
    Q_ENUM(Status)

    // An edition whose file cannot be had yet, such as one of a pack not released.
    class Unavailable : public Error {
    public:
        [[nodiscard]] QString description() const override;
        bool operator==(const Unavailable & /*other*/) const { return true; }
    };

    // A colourway of a pack the user does not have.
    class NotInPacks : public Error {
    public:
        [[nodiscard]] QString description() const override;
        bool operator==(const NotInPacks & /*other*/) const { return true; }
    };

    // What the store works with; the composition root fills it in.
    struct Services {
        std::function<APIClient()> api;
        Account *account = nullptr;
        Keychain *keychain = nullptr;
        Defaults *defaults = nullptr;
        DownloadThread *downloads = nullptr;
        ShownFiles *shown = nullptr; // the keep rule's displays
        std::shared_ptr<Clock> clock;
        QString folder; // the application folder
        QString downloadsFolder; // QStandardPaths::DownloadLocation
    };

    explicit Shop(Services services, QObject *parent = nullptr);
    ~Shop() override;

    // Shows the disk copy at once, then refreshes from the shop and starts the six-hourly check.
    QCoro::Task<> start();
    // Fetches catalogue and library. Never throws: a failure is worded in the state or message,
    // and its sentence returned; none when the refresh went well.
    QCoro::Task<std::optional<QString>> refresh();
    // The computer woke from sleep: the six-hourly check looks at its due moment again.
    void systemWoke();

    // The verified local copy of a file, downloaded first when needed; when it arrives unlike its
    // digest, once more after refreshing the library. Throws the download's failure after
    // wording it in the message.
    [[nodiscard]] QCoro::Task<QString> localFile(WallpaperFile file);
    // Saves the pack's desktop files into Downloads. Never throws: the message says how it went.
    QCoro::Task<> saveDesktopFiles(QString pack);
    // The user has now seen every current colourway of the pack.
    void markSeen(const QString &pack);
    // The edition to set when the caller wants one; none when the colourway has no file.
    [[nodiscard]] std::optional<Edition> editionFor(const QString &pack, const QString &colourway,
                                                    Edition wanted) const;
    // The file of a colourway's edition, or of the nearest one there is. Throws NotInPacks or
    // Unavailable.
    [[nodiscard]] WallpaperFile wallpaperFile(const QString &pack, const QString &colourway,
                                              Edition wanted) const;
    // The file a recorded placement names now; none when it is no longer in the user's packs.
    [[nodiscard]] std::optional<WallpaperFile> fileFor(const Placement &placement) const;
    // Deletes downloads but what the displays show and what is about to be set. Does nothing
    // while a download runs.
    QCoro::Task<> removeDownloads();
    void dismissMessage();

    [[nodiscard]] Status status() const { return m_status; }
    [[nodiscard]] QString stateMessage() const { return m_stateMessage; }
    // Failed because the shop could not be reached at all, rather than for what it answered.
    [[nodiscard]] bool isUnreachable() const { return m_status == Status::Failed && m_unreachable; }
    [[nodiscard]] QList<Pack> packs() const { return m_contents.packs; }
    [[nodiscard]] QList<Phase> phases() const { return m_contents.phases; }
    [[nodiscard]] OwnedPacks owned() const { return m_contents.owned; }
    [[nodiscard]] OwnedPacks bought() const { return m_contents.bought; }
    [[nodiscard]] OwnedPacks freePacks() const { return m_contents.free; }
    [[nodiscard]] DownloadProgress progress() const;
    [[nodiscard]] bool canRemoveDownloads() const;
    [[nodiscard]] QSet<QString> downloaded() const { return m_downloaded; }
    [[nodiscard]] QDateTime lastChecked() const { return m_lastChecked; }
    [[nodiscard]] SeenColourways seen() const { return m_seen; }
    [[nodiscard]] OptionalNotice message() const { return m_message; }
    [[nodiscard]] bool showsUnreleased() const { return m_showsUnreleased; }
    // Changes nothing, and says so on the notice line, when the setting couldn't be saved.
    void setShowsUnreleased(bool shows);

    [[nodiscard]] const DownloadCache &cache() const { return m_cache; }
    [[nodiscard]] Transfers *transfers() const { return m_transfers; }

Q_SIGNALS:
    void stateChanged();
    void contentsChanged();
    void progressChanged();
    void downloadedChanged();
    void lastCheckedChanged();
    void seenChanged();
    void messageChanged();
    void showsUnreleasedChanged();
    // A check of the library went well: it names the newest files.
    void libraryChecked();

private:
    static QCoro::Task<> start(QPointer<Shop> self);
    static QCoro::Task<> sessionChanged(QPointer<Shop> self);
    static QCoro::Task<std::optional<QString>> refresh(QPointer<Shop> self,
                                                       std::shared_ptr<AsyncMutex> mutex,
                                                       std::shared_ptr<CancelToken> cancel);
    static QCoro::Task<> saveDesktopFiles(QPointer<Shop> self, QString pack);
    // After a download arrived unlike its digest: the file as the refreshed library names it,
    // when the shop changed it.
    static QCoro::Task<std::optional<Transfers::Download>> renewed(QPointer<Shop> self,
                                                                   WallpaperFile file);
    [[nodiscard]] Transfers::Download download(const WallpaperFile &file) const;

    void apply(const Cache::Saved &saved);
    void setContents(ShopContents contents);
    void setState(Status status, const QString &message = {});
    void setMessage(OptionalNotice message);
    void showProgress();
    void rescanDownloaded();
    [[nodiscard]] bool keeps(const QString &path) const;
    [[nodiscard]] QString displayName(const WallpaperFile &file) const;

    Services m_services;
    DownloadCache m_cache;
    std::shared_ptr<CancelToken> m_cancel;
    std::shared_ptr<AsyncMutex> m_refreshing;
    Transfers *m_transfers;
    LibraryRefresher *m_refresher;
    PeriodicCheck *m_periodic;
    std::unique_ptr<ArchiveSaver> m_saver;

    Status m_status = Status::Loading;
    QString m_stateMessage;
    std::optional<Cache::Saved> m_saved;
    bool m_unreachable = false;
    // The notice of the last check that failed, cleared by the next that succeeds.
    OptionalNotice m_refreshFailure;
    ShopContents m_contents;
    QSet<QString> m_downloaded;
    QDateTime m_lastChecked;
    SeenColourways m_seen;
    OptionalNotice m_message;
    bool m_showsUnreleased = false;
};
