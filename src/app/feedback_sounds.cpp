#include "feedback_sounds.h"

#include "defaults.h"
#include "event_sounds.h"

using namespace Qt::Literals::StringLiterals;

FeedbackSounds::FeedbackSounds(Defaults *defaults, std::unique_ptr<EventSoundPlayer> player,
                               std::function<bool()> desktopPlays, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_player(std::move(player))
    , m_desktopPlays(std::move(desktopPlays))
{
}

FeedbackSounds::~FeedbackSounds() = default;

void FeedbackSounds::play(Moment moment)
{
    if (!isOn() || !m_desktopPlays())
        return;
    switch (moment) {
    case Moment::WallpaperSet:
        m_player->play(u"complete"_s);
        return;
    case Moment::Failed:
        m_player->play(u"dialog-error"_s);
        return;
    case Moment::SignedIn:
        m_player->play(u"service-login"_s);
        return;
    }
}

bool FeedbackSounds::isOn() const
{
    return m_defaults->playsFeedbackSounds();
}

void FeedbackSounds::setOn(bool on)
{
    if (on == isOn())
        return;
    if (!m_defaults->setPlaysFeedbackSounds(on))
        Q_EMIT notSaved();
    Q_EMIT onChanged();
}
