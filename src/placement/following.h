#pragma once

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <memory>
#include <optional>

class CancelToken;
class Clock;
class ColourScheme;
class DesktopBackend;
class SleepWatcher;
class WallpaperSetter;

// Keeps light/dark and time-of-day wallpapers on the picture due now, where the desktop does not
// switch them itself: from start-up, at each phase time, after every wake, and whenever the
// colour scheme, the screens or what the desktop says it shows change.
class Following : public QObject {
    Q_OBJECT

public:
    struct Services {
        WallpaperSetter *setter = nullptr;
        DesktopBackend *backend = nullptr;
        ColourScheme *scheme = nullptr; // none: always light
        SleepWatcher *sleep = nullptr; // none: sleep goes unannounced
        std::shared_ptr<Clock> clock;
    };

    explicit Following(Services services, QObject *parent = nullptr);
    ~Following() override;

    // Looks at every display once the colour scheme is known, and follows from then on.
    void start();

private:
    // Several causes at once make one more look, not one each.
    void followSoon();
    QCoro::Task<> followNow();
    // Wakes at next, or not at all. With keepSooner, a sooner wake already set stays: it is
    // another display's change, and each look covers every display.
    void wakeAt(std::optional<QTime> next, bool keepSooner);

    Services m_services;
    bool m_started = false;
    bool m_following = false;
    bool m_again = false;
    std::shared_ptr<CancelToken> m_wake;
    QDateTime m_wakeAt;
};
