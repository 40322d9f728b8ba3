#pragma once

#include "edition.h"
#include "shuffle_settings.h"

#include <QLatin1StringView>
#include <QStringList>
#include <array>
#include <optional>

// The choices that automation offers. Their raw values are what a user's scripts and stored
// settings keep, so they never change; they differ on purpose from the shop's edition values
// ("appearance", "time-of-day") and from the shuffle's stored ones ("six-hours").
enum class EditionOption { Automatic, TimeOfDay, Light, Dark };
enum class ShuffleIntervalOption { Hour, SixHours, Day, Week };
enum class ShuffleSourceOption { All, Favourites };

// One case of an option: its value, raw value and label.
template<typename Option> struct OptionCase {
    Option value;
    QLatin1StringView rawValue;
    QLatin1StringView label;
};

// The type label and the cases of each option, in the order they are offered.
template<typename Option> struct OptionTraits;

template<> struct OptionTraits<EditionOption> {
    static constexpr QLatin1StringView typeLabel { "Edition" };
    static constexpr std::array<OptionCase<EditionOption>, 4> cases { {
        { EditionOption::Automatic, QLatin1StringView("automatic"),
          QLatin1StringView("Automatic") },
        { EditionOption::TimeOfDay, QLatin1StringView("timeOfDay"),
          QLatin1StringView("Time of day") },
        { EditionOption::Light, QLatin1StringView("light"), QLatin1StringView("Light") },
        { EditionOption::Dark, QLatin1StringView("dark"), QLatin1StringView("Dark") },
    } };
};

template<> struct OptionTraits<ShuffleIntervalOption> {
    static constexpr QLatin1StringView typeLabel { "How Often" };
    static constexpr std::array<OptionCase<ShuffleIntervalOption>, 4> cases { {
        { ShuffleIntervalOption::Hour, QLatin1StringView("hour"), QLatin1StringView("Every hour") },
        { ShuffleIntervalOption::SixHours, QLatin1StringView("sixHours"),
          QLatin1StringView("Every 6 hours") },
        { ShuffleIntervalOption::Day, QLatin1StringView("day"), QLatin1StringView("Every day") },
        { ShuffleIntervalOption::Week, QLatin1StringView("week"), QLatin1StringView("Every week") },
    } };
};

template<> struct OptionTraits<ShuffleSourceOption> {
    static constexpr QLatin1StringView typeLabel { "Shuffle From" };
    static constexpr std::array<OptionCase<ShuffleSourceOption>, 2> cases { {
        { ShuffleSourceOption::All, QLatin1StringView("all"), QLatin1StringView("All your packs") },
        { ShuffleSourceOption::Favourites, QLatin1StringView("favourites"),
          QLatin1StringView("Favourites") },
    } };
};

template<typename Option> [[nodiscard]] QString optionRawValue(Option option)
{
    for (const auto &entry : OptionTraits<Option>::cases) {
        if (entry.value == option)
            return entry.rawValue;
    }
    return {};
}

template<typename Option> [[nodiscard]] QString optionLabel(Option option)
{
    for (const auto &entry : OptionTraits<Option>::cases) {
        if (entry.value == option)
            return entry.label;
    }
    return {};
}

template<typename Option> [[nodiscard]] QString optionTypeLabel()
{
    return OptionTraits<Option>::typeLabel;
}

// Exact raw values only: a stored value is never guessed at.
template<typename Option> [[nodiscard]] std::optional<Option> optionFromRawValue(QStringView raw)
{
    for (const auto &entry : OptionTraits<Option>::cases) {
        if (raw == entry.rawValue)
            return entry.value;
    }
    return std::nullopt;
}

template<typename Option> [[nodiscard]] QStringList optionRawValues()
{
    QStringList values;
    for (const auto &entry : OptionTraits<Option>::cases)
        values.append(entry.rawValue);
    return values;
}

[[nodiscard]] Edition toEdition(EditionOption option);
[[nodiscard]] ShuffleSettings::Interval toInterval(ShuffleIntervalOption option);
[[nodiscard]] ShuffleSettings::Source toSource(ShuffleSourceOption option);
