#pragma once

#include "edition.h"
#include "option_traits.h"

// The choices offered to scripts and in the Do Not Disturb setting. Their raw values are what
// a user's scripts and stored settings keep, so they never change; they differ on purpose from
// the shop's edition values ("appearance", "time-of-day").
enum class EditionOption { Automatic, TimeOfDay, Light, Dark };

template<> struct OptionTraits<EditionOption> {
    static constexpr QLatin1StringView typeLabel { QT_TRANSLATE_NOOP("Option", "Edition") };
    static constexpr std::array<OptionCase<EditionOption>, 4> cases { {
        { EditionOption::Automatic, QLatin1StringView("automatic"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Automatic")) },
        { EditionOption::TimeOfDay, QLatin1StringView("timeOfDay"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Time of day")) },
        { EditionOption::Light, QLatin1StringView("light"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Light")) },
        { EditionOption::Dark, QLatin1StringView("dark"),
          QLatin1StringView(QT_TRANSLATE_NOOP("Option", "Dark")) },
    } };
};

[[nodiscard]] Edition toEdition(EditionOption option);
[[nodiscard]] EditionOption toEditionOption(Edition edition);
