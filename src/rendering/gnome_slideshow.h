#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// GNOME's timed background file: the desktop itself switches pictures through the day.
namespace GnomeSlideshow {
struct Entry {
    double dayFraction = 0; // local time the picture starts showing; 0.5 is noon
    QString path;
};

// A day-long loop starting at local midnight; the entry showing at midnight is the last of the
// day. Entries may come in any order.
[[nodiscard]] QByteArray xml(QList<Entry> entries);
} // namespace GnomeSlideshow
