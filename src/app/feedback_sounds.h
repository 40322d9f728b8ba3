#pragma once

#include <QObject>
#include <functional>
#include <memory>

class Defaults;
class EventSoundPlayer;

// The few moments Quennet marks with one of the desktop's event sounds, when both the user's
// setting "playsFeedbackSounds" and the desktop's own event sounds are on.
class FeedbackSounds : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY onChanged)

public:
    enum class Moment { WallpaperSet, Failed, SignedIn };

    // desktopPlays says whether the desktop has its event sounds on now.
    FeedbackSounds(Defaults *defaults, std::unique_ptr<EventSoundPlayer> player,
                   std::function<bool()> desktopPlays, QObject *parent = nullptr);
    ~FeedbackSounds() override;

    void play(Moment moment);

    [[nodiscard]] bool isOn() const;
    void setOn(bool on);

Q_SIGNALS:
    void onChanged();
    // A change of the setting couldn't be saved.
    void notSaved();

private:
    Defaults *m_defaults;
    std::unique_ptr<EventSoundPlayer> m_player;
    std::function<bool()> m_desktopPlays;
};
