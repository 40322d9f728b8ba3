#include "wallpaper_setter.h"

#include "clock.h"
#include "colour_scheme.h"
#include "desktop_pictures.h"
#include "displays.h"
#include "logging.h"
#include "owned_pack.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QPointer>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
QCoro::Task<DesktopPictures::Prepared> prepared(Renderer renderer, DesktopPictures::Request request)
{
    // A failure crosses threads as text: QFuture carries only QException subclasses.
    struct Outcome {
        std::optional<DesktopPictures::Prepared> prepared;
        QString failure;
        bool unreadable = false;
    };
    // Not inside the co_await expression: g++ 12 destroys such temporaries twice.
    QFuture<Outcome> preparing = QtConcurrent::run([renderer, request]() -> Outcome {
        try {
            return { DesktopPictures::prepare(renderer, request), {} };
        } catch (const DesktopPictures::UnreadableFile &) {
            return { std::nullopt, {}, true };
        } catch (const DesktopError &error) {
            return { std::nullopt, error.description() };
        }
    });
    const Outcome outcome = co_await preparing;
    if (outcome.unreadable)
        throw DesktopPictures::UnreadableFile();
    if (!outcome.prepared)
        throw DesktopError(outcome.failure);
    co_return *outcome.prepared;
}
} // namespace

WallpaperSetter::WallpaperSetter(Displays *displays, Renderer renderer, ColourScheme *scheme,
                                 std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent)
    , m_displays(displays)
    , m_renderer(std::move(renderer))
    , m_scheme(scheme)
    , m_clock(std::move(clock))
{
}

WallpaperSetter::~WallpaperSetter() = default;

DesktopPictures::Request WallpaperSetter::request(QString source, QString fileId, Edition edition,
                                                  bool everyDisplay) const
{
    const auto capabilities = m_displays->backend()->capabilities();
    return { .source = std::move(source),
             .fileId = std::move(fileId),
             .edition = edition,
             .dark = m_scheme && m_scheme->isDark(),
             .time = m_clock->now().toLocalTime().time(),
             .pair = capabilities.testFlag(DesktopBackend::Capability::LightDarkPair),
             // A slideshow file cannot be cut into one display's part of a spanned picture.
             .slideshow =
                 everyDisplay && capabilities.testFlag(DesktopBackend::Capability::TimedSlideshow),
             .bounds = largestDisplay() };
}

QSize WallpaperSetter::largestDisplay() const
{
    // One size for every display: a picture moved to another display is not made again, and no
    // display is left showing a smaller rendering that a larger one replaced.
    QSize largest;
    for (const Displays::Display &display : m_displays->all())
        largest = largest.expandedTo(display.pixels);
    return largest;
}

QCoro::Task<> WallpaperSetter::setWallpaper(WallpaperFile file, QString localPath,
                                            Placement placement, QStringList displayIds)
{
    co_await show(std::move(localPath), file.id, file.edition, std::move(placement),
                  std::move(displayIds));
}

QCoro::Task<> WallpaperSetter::show(QString source, QString fileId, Edition edition,
                                    Placement placement, QStringList displayIds)
{
    bool everyDisplay = true;
    for (const QString &id : m_displays->ids())
        everyDisplay = everyDisplay && displayIds.contains(id);
    const QPointer<WallpaperSetter> self(this);
    ++m_setting[source];
    try {
        const auto ready =
            co_await prepared(m_renderer, request(source, fileId, edition, everyDisplay));
        if (!self)
            co_return;
        co_await m_displays->set(ready.picture, std::move(placement), std::move(displayIds));
        if (self && ready.nextChange)
            Q_EMIT changesAt(*ready.nextChange);
    } catch (...) {
        if (self)
            setDone(source);
        throw;
    }
    if (self)
        setDone(source);
}

void WallpaperSetter::setDone(const QString &source)
{
    if (--m_setting[source] <= 0)
        m_setting.remove(source);
    // Renderings are kept while their file is, as they are no larger than it: setting a
    // wallpaper again is then as quick as the first time it was shown.
    m_renderer.prune(
        [this](const QString &file) { return QFileInfo::exists(file) || isShown(file); });
}

QCoro::Task<> WallpaperSetter::restore(QStringList displayIds, QString path,
                                       std::optional<Placement> placement)
{
    if (!placement) {
        co_await m_displays->restore(std::move(displayIds), std::move(path));
        co_return;
    }
    const auto source = m_renderer.sourceOf(path);
    const auto edition = editionFromRawValue(placement->edition);
    if (!source || !edition) {
        // A file the desktop was given as it is. Named first: g++ 12 destroys a braced temporary
        // inside a co_await twice.
        const DesktopPicture picture { .path = path };
        co_await m_displays->set(picture, std::move(*placement), std::move(displayIds));
        co_return;
    }
    const QString fileId = Renderer::fileIdOf(path);
    co_await show(*source, fileId, *edition, std::move(*placement), std::move(displayIds));
}

bool WallpaperSetter::canRestore(const QString &path,
                                 const std::optional<Placement> &placement) const
{
    const auto source = placement ? m_renderer.sourceOf(path) : std::nullopt;
    const QString needed = source.value_or(path);
    return !needed.isEmpty() && QFileInfo::exists(needed);
}

QCoro::Task<std::optional<QTime>> WallpaperSetter::follow()
{
    const QPointer<WallpaperSetter> self(this);
    std::optional<QTime> next;
    for (const Displays::Display &display : m_displays->all()) {
        const auto placement = m_displays->placement(display.id);
        const auto edition = placement ? editionFromRawValue(placement->edition) : std::nullopt;
        // Every edition: a still picture is made again too when a larger display came.
        if (!placement || !edition || !m_displays->showsOwnWallpaper(display))
            continue;
        const auto source = m_renderer.sourceOf(placement->path);
        if (!source)
            continue;
        // A slideshow the desktop follows is made again as one, and stays as it is.
        const bool slideshow = QFileInfo(placement->path).suffix() == "xml"_L1;
        try {
            const auto ready = co_await prepared(
                m_renderer,
                request(*source, Renderer::fileIdOf(placement->path), *edition, slideshow));
            if (!self)
                co_return std::nullopt;
            if (ready.nextChange && (!next || *ready.nextChange < *next))
                next = ready.nextChange;
            if (ready.picture.path != placement->path)
                co_await m_displays->set(ready.picture, *placement, QStringList(display.id));
        } catch (const Error &error) {
            qCWarning(lcWallpaper)
                << "Could not switch the picture of" << display.name << error.what();
        }
        if (!self)
            co_return std::nullopt;
    }
    co_return next;
}

bool WallpaperSetter::isShown(const QString &localPath) const
{
    if (m_setting.contains(localPath))
        return true;
    const auto shows = [&](const Displays::Display &display) {
        return display.wallpaper
            && (*display.wallpaper == localPath
                || m_renderer.sourceOf(*display.wallpaper) == localPath);
    };
    return std::ranges::any_of(m_displays->all(), shows);
}
