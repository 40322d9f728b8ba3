#pragma once

#include <QCoreApplication>
#include <QLatin1StringView>
#include <QStringList>
#include <array>
#include <optional>

// One case of an option: its value, raw value and label. Stored and wire texts leave the label
// out: only the choices offered to people have one, marked for translation in context "Option".
template<typename Option> struct OptionCase {
    Option value;
    QLatin1StringView rawValue;
    QLatin1StringView label;
};

// The cases of each option, in the order they are offered, and the type label of those offered
// to people.
template<typename Option> struct OptionTraits;

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
            return QCoreApplication::translate("Option", entry.label.data());
    }
    return {};
}

template<typename Option> [[nodiscard]] QString optionTypeLabel()
{
    return QCoreApplication::translate("Option", OptionTraits<Option>::typeLabel.data());
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
