#include "shop.h"

#include "account.h"
#include "archive_saver.h"
#include "async_mutex.h"
#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "download_thread.h"
#include "edition_choice.h"
#include "error.h"
#include "file_fetcher.h"
#include "library_refresher.h"
#include "logging.h"
#include "network_error.h"
#include "periodic_check.h"
#include "shown_files.h"
#include "transfers.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

QString Shop::Unavailable::description() const
{
    return QCoreApplication::translate("Shop", "It isn't available to set yet.");
}

QString Shop::NotInPacks::description() const
{
    return QCoreApplication::translate("Shop", "That wallpaper isn't in your packs.");
}

Shop::Shop(Services services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_cache(m_services.folder)
    , m_cancel(std::make_shared<CancelToken>())
    , m_refreshing(std::make_shared<AsyncMutex>())
{
    const ShopSession session(m_services.account, m_services.keychain);
    m_transfers = new Transfers(FileFetcher(m_services.downloads), m_services.api, session,
                                m_services.clock, this);
    m_refresher = new LibraryRefresher(m_services.api, session, m_services.downloads,
                                       m_cache.shopCachePath(), this);
    m_periodic = new PeriodicCheck(
        m_services.defaults, m_services.clock, [this] { refresh(); }, this);
    m_saver = std::make_unique<ArchiveSaver>(m_transfers, m_services.downloads, m_services.folder,
                                             m_services.downloadsFolder);

    m_showsUnreleased = m_services.defaults->showsUnreleasedPacks();
    const auto seen = m_services.defaults->seenColourways();
    for (auto it = seen.cbegin(); it != seen.cend(); ++it)
        m_seen.insert(it.key(), QSet<QString>(it->cbegin(), it->cend()));

    connect(m_transfers, &Transfers::progressChanged, this, &Shop::showProgress);
    connect(m_transfers, &Transfers::ended, this, &Shop::rescanDownloaded);
    connect(m_transfers, &Transfers::failed, this,
            [this](const QString &message) { setMessage(Notice::failed(message)); });
    // A new session brings its own library; an ended one takes it away.
    if (m_services.account)
        connect(m_services.account, &Account::generationChanged, this,
                [this] { sessionChanged(this); });
}

Shop::~Shop()
{
    m_cancel->cancel();
}

QCoro::Task<> Shop::start()
{
    return start(this);
}

QCoro::Task<> Shop::start(QPointer<Shop> self)
{
    try {
        const auto copy = co_await self->m_refresher->load();
        if (!self)
            co_return;
        if (copy) {
            self->apply(*copy);
            self->setState(Status::Ready);
        }
        self->rescanDownloaded();
        self->m_periodic->start();
        co_await self->refresh();
    } catch (const std::exception &error) {
        qCWarning(lcShop) << "Start-up failed:" << describe(error);
    }
}

QCoro::Task<std::optional<QString>> Shop::refresh()
{
    return refresh(this, m_refreshing, m_cancel);
}

QCoro::Task<std::optional<QString>> Shop::refresh(QPointer<Shop> self,
                                                  std::shared_ptr<AsyncMutex> mutex,
                                                  std::shared_ptr<CancelToken> cancel)
{
    try {
        // One at a time: a second request runs after the first, and mostly finds it unchanged.
        const auto lock = co_await AsyncMutex::lock(mutex);
        if (!self || cancel->isCancelled())
            co_return std::nullopt;
        const auto saved = co_await self->m_refresher->refresh(cancel);
        if (!self)
            co_return std::nullopt;
        self->apply(saved);
        self->m_lastChecked = self->m_services.clock->now();
        Q_EMIT self->lastCheckedChanged();
        self->setState(Status::Ready);
        // A failure the last check reported is over.
        if (self->m_message && self->m_message == self->m_refreshFailure)
            self->setMessage(std::nullopt);
        self->m_refreshFailure.reset();
        Q_EMIT self->libraryChecked();
    } catch (const std::exception &error) {
        if (!self || cancel->isCancelled())
            co_return std::nullopt;
        const QString reason = describe(error);
        qCWarning(lcShop, "Refresh failed: %s", qUtf8Printable(reason));
        const QString message = tr("Couldn't check for new files. %1").arg(reason);
        // What is shown already stays; with nothing to show the state says why.
        const auto *transport = dynamic_cast<const NetworkError *>(&error);
        self->m_unreachable = transport && transport->isUnreachable();
        if (self->m_status == Status::Ready) {
            self->m_refreshFailure = Notice::failed(message);
            self->setMessage(self->m_refreshFailure);
        } else {
            self->setState(Status::Failed, message);
        }
        co_return message;
    }
    co_return std::nullopt;
}

QCoro::Task<> Shop::sessionChanged(QPointer<Shop> self)
{
    // The packs of a session that ended go at once, offline or not: nothing may be set, found or
    // shuffled from them, now or after a restart.
    if (self->m_saved && self->m_saved->library) {
        Cache::Saved withoutLibrary = *self->m_saved;
        withoutLibrary.library.reset();
        withoutLibrary.account.reset();
        self->apply(withoutLibrary);
        co_await self->m_refresher->forgetLibrary();
        if (!self)
            co_return;
    }
    // Until the new session's library arrives there is nothing to show but that it is coming.
    self->setState(Status::Loading);
    co_await self->refresh();
}

void Shop::systemWoke()
{
    m_periodic->woke();
}

void Shop::apply(const Cache::Saved &saved)
{
    m_saved = saved;
    const QUrl base = saved.base.value_or(m_services.api().base());
    setContents(ShopContents::from(saved.catalogue, saved.library, base, m_showsUnreleased));
    if (saved.library)
        ShopSession(m_services.account, m_services.keychain).setEmail(saved.library->email);
}

void Shop::setContents(ShopContents contents)
{
    if (m_contents == contents)
        return;
    m_contents = std::move(contents);
    Q_EMIT contentsChanged();
}

void Shop::setShowsUnreleased(bool shows)
{
    if (m_showsUnreleased == shows)
        return;
    if (!m_services.defaults->setShowsUnreleasedPacks(shows)) {
        qCWarning(lcShop) << "Couldn't save whether unreleased packs show; it stays as it was";
        setMessage(Notice::failed(Defaults::NotSaved().description()));
        return;
    }
    m_showsUnreleased = shows;
    Q_EMIT showsUnreleasedChanged();
    if (m_saved)
        apply(*m_saved);
}

QCoro::Task<QString> Shop::localFile(WallpaperFile file)
{
    const QPointer<Shop> self = this;
    Transfers::Renew renew = [self, file] { return renewed(self, file); };
    return m_transfers->local(download(file), std::move(renew));
}

Transfers::Download Shop::download(const WallpaperFile &file) const
{
    return {
        .key = DownloadCache::fileKey(file),
        .name = displayName(file),
        .pack = file.pack,
        .id = file.id,
        .source = file.source,
        .target = { .destination = m_cache.localPath(file),
                    .partial = m_cache.partialPath(file),
                    .size = file.bytes,
                    .sha256 = file.sha256 },
    };
}

QCoro::Task<std::optional<Transfers::Download>> Shop::renewed(QPointer<Shop> self,
                                                              WallpaperFile file)
{
    if (!self)
        co_return std::nullopt;
    // Until the next check the library would name the old digest, and every set would fail.
    auto refreshing = self->refresh();
    co_await std::move(refreshing);
    if (!self)
        co_return std::nullopt;
    for (const WallpaperFile &now : self->m_contents.owned.value(file.pack).allFiles()) {
        if (now.id == file.id && (now.sha256 != file.sha256 || now.source != file.source))
            co_return self->download(now);
    }
    co_return std::nullopt;
}

QString Shop::displayName(const WallpaperFile &file) const
{
    for (const auto &pack : m_contents.packs) {
        if (pack.slug != file.pack)
            continue;
        for (const auto &colourway : pack.colourways) {
            if (colourway.slug == file.colourway)
                return colourway.name;
        }
    }
    return file.colourway;
}

std::optional<Edition> Shop::editionFor(const QString &pack, const QString &colourway,
                                        Edition wanted) const
{
    const auto owned = m_contents.owned.constFind(pack);
    if (owned == m_contents.owned.cend())
        return std::nullopt;
    return chooseEdition(*owned, colourway, wanted);
}

WallpaperFile Shop::wallpaperFile(const QString &pack, const QString &colourway,
                                  Edition wanted) const
{
    const auto owned = m_contents.owned.constFind(pack);
    if (owned == m_contents.owned.cend())
        throw NotInPacks();
    const auto chosen = chooseEdition(*owned, colourway, wanted);
    if (!chosen)
        throw Unavailable();
    return *owned->file(colourway, *chosen);
}

std::optional<WallpaperFile> Shop::fileFor(const Placement &placement) const
{
    const auto edition = editionFromRawValue(placement.edition);
    const auto owned = m_contents.owned.constFind(placement.pack);
    if (!edition || owned == m_contents.owned.cend())
        return std::nullopt;
    return owned->file(placement.colourway, *edition);
}

QCoro::Task<> Shop::saveDesktopFiles(QString pack)
{
    return saveDesktopFiles(this, std::move(pack));
}

QCoro::Task<> Shop::saveDesktopFiles(QPointer<Shop> self, QString pack)
{
    try {
        const OwnedPack owned = self->m_contents.owned.value(pack);
        QString saved;
        for (const auto &archive : owned.archives) {
            if (archive.device != QLatin1StringView(ArchiveSaver::desktopDevice))
                continue;
            saved = co_await self->m_saver->save(archive);
            if (!self)
                co_return;
        }
        // Without an archive for desktops, the wallpaper files themselves.
        if (saved.isEmpty()) {
            for (const auto &file : owned.allFiles()) {
                const QString local = co_await self->localFile(file);
                if (!self)
                    co_return;
                saved = co_await self->m_saver->copy(local, QFileInfo(local).fileName());
                if (!self)
                    co_return;
            }
        }
        if (saved.isEmpty())
            throw Unavailable();
        self->setMessage(Notice::saved(QUrl::fromLocalFile(saved)));
    } catch (const std::exception &error) {
        qCWarning(lcShop, "Saving %s to Downloads failed: %s", qUtf8Printable(pack),
                  qUtf8Printable(describe(error)));
        if (self)
            self->setMessage(
                Notice::failed(tr("Couldn't save %1 to Downloads. %2").arg(pack, describe(error))));
    }
}

void Shop::markSeen(const QString &pack)
{
    if (!m_saved)
        return;
    QSet<QString> slugs;
    for (const auto &entry : m_saved->catalogue.catalogue(m_services.api().base())) {
        if (entry.slug != pack)
            continue;
        for (const auto &colourway : entry.colourways)
            slugs.insert(colourway.slug);
    }
    m_seen.insert(pack, slugs);
    QMap<QString, QStringList> stored;
    for (auto it = m_seen.cbegin(); it != m_seen.cend(); ++it) {
        QStringList list(it->cbegin(), it->cend());
        list.sort();
        stored.insert(it.key(), list);
    }
    // Unsaved, the pack's colourways show as new again after a restart: not worth a notice.
    if (!m_services.defaults->setSeenColourways(stored))
        qCWarning(lcShop) << "Couldn't save the colourways seen in" << pack;
    Q_EMIT seenChanged();
}

QCoro::Task<> Shop::removeDownloads()
{
    if (!canRemoveDownloads())
        co_return;
    const QPointer<Shop> self = this;
    QSet<QString> kept;
    for (const auto &file : m_cache.installedFiles()) {
        if (keeps(file.path))
            kept.insert(file.path);
    }
    try {
        auto remove = [cache = m_cache, kept] {
            cache.removeDownloads([&kept](const QString &path) { return kept.contains(path); });
        };
        co_await m_services.downloads->run(std::move(remove));
    } catch (const std::exception &error) {
        qCWarning(lcShop) << "Removing downloads failed:" << describe(error);
    }
    if (self)
        self->rescanDownloaded();
}

bool Shop::keeps(const QString &path) const
{
    return m_services.shown && m_services.shown->isShown(path);
}

DownloadProgress Shop::progress() const
{
    return m_transfers->progress();
}

bool Shop::canRemoveDownloads() const
{
    return !m_transfers->isRunning();
}

void Shop::showProgress()
{
    Q_EMIT progressChanged();
    if (m_transfers->isRunning())
        setMessage(Notice::downloading(m_transfers->count(), m_transfers->fraction()));
    else if (m_message && m_message->kind() == Notice::Kind::Downloading)
        setMessage(std::nullopt);
}

void Shop::rescanDownloaded()
{
    QSet<QString> keys;
    for (const auto &file : m_cache.installedFiles())
        keys.insert(file.key);
    if (keys == m_downloaded)
        return;
    m_downloaded = std::move(keys);
    Q_EMIT downloadedChanged();
}

void Shop::setState(Status status, const QString &message)
{
    if (m_status == status && m_stateMessage == message)
        return;
    m_status = status;
    m_stateMessage = message;
    Q_EMIT stateChanged();
}

void Shop::setMessage(OptionalNotice message)
{
    if (m_message == message)
        return;
    m_message = std::move(message);
    Q_EMIT messageChanged();
}

void Shop::dismissMessage()
{
    setMessage(std::nullopt);
}
