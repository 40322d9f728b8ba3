#include "wallpaper_actions.h"

#include "defaults.h"
#include "displays.h"
#include "error.h"
#include "favourites.h"
#include "logging.h"
#include "notice_presenter.h"
#include "shop.h"
#include "wallpaper_requests.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QLocale>
#include <QThreadPool>

using namespace Qt::Literals::StringLiterals;

WallpaperActions::WallpaperActions(Services services, QObject *parent)
    : QObject(parent)
    , m_shop(services.shop)
    , m_requests(services.requests)
    , m_displays(services.displays)
    , m_favourites(services.favourites)
    , m_notice(services.notice)
{
    connect(m_requests, &WallpaperRequests::historyChanged, this,
            &WallpaperActions::historyChanged);
    connect(m_requests, &WallpaperRequests::goingBackChanged, this,
            &WallpaperActions::historyChanged);
    connect(m_shop, &Shop::progressChanged, this, &WallpaperActions::downloadsChanged);
    connect(m_shop, &Shop::downloadedChanged, this, &WallpaperActions::measure);
    connect(m_displays, &Displays::fileChanged, this,
            &WallpaperActions::usesOnAllWorkspacesChanged);
    measure();
}

bool WallpaperActions::canGoBack() const
{
    return m_requests && !m_requests->history().isEmpty();
}

bool WallpaperActions::isGoingBack() const
{
    return m_requests && m_requests->isGoingBack();
}

bool WallpaperActions::canRemoveDownloads() const
{
    return m_shop && m_shop->canRemoveDownloads() && !m_removing;
}

QString WallpaperActions::downloadedSize() const
{
    return QLocale().formattedDataSize(m_downloadedBytes, 1, QLocale::DataSizeTraditionalFormat);
}

bool WallpaperActions::usesOnAllWorkspaces() const
{
    return m_displays && m_displays->file().useOnAllSpaces;
}

void WallpaperActions::setUsesOnAllWorkspaces(bool on)
{
    if (m_displays)
        m_displays->setUseOnAllSpaces(on);
}

void WallpaperActions::setWallpaper(const QString &pack, const QString &colourway,
                                    const QString &edition, const QStringList &displayIds)
{
    set(this, pack, colourway, edition, displayIds);
}

void WallpaperActions::setOnAllDisplays(const QString &displayId)
{
    if (!m_displays)
        return;
    const auto placement = m_displays->placement(displayId);
    if (!placement)
        return;
    set(this, placement->pack, placement->colourway, placement->edition, {});
}

QCoro::Task<> WallpaperActions::set(QPointer<WallpaperActions> self, QString pack,
                                    QString colourway, QString edition, QStringList displayIds)
{
    if (!self->m_shop || !self->m_displays)
        co_return;
    if (displayIds.isEmpty())
        displayIds = self->m_displays->ids();
    // Unsaid, the edition is what the display shows now, so a dark choice stays dark.
    if (edition.isEmpty() && !displayIds.isEmpty()) {
        if (const auto placement = self->m_displays->placement(displayIds.constFirst()))
            edition = placement->edition;
    }
    const Edition wanted = editionFromRawValue(edition).value_or(Edition::Automatic);
    const QString key = pack + u'/' + colourway;
    self->m_setting.append(key);
    Q_EMIT self->settingChanged();
    const OptionalNotice before = self->m_shop->message();
    try {
        co_await self->m_requests->setWallpaper(pack, colourway, wanted, displayIds);
        if (self)
            Q_EMIT self->wallpaperSet();
    } catch (const WallpaperRequests::Overtaken &) {
        // The user chose again meanwhile: the later choice stands, and that is no failure.
    } catch (const std::exception &error) {
        // A failed download is worded by the store already ("Couldn't download …").
        if (self && (!self->m_shop || self->m_shop->message() == before))
            self->failed(error, "Setting a wallpaper");
        if (self)
            Q_EMIT self->setFailed();
    }
    if (!self)
        co_return;
    self->m_setting.removeOne(key);
    Q_EMIT self->settingChanged();
}

void WallpaperActions::goBack()
{
    goBack(this);
}

QCoro::Task<> WallpaperActions::goBack(QPointer<WallpaperActions> self)
{
    if (!self->m_requests || self->m_requests->isGoingBack())
        co_return;
    try {
        co_await self->m_requests->goBack();
    } catch (const WallpaperRequests::Overtaken &) {
    } catch (const std::exception &error) {
        if (self)
            self->failed(error, "Going back");
    }
}

void WallpaperActions::toggleFavourite(const QString &pack, const QString &colourway)
{
    // The favourites log it; the heart stays as it was.
    if (m_favourites && !m_favourites->toggle(pack, colourway))
        m_notice->showFailure(Defaults::NotSaved().description());
}

void WallpaperActions::markSeen(const QString &pack)
{
    if (m_shop && !pack.isEmpty())
        m_shop->markSeen(pack);
}

void WallpaperActions::saveDesktopFiles(const QString &pack)
{
    // The store words its own outcome on the notice line.
    if (m_shop)
        m_shop->saveDesktopFiles(pack);
}

void WallpaperActions::removeDownloads()
{
    removeDownloads(this);
}

QCoro::Task<> WallpaperActions::removeDownloads(QPointer<WallpaperActions> self)
{
    if (!self->canRemoveDownloads())
        co_return;
    self->m_removing = true;
    Q_EMIT self->downloadsChanged();
    co_await self->m_shop->removeDownloads();
    if (!self)
        co_return;
    self->m_removing = false;
    self->measure();
}

void WallpaperActions::openPage(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}

void WallpaperActions::measure()
{
    if (!m_shop)
        return;
    const int generation = ++m_measuring;
    QPointer<WallpaperActions> self = this;
    const DownloadCache cache = m_shop->cache();
    QThreadPool::globalInstance()->start([self, cache, generation] {
        const qint64 bytes = cache.downloadedSize();
        QMetaObject::invokeMethod(
            qApp,
            [self, bytes, generation] {
                if (!self || generation != self->m_measuring)
                    return;
                self->m_downloadedBytes = bytes;
                Q_EMIT self->downloadsChanged();
            },
            Qt::QueuedConnection);
    });
    Q_EMIT downloadsChanged();
}

void WallpaperActions::failed(const std::exception &error, const char *what)
{
    const QString message = describe(error);
    qCWarning(lcViews, "%s failed: %s", what, qUtf8Printable(message));
    m_notice->showFailure(message);
}
