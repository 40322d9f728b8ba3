#pragma once

#include "automation_options.h"
#include "error.h"
#include "wallpaper_entity.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

class Displays;
class Favourites;
class Shop;
class WallpaperRequests;
class Shuffle;

// What automation can do: shuffle, set, read and favourite the wallpaper, and change the
// shuffle's settings. It only gathers what a request needs, calls the objects that do the work,
// and words their outcomes; nothing here changes anything before every check has passed.
class Intents : public QObject {
    Q_OBJECT

public:
    // The failures that automation reports itself; other failures pass through unchanged.
    class Failure : public Error {
    public:
        enum class Case { NotReady, NotFound, NoWallpaper, Overtaken };

        explicit Failure(Case failure)
            : m_case(failure)
        {
        }

        [[nodiscard]] Case failure() const { return m_case; }
        [[nodiscard]] QString description() const override;

        bool operator==(const Failure &other) const { return m_case == other.m_case; }

    private:
        Case m_case;
    };

    struct Services {
        Shop *shop = nullptr;
        WallpaperRequests *requests = nullptr;
        Displays *displays = nullptr;
        Favourites *favourites = nullptr;
        Shuffle *shuffle = nullptr;
    };

    explicit Intents(Services services, QObject *parent = nullptr);

    // False until the library has first loaded: until then whatever needs it fails with
    // NotReady.
    [[nodiscard]] bool isReady() const;

    // A shuffle now under the current settings; throws the shuffle's own failures.
    [[nodiscard]] QCoro::Task<> shuffleWallpaper();
    // Sets a colourway on every display, downloading it first when needed. Throws NotFound when
    // it is not in the user's packs and Overtaken when another wallpaper was set meanwhile.
    [[nodiscard]] QCoro::Task<> setWallpaper(QString id, EditionOption edition);
    // The wallpaper the main display shows; throws NoWallpaper when it shows none of the user's.
    [[nodiscard]] WallpaperEntity currentWallpaper() const;
    // Interval and source are left as they are when not given. Throws Defaults::NotSaved when a
    // setting couldn't be saved; those before it are kept.
    void setShuffle(bool isOn, std::optional<ShuffleIntervalOption> interval,
                    std::optional<ShuffleSourceOption> source);
    // Makes the main display's wallpaper a favourite. Never removes one: a favourite already
    // stays where it is in the list. Throws Defaults::NotSaved when the list couldn't be saved.
    void favouriteCurrentWallpaper();
    // The wallpapers of the user's packs as they are now.
    [[nodiscard]] WallpaperQuery query() const;

private:
    void requireReady() const;

    Services m_services;
};
