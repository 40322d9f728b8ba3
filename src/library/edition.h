#pragma once

#include "option_traits.h"

#include <QHashFunctions>
#include <QString>

// Which picture of a colourway a file is: one that follows light and dark, one that follows the
// time of day, or a fixed light or dark one. The raw value is the wire and storage form.
enum class Edition { Automatic, TimeOfDay, Light, Dark };

inline constexpr std::array allEditions { Edition::Automatic, Edition::TimeOfDay, Edition::Light,
                                          Edition::Dark };

template<> struct OptionTraits<Edition> {
    static constexpr std::array<OptionCase<Edition>, 4> cases { {
        // Deliberately not "automatic": that text is not an edition anywhere.
        { Edition::Automatic, QLatin1StringView("appearance") },
        { Edition::TimeOfDay, QLatin1StringView("time-of-day") },
        { Edition::Light, QLatin1StringView("light") },
        { Edition::Dark, QLatin1StringView("dark") },
    } };
};

[[nodiscard]] QString rawValue(Edition edition);
[[nodiscard]] std::optional<Edition> editionFromRawValue(QStringView raw);

// The light or dark variant of a piece of artwork.
enum class Appearance { Light, Dark };

inline constexpr std::array allAppearances { Appearance::Light, Appearance::Dark };

template<> struct OptionTraits<Appearance> {
    static constexpr std::array<OptionCase<Appearance>, 2> cases { {
        { Appearance::Light, QLatin1StringView("light") },
        { Appearance::Dark, QLatin1StringView("dark") },
    } };
};

[[nodiscard]] QString rawValue(Appearance appearance);
[[nodiscard]] std::optional<Appearance> appearanceFromRawValue(QStringView raw);

[[nodiscard]] inline size_t qHash(Edition edition, size_t seed = 0) noexcept
{
    return ::qHash(static_cast<int>(edition), seed);
}

[[nodiscard]] inline size_t qHash(Appearance appearance, size_t seed = 0) noexcept
{
    return ::qHash(static_cast<int>(appearance), seed);
}
