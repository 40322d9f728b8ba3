#pragma once

#include "edition_option.h"
#include "shuffle_settings.h"

// The shuffle's choices as automation offers them. Their raw values differ on purpose from the
// shuffle's stored ones ("six-hours").
enum class ShuffleIntervalOption { Hour, SixHours, Day, Week };
enum class ShuffleSourceOption { All, Favourites };

template<> struct OptionTraits<ShuffleIntervalOption> {
    static constexpr QLatin1StringView typeLabel { QT_TRANSLATE_NOOP("Option", "How Often") };
    static constexpr std::array<OptionCase<ShuffleIntervalOption>, 4> cases { {
        { ShuffleIntervalOption::Hour, QLatin1StringView("hour"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Every hour")) },
        { ShuffleIntervalOption::SixHours, QLatin1StringView("sixHours"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Every 6 hours")) },
        { ShuffleIntervalOption::Day, QLatin1StringView("day"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Every day")) },
        { ShuffleIntervalOption::Week, QLatin1StringView("week"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Every week")) },
    } };
};

template<> struct OptionTraits<ShuffleSourceOption> {
    static constexpr QLatin1StringView typeLabel { QT_TRANSLATE_NOOP("Option", "Shuffle From") };
    static constexpr std::array<OptionCase<ShuffleSourceOption>, 2> cases { {
        { ShuffleSourceOption::All, QLatin1StringView("all"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "All your packs")) },
        { ShuffleSourceOption::Favourites, QLatin1StringView("favourites"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Favourites")) },
    } };
};

[[nodiscard]] ShuffleSettings::Interval toInterval(ShuffleIntervalOption option);
[[nodiscard]] ShuffleSettings::Source toSource(ShuffleSourceOption option);
