#pragma once

#include <QString>

// The words the views use for editions, shuffle intervals and sources, as the automation's option
// lists name them.
namespace EditionLabels {
// "appearance" is "Automatic", "time-of-day" "Time of day", and so on; unknown text as it is.
[[nodiscard]] QString edition(const QString &raw);
} // namespace EditionLabels
