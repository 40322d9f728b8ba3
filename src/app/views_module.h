#pragma once

#include "views.h"

#include <memory>

// The views' module, loaded at the first view: from beside the program when it is there, as in
// a build folder, or else from where the package installs it.
namespace ViewsModule {
// The views, or nullptr, with the reason logged, when the module cannot be loaded.
[[nodiscard]] std::unique_ptr<Views> load();
} // namespace ViewsModule
