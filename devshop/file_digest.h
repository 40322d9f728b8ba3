#pragma once

#include <QString>
#include <optional>

namespace FileDigest {
// Lowercase hexadecimal SHA-256 of a file's bytes, or nothing when it cannot be read.
[[nodiscard]] std::optional<QString> sha256(const QString &path);
} // namespace FileDigest
