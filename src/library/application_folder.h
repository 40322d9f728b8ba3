#pragma once

#include <QString>

inline constexpr auto bundleIdentifier = "app.quennet.Quennet";

// The folder that holds every file Quennet keeps: the generic data location plus the bundle
// identifier ($XDG_DATA_HOME/app.quennet.Quennet on Linux).
[[nodiscard]] QString applicationFolder();
