#pragma once

#include <QString>
#include <optional>

// The files Quennet saves into the user's Downloads folder: their names, and putting them there.
namespace DownloadsFolder {
// The shop's name reduced to its last path component; none when that is empty, "." or "..".
[[nodiscard]] std::optional<QString> safeName(const QString &shopName);

enum class Source { Keep, Remove };

// Puts source into folder under the first free form of name: the name itself, then
// "Name 2.ext", "Name 3.ext", … Each file is created exclusively and never through a symbolic
// link, so a name anything holds (a dangling link too) is passed over and nothing lands outside
// the folder. Throws FileError.
QString put(const QString &source, const QString &folder, const QString &name, Source after);
} // namespace DownloadsFolder
