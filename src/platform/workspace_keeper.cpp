#include "workspace_keeper.h"

#include "atomic_file.h"
#include "cancel_token.h"
#include "clock.h"
#include "desktop_backend.h"
#include "display_id.h"
#include "logging.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// A picture change is judged once it has settled, and once Quennet, which sets the picture
// before it writes the placement, has written it.
constexpr auto settle = 3s;

// Adds one display's release to "released.json", keeping the others.
bool writeReleased(const QString &path, const QString &displayId, qint64 setAt)
{
    QJsonObject released;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        released = QJsonDocument::fromJson(file.readAll()).object().value("released"_L1).toObject();
    released.insert(displayId, setAt);
    return writeAtomically(
        path,
        QJsonDocument(QJsonObject { { "released"_L1, released } }).toJson(QJsonDocument::Compact));
}
} // namespace

WorkspaceKeeper::WorkspaceKeeper(DesktopBackend *backend, PlacementRecords records,
                                 std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent)
    , m_backend(backend)
    , m_records(std::move(records))
    , m_clock(std::move(clock))
{
    connect(m_backend, &DesktopBackend::workspaceChanged, this, [this] { reapply(); });
    connect(m_backend, &DesktopBackend::picturesChanged, this, &WorkspaceKeeper::picturesChanged);
}

WorkspaceKeeper::~WorkspaceKeeper()
{
    if (m_settling)
        m_settling->cancel();
}

QCoro::Task<> WorkspaceKeeper::start()
{
    const QPointer<WorkspaceKeeper> self(this);
    // XFCE is read without waiting: before its answer it would seem to share one picture.
    co_await m_backend->readBack();
    if (!self)
        co_return;
    qCInfo(lcSpacesHelper) << "Keeping wallpapers on every workspace of" << m_backend->name()
                           << (m_backend->keepsPicturePerWorkspace()
                                   ? ""
                                   : "(which shares one picture: nothing to do)");
    co_await reapply();
}

bool WorkspaceKeeper::isKeeping(const PlacementFile &file) const
{
    return file.useOnAllSpaces && m_backend->keepsPicturePerWorkspace();
}

QCoro::Task<> WorkspaceKeeper::reapply()
{
    const QPointer<WorkspaceKeeper> self(this);
    const PlacementFile file = m_records.load();
    if (!isKeeping(file))
        co_return;
    const auto screens = m_backend->screens();
    const auto ids = displayIds(screens);
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const auto placement = file.placements.constFind(ids[i]);
        if (placement == file.placements.cend() || m_records.isReleased(ids[i], *placement)
            || m_backend->picture(screens[i]) == placement->path
            || !QFileInfo::exists(placement->path))
            continue;
        qCDebug(lcSpacesHelper) << "Putting" << placement->path << "on" << screens[i].connector;
        m_reapplying = true;
        try {
            // Named first: g++ 12 cannot take a braced list inside a co_await.
            const DesktopPicture picture { .path = placement->path };
            const QList<DesktopScreen> targets { screens[i] };
            co_await m_backend->setPicture(picture, targets);
        } catch (const Error &error) {
            qCWarning(lcSpacesHelper)
                << "Couldn't keep the wallpaper on this workspace:" << error.description();
        }
        if (!self)
            co_return;
        m_reapplying = false;
        Q_EMIT reapplied(ids[i]);
    }
}

void WorkspaceKeeper::releaseChosen()
{
    const PlacementFile file = m_records.load();
    if (!isKeeping(file))
        return;
    const auto screens = m_backend->screens();
    const auto ids = displayIds(screens);
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const auto placement = file.placements.constFind(ids[i]);
        if (placement == file.placements.cend() || m_records.isReleased(ids[i], *placement))
            continue;
        const auto shown = m_backend->picture(screens[i]);
        if (!shown || *shown == placement->path)
            continue;
        qCInfo(lcSpacesHelper) << "The user chose" << *shown << "for" << screens[i].connector;
        if (!writeReleased(m_records.releasedFilePath(), ids[i], placement->setAt))
            qCWarning(lcSpacesHelper) << "Couldn't write" << m_records.releasedFilePath();
        Q_EMIT released(ids[i]);
    }
}

void WorkspaceKeeper::placementsChanged()
{
    // Judged again from the start: the change is Quennet's, written by now.
    if (m_settling)
        picturesChanged();
}

void WorkspaceKeeper::picturesChanged()
{
    // Its own sets are no choice of the user's.
    if (m_reapplying)
        return;
    if (m_settling)
        m_settling->cancel();
    m_settling = std::make_shared<CancelToken>();
    settleThenCheck(this, m_settling, m_clock);
}

QCoro::Task<> WorkspaceKeeper::settleThenCheck(QPointer<WorkspaceKeeper> self,
                                               std::shared_ptr<CancelToken> token,
                                               std::shared_ptr<Clock> clock)
{
    const bool slept = co_await clock->sleep(token, settle);
    if (!slept || !self)
        co_return;
    self->m_settling.reset();
    self->releaseChosen();
}
