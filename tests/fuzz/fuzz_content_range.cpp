#include "content_range.h"

#include <QByteArray>

namespace {
// Whether the header has "bytes " and then the number in decimal (leading zeros allowed) and "-".
bool holds(const QByteArray &header, qint64 start)
{
    for (qsizetype at = header.indexOf("bytes "); at >= 0; at = header.indexOf("bytes ", at + 1)) {
        qsizetype end = at + 6;
        while (end < header.size() && header[end] >= '0' && header[end] <= '9')
            ++end;
        bool ok = false;
        if (end < header.size() && header[end] == '-'
            && header.mid(at + 6, end - at - 6).toLongLong(&ok) == start && ok)
            return true;
    }
    return false;
}
} // namespace

// Whatever "Content-Range" a server sends, reading it never crashes, and a start it yields is
// written in the header as the first byte of a range.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray header(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto start = ContentRange::start(header)) {
        if (*start < 0 || !holds(header, *start))
            qFatal("a start that the header does not hold");
    }
    return 0;
}
