#pragma once

#include "owned_pack.h"

#include <optional>

// Which of a colourway's files to set when the wanted edition may be missing. A file that follows
// the appearance or the time of day is preferred to a fixed one, since it holds both looks:
//   automatic:   automatic, time of day, light, dark
//   time of day: time of day, automatic, light, dark
//   light:       light, automatic, time of day, dark
//   dark:        dark, automatic, time of day, light
// None when the colourway has no file at all.
[[nodiscard]] std::optional<Edition> chooseEdition(const OwnedPack &pack, const QString &colourway,
                                                   Edition wanted);
