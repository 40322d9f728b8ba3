#include "displays.h"

#include "cancel_token.h"
#include "clock.h"
#include "display_id.h"
#include "logging.h"

#include <QGuiApplication>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto pendingWindow = 3s;
constexpr auto settleInterval = 250ms;
constexpr int settleSteps = 12;

// Sleeps between refreshes until every pending picture is confirmed or expired. Holds its owner
// weakly: Displays may go while it sleeps.
QCoro::Task<> settleLoop(QPointer<Displays> owner, std::shared_ptr<Clock> clock,
                         std::shared_ptr<CancelToken> token)
{
    for (int step = 0; step < settleSteps; ++step) {
        const bool slept = co_await clock->sleep(token, settleInterval);
        if (!slept || !owner || !owner->hasPending())
            co_return;
        owner->refresh();
    }
}
} // namespace

Displays::Displays(DesktopBackend *backend, PlacementRecords records, std::shared_ptr<Clock> clock,
                   QObject *parent)
    : QObject(parent)
    , m_backend(backend)
    , m_records(std::move(records))
    , m_clock(std::move(clock))
    , m_file(m_records.load())
{
    refresh();
    connect(m_backend, &DesktopBackend::screensChanged, this, &Displays::refresh);
    connect(m_backend, &DesktopBackend::picturesChanged, this, &Displays::refresh);
    connect(m_backend, &DesktopBackend::workspaceChanged, this, &Displays::refresh);
    // qGuiApp would be a bad cast in a program without a GUI.
    if (auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state == Qt::ApplicationActive)
                        refresh();
                });
    }
}

Displays::~Displays()
{
    if (m_settling)
        m_settling->cancel();
}

QStringList Displays::ids() const
{
    QStringList ids;
    for (const Display &display : m_all)
        ids.append(display.id);
    return ids;
}

void Displays::refresh()
{
    const QList<DesktopScreen> screens = m_backend->screens();
    const QList<QString> ids = displayIds(screens);
    const QList<QString> names = displayNames(screens);
    QList<Display> all;
    const QPoint origin = screens.isEmpty() ? QPoint() : screens.first().geometry.topLeft();
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const auto wallpaper = current(screens[i], ids[i]);
        // A picture just set and not reported yet is shown as it is.
        const bool reported = wallpaper && wallpaper == m_backend->picture(screens[i]);
        all.append(
            { .id = ids[i],
              .name = names[i],
              .frame = QRectF(screens[i].geometry.translated(-origin)),
              .pixels =
                  screens[i].pixels.isEmpty() ? screens[i].geometry.size() : screens[i].pixels,
              .isMain = i == 0,
              .wallpaper = wallpaper,
              .thumbnail = reported ? m_backend->thumbnail(screens[i], false) : wallpaper,
              .thumbnailDark = reported ? m_backend->thumbnail(screens[i], true) : wallpaper });
    }
    if (all == m_all)
        return;
    m_all = all;
    Q_EMIT allChanged();
}

std::optional<QString> Displays::current(const DesktopScreen &screen, const QString &displayId)
{
    std::optional<QString> reported = m_backend->picture(screen);
    const auto pending = m_pending.constFind(displayId);
    if (pending == m_pending.cend())
        return reported;
    if (reported != pending->path && m_clock->now() < pending->until)
        return pending->path;
    m_pending.erase(pending);
    return reported;
}

std::optional<Placement> Displays::placement(const QString &displayId) const
{
    const auto it = m_file.placements.constFind(displayId);
    return it == m_file.placements.cend() ? std::nullopt : std::optional(*it);
}

bool Displays::showsOwnWallpaper(const Display &display) const
{
    const auto recorded = placement(display.id);
    return recorded && display.wallpaper == recorded->path;
}

QCoro::Task<> Displays::set(DesktopPicture picture, Placement placement, QStringList displayIds)
{
    return put(std::move(picture), std::move(placement), std::move(displayIds));
}

QCoro::Task<> Displays::put(DesktopPicture picture, std::optional<Placement> placement,
                            QStringList displayIds)
{
    const QList<DesktopScreen> screens = m_backend->screens();
    const QList<QString> ids = ::displayIds(screens);
    QList<DesktopScreen> targets;
    QStringList targetIds;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        if (displayIds.contains(ids[i])) {
            targets.append(screens[i]);
            targetIds.append(ids[i]);
        }
    }
    if (targets.isEmpty())
        co_return;

    // One request for all the screens: desktops that draw one picture for all of them would
    // otherwise draw it once per screen.
    if (placement)
        placement->path = picture.path;
    const QPointer<Displays> self(this);
    std::exception_ptr failure;
    // Screens the desktop changed before it refused keep their new picture and its record.
    QStringList changed;
    try {
        co_await m_backend->setPicture(picture, targets);
        for (const DesktopScreen &screen : std::as_const(targets))
            changed.append(screen.connector);
    } catch (const DesktopError &error) {
        failure = std::current_exception();
        changed = error.changedConnectors();
    }
    if (!self)
        co_return;
    bool recorded = false;
    for (qsizetype i = 0; i < targets.size(); ++i) {
        if (!changed.contains(targets[i].connector))
            continue;
        m_pending.insert(
            targetIds[i],
            { picture.path,
              m_clock->now().addMSecs(std::chrono::milliseconds(pendingWindow).count()) });
        if (placement)
            m_file.placements.insert(targetIds[i], *placement);
        recorded = true;
    }
    if (recorded)
        Q_EMIT fileChanged();
    if (!save())
        qCWarning(lcDisplays) << "Could not save the placements";
    refresh();
    settle();
    if (failure)
        std::rethrow_exception(failure);
}

QCoro::Task<> Displays::restore(QStringList displayIds, QString path)
{
    DesktopPicture picture;
    picture.path = std::move(path);
    co_await put(std::move(picture), std::nullopt, std::move(displayIds));
}

void Displays::setUseOnAllSpaces(bool on)
{
    if (on == m_file.useOnAllSpaces)
        return;
    m_file.useOnAllSpaces = on;
    if (!save())
        qCWarning(lcDisplays) << "Could not save the placements";
    Q_EMIT fileChanged();
    Q_EMIT useOnAllSpacesChanged();
}

bool Displays::save()
{
    return m_records.save(m_file);
}

void Displays::settle()
{
    if (m_settling)
        m_settling->cancel();
    m_settling = std::make_shared<CancelToken>();
    settleLoop(this, m_clock, m_settling);
}
