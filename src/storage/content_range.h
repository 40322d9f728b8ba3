#pragma once

#include <QByteArrayView>
#include <optional>

// Where the body of a 206 response starts, from its "Content-Range" header.
namespace ContentRange {
// The first "bytes FIRST-LAST/TOTAL" (TOTAL may be "*") in the header; none when there is no
// such part or FIRST does not fit in 64 bits.
[[nodiscard]] std::optional<qint64> start(QByteArrayView header);
} // namespace ContentRange
