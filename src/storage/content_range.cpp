#include "content_range.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace ContentRange {
std::optional<qint64> start(QByteArrayView header)
{
    // Not anchored: the first match anywhere in the header counts.
    static const QRegularExpression pattern(u"bytes ([0-9]+)-[0-9]+/([0-9]+|\\*)"_s);
    const auto match = pattern.match(QString::fromLatin1(header));
    if (!match.hasMatch())
        return std::nullopt;
    bool ok = false;
    const qint64 first = match.capturedView(1).toLongLong(&ok);
    return ok ? std::optional(first) : std::nullopt;
}
} // namespace ContentRange
