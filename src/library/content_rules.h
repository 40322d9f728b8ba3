#pragma once

#include "file_source.h"

#include <optional>

// The content rules of the shop's replies: entries that break them are dropped one by one,
// while the rest of the reply stays.
namespace ContentRules {
// Lowercase letters and digits in groups joined by single hyphens, at most 64 characters.
[[nodiscard]] bool isValidSlug(QStringView text);
// "f_" or "a_" and 12 to 64 lowercase hexadecimal digits.
[[nodiscard]] bool isValidIdentifier(QStringView text);
// 64 hexadecimal digits, either case.
[[nodiscard]] bool isValidHash(QStringView text);
} // namespace ContentRules

// How a file's "path" and "url" become its FileSource.
class SourceRule {
public:
    // A path resolved against the base gives a local source; with no base, or no path, the file
    // comes from the shop through a signed link. The library is always read this way without a
    // base.
    [[nodiscard]] static SourceRule pathRule(std::optional<QUrl> base = std::nullopt);
    // Only an https URL on the base's own host is used; anything else gives no source.
    [[nodiscard]] static SourceRule urlRule(const QUrl &base, bool local = false);

    [[nodiscard]] std::optional<FileSource> source(const std::optional<QString> &path,
                                                   const std::optional<QString> &url) const;

private:
    enum class Kind { Path, Url };

    SourceRule(Kind kind, std::optional<QUrl> base, bool local);

    Kind m_kind;
    std::optional<QUrl> m_base;
    bool m_local = false;
};
