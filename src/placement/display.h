#pragma once

#include <QRectF>
#include <QString>

#include <optional>

// One attached display as the desktop showed it at the last refresh.
struct Display {
    QString id; // stable across reconnection and restarts: the key of every per-display record
    QString name;
    QRectF frame; // relative to the top-left corner of the first screen
    bool isMain = false; // the first screen of the desktop's list
    std::optional<QString> wallpaper; // what it shows, by the current-picture rule

    bool operator==(const Display &) const = default;
};
