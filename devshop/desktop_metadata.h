#pragma once

#include <QByteArray>
#include <QList>

// The XMP packets that tell a desktop which picture of a HEIC file to show: apple_desktop:apr
// (light and dark), apple_desktop:h24 (times of day) and apple_desktop:solar (sun positions).
// Each holds a base64 binary property list.
namespace DesktopMetadata {
struct TimeEntry {
    double dayFraction = 0; // 0.5 is noon
    int picture = 0;
};

struct SolarEntry {
    double altitude = 0; // degrees
    double azimuth = 0; // degrees
    int picture = 0;
};

[[nodiscard]] QByteArray appearance(int light, int dark);
[[nodiscard]] QByteArray timeOfDay(const QList<TimeEntry> &entries, int light, int dark);
[[nodiscard]] QByteArray solar(const QList<SolarEntry> &entries, int light, int dark);
} // namespace DesktopMetadata
