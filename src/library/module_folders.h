#pragma once

#include <QStringList>

// Where Quennet's modules (the views, the HEIC decoder) are looked for, in order: the running
// program's folder, which is where a build tree has them, then the folder the package installs
// them into. Needs the application object.
[[nodiscard]] QStringList moduleFolders();
