#pragma once

#include "await_task.h"
#include "defaults.h"
#include "favourites.h"
#include "focus_wallpaper.h"
#include "shuffle.h"
#include "shuffle_displays.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"
#include "test_clock.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <functional>

class FakeDisplays;

// The library store as the shuffle sees it: choices, files on disk, and the sets it was asked for.
class FakeStore : public ShuffleStore {
    Q_OBJECT

public:
    struct Set {
        QString key;
        Edition wanted = Edition::Automatic;
        QStringList displayIds;
        QDateTime at;
    };

    using ShuffleStore::ShuffleStore;

    void setChoices(const QList<ShuffleChoice> &choices)
    {
        m_choices = choices;
        Q_EMIT choicesChanged();
    }
    [[nodiscard]] QList<ShuffleChoice> choices() const override { return m_choices; }
    [[nodiscard]] bool isDownloaded(const ShuffleChoice &choice, Edition) const override
    {
        return downloaded.contains(choice.key());
    }
    QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition wanted,
                               QStringList displayIds) override;
    // Lets every held set go on, in order.
    void releaseHeld();

    QSet<QString> downloaded; // keys on disk
    bool downloadsFail = false; // of anything not on disk
    bool holds = false; // each set waits for releaseHeld()
    std::shared_ptr<TestClock> clock;
    FakeDisplays *shows = nullptr; // its displays show what is set, when given
    QList<Set> sets;
    int attempts = 0;

private:
    QList<ShuffleChoice> m_choices;
    QList<std::shared_ptr<CancelToken>> m_held;
};

class FakeDisplays : public ShuffleDisplays {
    Q_OBJECT

public:
    using ShuffleDisplays::ShuffleDisplays;

    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }
    QCoro::Task<> restore(QStringList displayIds, QString path,
                          std::optional<Placement> placement) override;
    void setScreens(const QList<Screen> &screens)
    {
        m_screens = screens;
        Q_EMIT changed();
    }
    // The displays now show a picture: one of the user's colourways with a placement, else one
    // chosen in the desktop's settings.
    void show(const QStringList &ids, const QString &path, std::optional<Placement> placement);
    // A display now shows one of the user's colourways, as a set leaves it.
    void show(const QString &id, const QString &key, Edition edition = Edition::Automatic);
    // A display now shows a picture chosen in the desktop's settings.
    void showPicture(const QString &id, const QString &path) { show({ id }, path, std::nullopt); }

    std::shared_ptr<TestClock> clock;
    std::optional<QString> refusal; // restores fail with this
    QList<std::pair<QString, QString>> restores; // display id, path; one per display

private:
    QList<Screen> m_screens;
};

[[nodiscard]] QDateTime utc(const char *iso);

// Colourways c1…cN of pack p, in that order.
[[nodiscard]] QList<ShuffleChoice> sampleChoices(int count);

// The Do Not Disturb wallpaper and the shuffle that gives way to it, built and started as the
// program does.
struct ShuffleStack {
    ShuffleStack(ShuffleStore *store, ShuffleDisplays *displays, Favourites *favourites,
                 Defaults *defaults, SleepWatcher *sleep, const std::shared_ptr<Clock> &clock,
                 QRandomGenerator *random);

    FocusWallpaper focus;
    Shuffle shuffle;
};

// A shuffle and the Do Not Disturb wallpaper over fakes, their settings in a file of their own,
// the random source seeded. It starts with one display, "one", which follows what the store sets,
// and `choices` colourways of sampleChoices().
struct ShuffleRig {
    // settings: what the file holds before anything reads it.
    explicit ShuffleRig(const QDateTime &now, const QVariantMap &settings = {}, int choices = 3,
                        quint32 seed = 1);

    // Builds both anew from what the settings hold now, as a relaunch does, and starts them.
    Shuffle &make();
    [[nodiscard]] QStringList setKeys() const;
    // The store's sets in full, as "p/c1 dark on one two".
    [[nodiscard]] QStringList sets() const;

    QTemporaryDir folder;
    Defaults defaults;
    FakeStore store;
    FakeDisplays displays;
    Favourites favourites;
    SleepWatcher sleep;
    std::shared_ptr<TestClock> clock;
    QRandomGenerator random;
    std::unique_ptr<ShuffleStack> made;
};

// Runs a task to its end; the sentence of what it threw, or none.
[[nodiscard]] inline std::optional<QString> failureOf(QCoro::Task<> task)
{
    const auto result = finish(std::move(task));
    return result.error ? std::optional(failureText(result)) : std::nullopt;
}
