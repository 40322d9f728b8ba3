#pragma once

#include "deck.h"
#include "edition.h"
#include "error.h"
#include "shuffle_choice.h"
#include "shuffle_displays.h"
#include "shuffle_settings.h"

#include <QCoroTask>
#include <QDateTime>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <memory>

class AsyncMutex;
class Clock;
class Defaults;
class DisplayTurn;
class Favourites;
class QRandomGenerator;
class ShuffleSchedule;
class ShuffleStore;
class SleepWatcher;

// Changes the wallpaper by itself on a calendar schedule, from the user's favourites or from all
// of their packs, the same pick on every display or a different one on each. The panel's shuffle
// block and the settings pane observe it. Scheduled shuffles wait while the displays are held
// for the Do Not Disturb wallpaper.
class Shuffle : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY isOnChanged)
    Q_PROPERTY(
        ShuffleSettings::Interval interval READ interval WRITE setInterval NOTIFY intervalChanged)
    Q_PROPERTY(ShuffleSettings::Source source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(bool differentOnEachDisplay READ differentOnEachDisplay WRITE
                   setDifferentOnEachDisplay NOTIFY differentOnEachDisplayChanged)
    Q_PROPERTY(QDateTime anchor READ anchor NOTIFY anchorChanged)
    Q_PROPERTY(bool isShuffling READ isShuffling NOTIFY isShufflingChanged)
    Q_PROPERTY(UpNext upNext READ upNext NOTIFY upNextChanged)
    Q_PROPERTY(QDateTime nextDate READ nextDate NOTIFY nextDateChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)

public:
    using Choice = ShuffleChoice;
    using Interval = ShuffleSettings::Interval;
    using Source = ShuffleSettings::Source;
    // The picks of the next shuffle, by display id.
    using UpNext = QMap<QString, ShuffleChoice>;

    // There is nothing in the source to pick from.
    class NothingToShuffle : public Error {
    public:
        explicit NothingToShuffle(Source source);

        [[nodiscard]] Source source() const { return m_source; }
        [[nodiscard]] QString description() const override;

        bool operator==(const NothingToShuffle &other) const { return m_source == other.m_source; }

    private:
        Source m_source;
    };

    struct Services {
        ShuffleStore *store = nullptr;
        ShuffleDisplays *displays = nullptr;
        Favourites *favourites = nullptr;
        Defaults *defaults = nullptr;
        SleepWatcher *sleep = nullptr;
        DisplayTurn *turn = nullptr;
        std::shared_ptr<Clock> clock;
        // QRandomGenerator::system() in the program; a seeded one in tests.
        QRandomGenerator *random = nullptr;
    };

    // Reads the settings; nothing runs before start().
    explicit Shuffle(Services services, QObject *parent = nullptr);
    ~Shuffle() override;

    // Starts the schedule when shuffling is on.
    void start();

    [[nodiscard]] bool isOn() const { return m_isOn; }
    [[nodiscard]] Interval interval() const { return m_interval; }
    [[nodiscard]] Source source() const { return m_source; }
    [[nodiscard]] bool differentOnEachDisplay() const { return m_differentOnEachDisplay; }
    [[nodiscard]] QDateTime anchor() const;
    [[nodiscard]] bool isShuffling() const { return m_isShuffling; }
    [[nodiscard]] UpNext upNext() const { return m_upNext; }
    // When the scheduled shuffle will happen: the next boundary, or later while quiet after a
    // wake or a failure; invalid while off.
    [[nodiscard]] QDateTime nextDate() const;
    // Why shuffling waits, in a sentence for under the switch; empty when it does not.
    [[nodiscard]] QString status() const { return m_status; }

    // Each stores the value and starts the schedule again. False, changing nothing, when the
    // setting couldn't be saved. (Not [[nodiscard]]: they are property setters too.)
    bool setOn(bool on);
    bool setInterval(Interval interval);
    bool setSource(Source source);
    bool setDifferentOnEachDisplay(bool different);

    // Picks and sets at once, whatever the schedule. Throws NothingToShuffle, or what setting
    // the picks threw when no downloaded wallpaper could stand in.
    [[nodiscard]] QCoro::Task<> shuffleNow();

    // The colourways of the current source, in library order.
    [[nodiscard]] QList<Choice> candidates() const;

Q_SIGNALS:
    void isOnChanged();
    void intervalChanged();
    void sourceChanged();
    void differentOnEachDisplayChanged();
    void anchorChanged();
    void isShufflingChanged();
    void upNextChanged();
    void nextDateChanged();
    void statusChanged();
    // A shuffle the schedule started could not be set: nobody asked at that moment, so nobody
    // has been told.
    void scheduledShuffleFailed(const QString &reason);

private:
    // One shuffle's picks and where each goes.
    struct Target {
        Choice choice;
        Edition wanted = Edition::Automatic;
        QStringList displayIds;
    };
    // A draw and what it was drawn from: still good while those are unchanged.
    struct Prepared {
        QList<Choice> candidates;
        QList<ShuffleDisplays::Screen> screens;
        QStringList played;
        bool differentOnEachDisplay = false;
        Deck::Draw draw;
    };

    static QCoro::Task<> scheduledShuffle(QPointer<Shuffle> self);
    static QCoro::Task<> carryOut(QPointer<Shuffle> self, std::shared_ptr<AsyncMutex> mutex);
    static QCoro::Task<QString> setPick(QPointer<Shuffle> self, Target target);

    // Logs the setting that couldn't be saved; false.
    static bool notSaved(const char *setting);
    void settingsChanged();
    void tick();
    void refresh();

    // The draw for the next shuffle: the one prepared before while its inputs hold.
    [[nodiscard]] Prepared prepare() const;
    [[nodiscard]] QList<Target> targets(const Prepared &prepared) const;
    [[nodiscard]] QStringList played(const QList<Choice> &candidates) const;
    [[nodiscard]] std::optional<Choice> downloadedStandIn(Edition wanted);
    [[nodiscard]] bool showsDesktopPicture() const;
    [[nodiscard]] QString currentStatus() const;

    void setShuffling(bool shuffling);

    Services m_services;
    bool m_isOn = false;
    Interval m_interval = Interval::Day;
    Source m_source = Source::All;
    bool m_differentOnEachDisplay = false;
    bool m_isShuffling = false;
    UpNext m_upNext;
    std::optional<Prepared> m_prepared;
    QString m_status;

    ShuffleSchedule *m_schedule;
    std::optional<QCoro::Task<>> m_tick;
    std::shared_ptr<AsyncMutex> m_carryingOut;
};
