#pragma once

#include "desktop_backend.h"
#include "placement.h"
#include "placement_records.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QRectF>
#include <memory>
#include <optional>

class CancelToken;
class Clock;

// Which displays are attached, what each shows, and which of the user's wallpapers was put on
// which: the only caller of the desktop's set-picture operation and the only writer of
// "placements.json".
class Displays : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<Display> all READ all NOTIFY allChanged)
    Q_PROPERTY(bool useOnAllSpaces READ useOnAllSpaces WRITE setUseOnAllSpaces NOTIFY
                   useOnAllSpacesChanged)

public:
    // One attached display as the desktop showed it at the last refresh. Nested: X11's headers,
    // which Qt's GUI headers pull in, take the global name.
    struct Display {
        QString id; // stable across reconnection and restarts: the key of every per-display record
        QString name;
        QRectF frame; // relative to the top-left corner of the first screen
        QSize pixels; // its size in device pixels
        bool isMain = false; // the first screen of the desktop's list
        std::optional<QString> wallpaper; // what it shows, by the current-picture rule
        // What a thumbnail of it shows in light and in dark.
        std::optional<QString> thumbnail;
        std::optional<QString> thumbnailDark;

        bool operator==(const Display &) const = default;
    };

    // A picture just set that the desktop may not report yet.
    struct Pending {
        QString path;
        QDateTime until;
    };

    // Reads the placement records, refreshes, then follows screen, activation and workspace
    // changes.
    Displays(DesktopBackend *backend, PlacementRecords records, std::shared_ptr<Clock> clock,
             QObject *parent = nullptr);
    ~Displays() override;

    [[nodiscard]] QList<Display> all() const { return m_all; }
    // The ids of all(), in its order.
    [[nodiscard]] QStringList ids() const;
    [[nodiscard]] PlacementFile file() const { return m_file; }
    [[nodiscard]] DesktopBackend *backend() const { return m_backend; }
    [[nodiscard]] bool hasPending() const { return !m_pending.isEmpty(); }

    // Re-reads the screens and their pictures; observers hear only of a change.
    void refresh();

    // Gives picture to the desktop on every attached display whose id is listed and records
    // placement for each, with picture's path as its path; detached ids are skipped. Throws the
    // desktop's DesktopError after saving what was recorded.
    QCoro::Task<> set(DesktopPicture picture, Placement placement, QStringList displayIds);
    // Puts a picture of their own back on displays: their records stay.
    QCoro::Task<> restore(QStringList displayIds, QString path);

    // "Use on all workspaces": the placement file's useOnAllSpaces, which the workspace helper
    // follows. Saved at once.
    [[nodiscard]] bool useOnAllSpaces() const { return m_file.useOnAllSpaces; }
    void setUseOnAllSpaces(bool on);

    // The current-picture rule: what the desktop reports, unless a picture set less than 3 s ago
    // has not reached it yet.
    [[nodiscard]] std::optional<QString> current(const DesktopScreen &screen,
                                                 const QString &displayId);
    [[nodiscard]] std::optional<Placement> placement(const QString &displayId) const;
    // Whether a display shows the wallpaper recorded for it, rather than something chosen in
    // your desktop settings ("Not from your packs").
    [[nodiscard]] bool showsOwnWallpaper(const Display &display) const;

    // Writes the records; false when they could not be written.
    bool save();

Q_SIGNALS:
    void allChanged();
    void fileChanged();
    void useOnAllSpacesChanged();

private:
    QCoro::Task<> put(DesktopPicture picture, std::optional<Placement> placement,
                      QStringList displayIds);
    void settle();

    DesktopBackend *m_backend;
    PlacementRecords m_records;
    std::shared_ptr<Clock> m_clock;
    QList<Display> m_all;
    PlacementFile m_file;
    QHash<QString, Pending> m_pending;
    std::shared_ptr<CancelToken> m_settling;
};
