#pragma once

#include <QList>
#include <optional>

// What a dynamic HEIC wallpaper says about its pictures in its XMP packet: which picture is the
// light one and which the dark one ("apr"), and which to show through the day ("h24" by time,
// "solar" by the sun's position). Each entry is a base64 binary property list.
class HeicMetadata {
public:
    struct LightAndDark {
        std::optional<int> light;
        std::optional<int> dark;

        bool operator==(const LightAndDark &) const = default;
    };

    struct TimedPicture {
        double dayFraction = 0; // 0.5 is noon
        int index = 0;

        bool operator==(const TimedPicture &) const = default;
    };

    struct SolarPicture {
        double altitude = 0; // degrees above the horizon
        double azimuth = 0; // degrees from north
        int index = 0;

        bool operator==(const SolarPicture &) const = default;
    };

    HeicMetadata() = default;
    // Read from a file's XMP packet by the HEIC decoder (HeicXmp), which lives in a module.
    HeicMetadata(LightAndDark appearance, LightAndDark solarAppearance, LightAndDark timeAppearance,
                 QList<TimedPicture> times, QList<SolarPicture> solarPositions)
        : m_appearance(appearance)
        , m_solarAppearance(solarAppearance)
        , m_timeAppearance(timeAppearance)
        , m_times(std::move(times))
        , m_solar(std::move(solarPositions))
    {
    }

    [[nodiscard]] LightAndDark appearance() const { return m_appearance; } // "apr"
    [[nodiscard]] LightAndDark solarAppearance() const
    {
        return m_solarAppearance;
    } // "ap" of "solar"
    [[nodiscard]] LightAndDark timeAppearance() const { return m_timeAppearance; } // "ap" of "h24"
    [[nodiscard]] QList<TimedPicture> times() const { return m_times; }
    [[nodiscard]] QList<SolarPicture> solarPositions() const { return m_solar; }

    // The picture for light or dark: "apr" first, then the "ap" of "solar"; an index that is not
    // below pictureCount is skipped. None means the primary picture.
    [[nodiscard]] std::optional<int> pictureFor(bool dark, int pictureCount) const;

private:
    LightAndDark m_appearance;
    LightAndDark m_solarAppearance;
    LightAndDark m_timeAppearance;
    QList<TimedPicture> m_times;
    QList<SolarPicture> m_solar;
};
