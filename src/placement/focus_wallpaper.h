#pragma once

#include "display_turn.h"
#include "edition.h"
#include "focus_record.h"
#include "shuffle_choice.h"

#include <QCoroTask>
#include <QDateTime>
#include <QHash>
#include <QPointer>
#include <memory>
#include <optional>

class AsyncMutex;
class CancelToken;
class Clock;
class Defaults;
class ShuffleDisplays;
class ShuffleStore;
class SleepWatcher;

// The Do Not Disturb wallpaper: while it is on, the chosen wallpaper holds every display; when it
// ends, what each display showed goes back one at a time, unless the user chose anew meanwhile.
// What waits to be put back survives failures, detached displays and relaunches.
class FocusWallpaper : public DisplayTurn {
    Q_OBJECT

public:
    struct Services {
        ShuffleStore *store = nullptr;
        ShuffleDisplays *displays = nullptr;
        Defaults *defaults = nullptr;
        SleepWatcher *sleep = nullptr;
        std::shared_ptr<Clock> clock;
    };

    // Reads the state the last run left; nothing is put back before start().
    explicit FocusWallpaper(Services services, QObject *parent = nullptr);
    ~FocusWallpaper() override;

    // Puts back what still waits from the last run.
    void start();

    // Do Not Disturb turned on with a wallpaper (a colourway key) in an edition, or turned off
    // or has none (no wallpaper). Puts that wallpaper on every display, keeping what each showed;
    // when it ends, puts those back one at a time. The same wallpaper and edition again change
    // nothing.
    void setWallpaper(const std::optional<QString> &wallpaper,
                      Edition edition = Edition::Automatic);
    // Whether a Do Not Disturb wallpaper is on.
    [[nodiscard]] bool isHeld() const override { return m_record.has_value(); }
    [[nodiscard]] std::optional<FocusRecord> record() const { return m_record; }
    // What still waits to be put back, by display id.
    [[nodiscard]] FocusRecord::Entries pendingRestores() const { return m_pending; }

Q_SIGNALS:
    // The wallpaper could not be set: nobody asked at that moment, so nobody has been told.
    void focusWallpaperFailed(const QString &reason);
    // The pending restores are due another try: 2 s after the screens change or the computer
    // wakes, and when a failed one may be tried again.
    void restoresDue();

private:
    static QCoro::Task<> change(QPointer<FocusWallpaper> self, quint64 generation,
                                QString wallpaper, Edition edition);
    static QCoro::Task<> restore(QPointer<FocusWallpaper> self);
    static QCoro::Task<> restoreOne(QPointer<FocusWallpaper> self, QStringList displayIds,
                                    FocusRecord::Entry entry);
    static QCoro::Task<> settled(QPointer<FocusWallpaper> self, std::shared_ptr<CancelToken> token,
                                 std::shared_ptr<Clock> clock);
    static QCoro::Task<> retryAt(QPointer<FocusWallpaper> self, std::shared_ptr<CancelToken> token,
                                 std::shared_ptr<Clock> clock, std::chrono::milliseconds wait);

    void end();
    void choicesChanged();
    void restoreWhenSettled();
    void restorePending();
    // The pending displays that go back with this one now, as one set; none while it waits. An
    // entry whose display shows the user's newer choice goes.
    [[nodiscard]] QStringList dueWith(const QString &id);
    // What a restore of these displays came to: done, or tried again after a while.
    void restored(QStringList ids, const std::optional<QString> &failure);
    void armRetry();
    void saveRecord();
    void savePending();
    [[nodiscard]] std::optional<ShuffleChoice> choiceFor(const QString &key) const;

    Services m_services;
    // The record of the wallpaper while on, counted changes so that a late one is discarded.
    std::optional<FocusRecord> m_record;
    quint64 m_generation = 0;
    std::optional<QCoro::Task<>> m_change;
    int m_changesRunning = 0; // including discarded ones whose set has not ended
    bool m_awaitsChoices = false; // the store had nothing yet: tried again when it has
    // What waits to be put back and when a failed one may be tried again.
    FocusRecord::Entries m_pending;
    QHash<QString, QDateTime> m_retryRestore;
    bool m_isRestoring = false;
    bool m_restoreAgain = false;
    std::optional<QCoro::Task<>> m_restoring;
    std::shared_ptr<CancelToken> m_retry;
    std::optional<QCoro::Task<>> m_retryTask;
    std::shared_ptr<CancelToken> m_settling;
    std::optional<QCoro::Task<>> m_settlingTask;
    // The change and the restores take turns at the displays.
    std::shared_ptr<AsyncMutex> m_turn;
};
