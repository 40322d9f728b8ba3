#include "content_rules.h"

using namespace Qt::Literals::StringLiterals;

namespace ContentRules {
namespace {
bool isLowerAlnum(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

bool isLowerHex(QChar c)
{
    return (c >= u'a' && c <= u'f') || (c >= u'0' && c <= u'9');
}

bool isHex(QChar c)
{
    return isLowerHex(c) || (c >= u'A' && c <= u'F');
}
} // namespace

bool isValidSlug(QStringView text)
{
    if (text.isEmpty() || text.size() > 64)
        return false;
    bool afterHyphen = true; // a slug starts like a group: no leading hyphen
    for (const QChar c : text) {
        if (c == u'-') {
            if (afterHyphen)
                return false;
            afterHyphen = true;
        } else if (isLowerAlnum(c)) {
            afterHyphen = false;
        } else {
            return false;
        }
    }
    return !afterHyphen;
}

bool isValidIdentifier(QStringView text)
{
    if (text.size() < 14 || text.size() > 66 || (text[0] != u'f' && text[0] != u'a')
        || text[1] != u'_')
        return false;
    return std::all_of(text.begin() + 2, text.end(), isLowerHex);
}

bool isValidHash(QStringView text)
{
    return text.size() == 64 && std::all_of(text.begin(), text.end(), isHex);
}
} // namespace ContentRules

SourceRule::SourceRule(Kind kind, std::optional<QUrl> base, bool local)
    : m_kind(kind)
    , m_base(std::move(base))
    , m_local(local)
{
}

SourceRule SourceRule::pathRule(std::optional<QUrl> base)
{
    return { Kind::Path, std::move(base), true };
}

SourceRule SourceRule::urlRule(const QUrl &base, bool local)
{
    return { Kind::Url, base, local };
}

std::optional<FileSource> SourceRule::source(const std::optional<QString> &path,
                                             const std::optional<QString> &url) const
{
    if (m_kind == Kind::Path) {
        if (path && m_base) {
            const QUrl resolved = m_base->resolved(QUrl(*path));
            if (resolved.isValid())
                return FileSource::local(resolved);
        }
        return FileSource::shop();
    }

    if (!url)
        return std::nullopt;
    const QUrl resolved = m_base->resolved(QUrl(*url));
    if (!resolved.isValid())
        return std::nullopt;
    if (m_local)
        return FileSource::local(resolved);
    if (resolved.scheme() == "https"_L1
        && resolved.host(QUrl::FullyEncoded) == m_base->host(QUrl::FullyEncoded))
        return FileSource::publicUrl(resolved);
    return std::nullopt;
}
