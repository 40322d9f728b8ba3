#include "error.h"
#include "placement.h"

// Any input either fails with DecodingError or decodes and survives a round trip.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const auto file = PlacementFile::decode(bytes);
        if (PlacementFile::decode(file.encode()) != file)
            qFatal("placement file changed in a round trip");
        (void)ReleasedFile::decode(bytes);
    } catch (const DecodingError &) {
    }
    return 0;
}
