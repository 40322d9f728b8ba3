#pragma once

#include "edition.h"

#include <QString>

#include <optional>

// The edition options that automation and the Do Not Disturb setting store ("automatic",
// "timeOfDay", "light", "dark"). Kept apart from Edition's raw values on purpose: one set is
// stored by the desktop's automation, the other by the shop service.
namespace EditionOption
{
// Empty text is "automatic"; anything unknown is none.
[[nodiscard]] std::optional<Edition> toEdition(QStringView raw);
[[nodiscard]] QString rawValue(Edition edition);
} // namespace EditionOption
