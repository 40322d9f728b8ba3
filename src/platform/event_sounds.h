#pragma once

#include <QString>
#include <QThread>

class CanberraWorker;

// Plays one of the desktop's event sounds by its sound-theme id ("complete", "dialog-error").
class EventSoundPlayer {
public:
    virtual ~EventSoundPlayer() = default;
    virtual void play(const QString &eventId) = 0;
};

// The desktop's event sound service through libcanberra, on a thread of its own: reaching the
// sound server may take a while, and there may be none at all, when nothing plays.
class CanberraSoundPlayer : public EventSoundPlayer {
public:
    CanberraSoundPlayer();
    ~CanberraSoundPlayer() override;
    CanberraSoundPlayer(const CanberraSoundPlayer &) = delete;
    CanberraSoundPlayer &operator=(const CanberraSoundPlayer &) = delete;

    void play(const QString &eventId) override;

private:
    QThread m_thread;
    CanberraWorker *m_worker;
};

namespace EventSounds {
// Whether the desktop has its event sounds on: the GNOME family's "event-sounds" setting where
// that is installed; every other desktop leaves it to its sound server.
[[nodiscard]] bool desktopPlays(const QString &currentDesktop);
} // namespace EventSounds
