#pragma once

#include "edition.h"

#include <QLatin1StringView>
#include <QStringList>
#include <array>
#include <optional>

// The choices offered to scripts and in the Do Not Disturb setting. Their raw values are what
// a user's scripts and stored settings keep, so they never change; they differ on purpose from
// the shop's edition values ("appearance", "time-of-day").
enum class EditionOption { Automatic, TimeOfDay, Light, Dark };

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
[[nodiscard]] EditionOption toEditionOption(Edition edition);
