#pragma once

#include "placement.h"

#include <QCoroTask>
#include <QObject>
#include <optional>

// What the shuffle needs of the displays: which are attached, in the desktop's order, what was
// put on each and whether it still shows that. The composition root implements it over Displays.
class ShuffleDisplays : public QObject {
    Q_OBJECT

public:
    struct Screen {
        QString id;
        std::optional<Placement> placement;
        // False for a picture chosen in your desktop settings ("Not from your packs").
        bool showsOwnWallpaper = false;
        // The picture it shows, as far as the desktop tells.
        std::optional<QString> picture;

        bool operator==(const Screen &) const = default;
    };

    explicit ShuffleDisplays(QObject *parent = nullptr);

    [[nodiscard]] virtual QList<Screen> screens() const = 0;

    // Puts back what displays showed, on all of them at once as it was set: one of the user's
    // wallpapers (placement, recorded again) as a set of its edition shows it, else the picture
    // at path as it is. Throws the desktop's error.
    [[nodiscard]] virtual QCoro::Task<> restore(QStringList displayIds, QString path,
                                                std::optional<Placement> placement) = 0;
    // Whether restore finds on disk what it needs: the picture, or the wallpaper file that a
    // placement's picture was made from.
    [[nodiscard]] virtual bool canRestore(const QString &path,
                                          const std::optional<Placement> &placement) const;

Q_SIGNALS:
    // Any change: a display attached or detached, a picture or a placement.
    void changed();
    // Screens were added, removed or rearranged.
    void screensChanged();
};
