#pragma once

#include "edition.h"
#include "error.h"
#include "placement_history.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <memory>

class Clock;
class Displays;
class Shop;
class SpacesHelper;
class WallpaperSetter;
struct WallpaperFile;

using PlacementHistoryEntries = QList<PlacementHistory::Entry>;

// The road of every request to set a wallpaper, whoever asks (the panel, the shuffle,
// automation, going back, an update): the store makes its file local, then the displays get it
// unless a newer request for the same display overtook it while it downloaded. Keeps the
// generation of each display and the history of earlier placements.
class WallpaperRequests : public QObject {
    Q_OBJECT
    Q_PROPERTY(PlacementHistoryEntries history READ history NOTIFY historyChanged)
    Q_PROPERTY(bool isGoingBack READ isGoingBack NOTIFY goingBackChanged)

public:
    // Every display of the request was taken over by a newer one while its file downloaded.
    class Overtaken : public Error {
    public:
        [[nodiscard]] QString description() const override;
        bool operator==(const Overtaken & /*other*/) const { return true; }
    };

    enum class Kind {
        Change, // a new wallpaper: what the displays showed goes into the history
        GoingBack, // a step back through the history
        Update, // the same wallpaper in a newer file: overtaken by any request, overtakes none
    };

    struct Services {
        Shop *shop = nullptr;
        Displays *displays = nullptr;
        WallpaperSetter *setter = nullptr;
        SpacesHelper *spaces = nullptr; // none: no workspace helper to tell
        std::shared_ptr<Clock> clock;
    };

    explicit WallpaperRequests(Services services, QObject *parent = nullptr);

    // Sets a colourway's edition (or the nearest one there is) on the displays; returns those
    // that a newer request did not overtake. Throws Shop::NotInPacks, Shop::Unavailable,
    // Overtaken (all of them overtaken), a download failure or the desktop's error.
    [[nodiscard]] QCoro::Task<QStringList> setWallpaper(QString pack, QString colourway,
                                                        Edition edition, QStringList displayIds);
    // Returns the displays it set, and throws, like setWallpaper.
    [[nodiscard]] QCoro::Task<QStringList> set(WallpaperFile file, QStringList displayIds,
                                               Kind kind);
    // Puts back what the displays showed before the latest change. Throws the first failure
    // after trying every display.
    [[nodiscard]] QCoro::Task<> goBack();

    [[nodiscard]] PlacementHistoryEntries history() const { return m_history.entries(); }
    [[nodiscard]] bool isGoingBack() const { return m_goingBack; }

Q_SIGNALS:
    void historyChanged();
    void goingBackChanged();

private:
    static QCoro::Task<QStringList> set(QPointer<WallpaperRequests> self, WallpaperFile file,
                                        QStringList displayIds, Kind kind);
    static QCoro::Task<> goBack(QPointer<WallpaperRequests> self);

    // The displays of the request that no newer one has taken over.
    [[nodiscard]] QStringList current(const QStringList &displayIds,
                                      const QHash<QString, quint64> &started) const;
    [[nodiscard]] PlacementHistory::Entry shownOn(const QStringList &displayIds) const;
    void setGoingBack(bool goingBack);

    Services m_services;
    QHash<QString, quint64> m_generations; // by display id
    PlacementHistory m_history;
    bool m_goingBack = false;
};
