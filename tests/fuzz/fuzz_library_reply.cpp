#include "content_rules.h"
#include "error.h"
#include "library_reply.h"

#include <QJsonDocument>

// Any input either fails with DecodingError or decodes, converts, and survives a round trip.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const auto reply = LibraryReply::decode(bytes);
        (void)reply.ownedPacks(SourceRule::pathRule());
        if (LibraryReply::decode(QJsonDocument(reply.toJson()).toJson()) != reply)
            qFatal("library reply changed in a round trip");
    } catch (const DecodingError &) {
    }
    return 0;
}
