#include "catalogue_reply.h"
#include "error.h"

#include <QJsonDocument>

// Any input either fails with DecodingError or decodes, converts, and survives a round trip.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const auto reply = CatalogueReply::decode(bytes);
        const QUrl base(QStringLiteral("https://shop.example/api/app/v1"));
        (void)reply.catalogue(base);
        (void)reply.freePacks(base);
        if (CatalogueReply::decode(QJsonDocument(reply.toJson()).toJson()) != reply)
            qFatal("catalogue reply changed in a round trip");
    } catch (const DecodingError &) {
    }
    return 0;
}
