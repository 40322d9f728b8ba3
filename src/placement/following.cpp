#include "following.h"

#include "cancel_token.h"
#include "clock.h"
#include "colour_scheme.h"
#include "desktop_backend.h"
#include "logging.h"
#include "sleep_watcher.h"
#include "wallpaper_setter.h"

#include <QPointer>
#include <functional>

namespace {
// Qt timers stop during suspend: a wake counts from the wall clock again after every wake of the
// computer, when the next look schedules anew.
QCoro::Task<> sleepThenFollow(std::shared_ptr<Clock> clock, std::shared_ptr<CancelToken> token,
                              std::chrono::milliseconds wait, std::function<void()> follow)
{
    // Named first: g++ 12 mishandles a co_await inside a condition.
    const bool slept = co_await clock->sleep(token, wait);
    if (slept)
        follow();
}
} // namespace

Following::Following(Services services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
{
    const auto followIfStarted = [this] {
        if (m_started)
            followSoon();
    };
    if (m_services.scheme)
        connect(m_services.scheme, &ColourScheme::changed, this, followIfStarted);
    if (m_services.sleep)
        connect(m_services.sleep, &SleepWatcher::woke, this, followIfStarted);
    connect(m_services.backend, &DesktopBackend::screensChanged, this, followIfStarted);
    // Desktops that read back without waiting (Plasma, XFCE) may tell what shows only after the
    // start; an outside change may also have put one of ours back.
    connect(m_services.backend, &DesktopBackend::picturesChanged, this, followIfStarted);
    connect(m_services.setter, &WallpaperSetter::changesAt, this,
            [this](QTime next) { wakeAt(next, true); });
}

Following::~Following()
{
    if (m_wake)
        m_wake->cancel();
}

void Following::start()
{
    m_started = true;
    // Until the scheme is read, a look could put the light picture up in a dark session.
    if (!m_services.scheme || m_services.scheme->isKnown())
        followSoon();
}

void Following::followSoon()
{
    if (m_following) {
        m_again = true;
        return;
    }
    followNow();
}

QCoro::Task<> Following::followNow()
{
    const QPointer<Following> self(this);
    m_following = true;
    do {
        m_again = false;
        std::optional<QTime> next;
        try {
            next = co_await m_services.setter->follow();
        } catch (const Error &error) {
            qCWarning(lcFollowing) << "Could not switch pictures:" << error.what();
        }
        if (!self)
            co_return;
        wakeAt(next, false);
    } while (m_again);
    m_following = false;
}

void Following::wakeAt(std::optional<QTime> next, bool keepSooner)
{
    const QDateTime now = m_services.clock->now();
    QDateTime due;
    if (next) {
        constexpr int day = 24 * 60 * 60 * 1000;
        const int time = now.toLocalTime().time().msecsSinceStartOfDay();
        // A second late, so the change is due when it wakes.
        due = now.addMSecs((next->msecsSinceStartOfDay() - time + day) % day + 1000);
    }
    if (keepSooner && m_wake && m_wakeAt > now && (!due.isValid() || m_wakeAt <= due))
        return;
    if (m_wake)
        m_wake->cancel();
    m_wake.reset();
    if (!due.isValid())
        return;
    m_wakeAt = due;
    m_wake = std::make_shared<CancelToken>();
    sleepThenFollow(m_services.clock, m_wake, std::chrono::milliseconds(now.msecsTo(due)),
                    [self = QPointer<Following>(this)] {
                        if (self)
                            self->followSoon();
                    });
}
