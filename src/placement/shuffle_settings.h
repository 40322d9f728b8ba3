#pragma once

#include "option_traits.h"

#include <QObject>
#include <QString>
#include <chrono>

// How often the shuffle changes the wallpaper and where it draws from, with the raw texts the
// user's settings keep them as.
namespace ShuffleSettings {
Q_NAMESPACE

enum class Interval { Hour, SixHours, Day, Week };
Q_ENUM_NS(Interval)

enum class Source { All, Favourites };
Q_ENUM_NS(Source)

[[nodiscard]] QString rawValue(Interval interval);
// Day for anything unknown.
[[nodiscard]] Interval intervalFromRawValue(QStringView raw);

[[nodiscard]] QString rawValue(Source source);
// Only the exact text "favourites" selects the favourites.
[[nodiscard]] Source sourceFromRawValue(QStringView raw);

// How far apart shuffles are when the calendar finds no boundary.
[[nodiscard]] std::chrono::seconds fallbackLength(Interval interval);
} // namespace ShuffleSettings

template<> struct OptionTraits<ShuffleSettings::Interval> {
    using Interval = ShuffleSettings::Interval;
    static constexpr std::array<OptionCase<Interval>, 4> cases { {
        { Interval::Hour, QLatin1StringView("hour") },
        { Interval::SixHours, QLatin1StringView("six-hours") },
        { Interval::Day, QLatin1StringView("day") },
        { Interval::Week, QLatin1StringView("week") },
    } };
};

template<> struct OptionTraits<ShuffleSettings::Source> {
    using Source = ShuffleSettings::Source;
    static constexpr std::array<OptionCase<Source>, 2> cases { {
        { Source::All, QLatin1StringView("all") },
        { Source::Favourites, QLatin1StringView("favourites") },
    } };
};
