#pragma once

#include "placement.h"

#include <QCoroTask>
#include <QObject>
#include <optional>

// What the shuffle needs of the displays: which are attached, in the desktop's order, what was
// put on each and whether it still shows that. The composition root implements it over Displays.
class ShuffleDisplays : public QObject
{
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

    // Puts a picture that is on disk back on one display, recording placement for it when it is
    // one of the user's wallpapers. Throws the desktop's error.
    [[nodiscard]] virtual QCoro::Task<> restore(QString displayId, QString path,
                                                std::optional<Placement> placement) = 0;

Q_SIGNALS:
    // Any change: a display attached or detached, a picture or a placement.
    void changed();
    // Screens were added, removed or rearranged.
    void screensChanged();
};
