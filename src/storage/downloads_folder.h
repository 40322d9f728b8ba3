#pragma once

#include <QString>

#include <optional>

// Naming of the files Quennet saves into the user's Downloads folder.
namespace DownloadsFolder
{
// The shop's name reduced to its last path component; none when that is empty, "." or "..".
[[nodiscard]] std::optional<QString> safeName(const QString &shopName);
// The first free name in folder: the name itself, then "Name 2.ext", "Name 3.ext", …
[[nodiscard]] QString uniquePath(const QString &folder, const QString &name);
} // namespace DownloadsFolder
