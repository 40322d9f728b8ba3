#pragma once

#include "error.h"
#include "placement_history.h"
#include "placement_records.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <functional>
#include <memory>

class Clock;
class WallpaperTarget;
class WorkspaceHelper;
struct WallpaperFile;

// The last steps of setting a wallpaper, whoever asks (the panel, the shuffle, automation, going
// back, an update): make its file local, then hand it to the displays unless a newer request for
// the same display overtook it while it downloaded. Keeps the generation of each display, the
// files that are about to be set, and the history of earlier placements.
class WallpaperRequests : public QObject {
    Q_OBJECT

public:
    // Every display of the request was taken over by a newer one while its file downloaded.
    class Overtaken : public Error {
    public:
        [[nodiscard]] QString description() const override;
        bool operator==(const Overtaken &) const { return true; }
    };

    enum class Kind {
        Change, // a new wallpaper: what the displays showed goes into the history
        GoingBack, // a step back through the history
        Update, // the same wallpaper in a newer file: overtaken by any request, overtakes none
    };

    using Local = std::function<QCoro::Task<QString>(WallpaperFile)>;
    // The file a recorded placement names now; none when it is no longer in the user's packs.
    using Resolve = std::function<std::optional<WallpaperFile>(const Placement &)>;

    WallpaperRequests(Local local, WallpaperTarget *target, WorkspaceHelper *helper,
                      PlacementRecords records, std::shared_ptr<Clock> clock,
                      QObject *parent = nullptr);

    // Returns the displays it set: a newer request for the others finished first. Throws
    // Overtaken when that is all of them, what making the file local threw, or the desktop's
    // error.
    [[nodiscard]] QCoro::Task<QStringList> set(WallpaperFile file, QStringList displayIds,
                                               Kind kind);
    // Re-applies the placements before the latest change through set(). Throws the first
    // failure after trying every display.
    [[nodiscard]] QCoro::Task<> goBack(Resolve resolve);

    [[nodiscard]] const QList<PlacementHistory::Entry> &history() const
    {
        return m_history.entries();
    }
    [[nodiscard]] bool isGoingBack() const { return m_goingBack; }
    // A file between its download and its handing over: the keep rule must not remove it.
    [[nodiscard]] bool isPinned(const QString &path) const { return m_pins.contains(path); }

Q_SIGNALS:
    void historyChanged();
    void goingBackChanged();

private:
    static QCoro::Task<QStringList> set(QPointer<WallpaperRequests> self, WallpaperFile file,
                                        QStringList displayIds, Kind kind);
    static QCoro::Task<> goBack(QPointer<WallpaperRequests> self, Resolve resolve);

    void pin(const QString &path);
    void unpin(const QString &path);
    void setGoingBack(bool goingBack);

    Local m_local;
    WallpaperTarget *m_target;
    WorkspaceHelper *m_helper;
    PlacementRecords m_records;
    std::shared_ptr<Clock> m_clock;
    QHash<QString, quint64> m_generations; // by display id
    QHash<QString, int> m_pins; // path to the requests using it
    PlacementHistory m_history;
    bool m_goingBack = false;
};
