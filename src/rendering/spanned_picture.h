#pragma once

#include <QList>
#include <QRect>
#include <QString>

// One picture across all monitors, for desktops that have a single wallpaper: each screen's
// region of the virtual desktop filled with its own picture, cropped to fill.
namespace SpannedPicture {
struct Part {
    QRect geometry;
    QString path; // a picture Qt can read; an unreadable one leaves its region black

    bool operator==(const Part &) const = default;
};

// The picture's file in folder, named stem and a digest of its parts, so that the same
// arrangement of the same pictures is made once; earlier files of that stem are removed. Empty
// when it cannot be written. Runs on any thread.
[[nodiscard]] QString compose(const QList<Part> &parts, const QString &folder, const QString &stem);
} // namespace SpannedPicture
