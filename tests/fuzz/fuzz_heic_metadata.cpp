#include "heic_xmp.h"

// Whatever a wallpaper file's XMP packet holds, reading it never crashes and any index it yields
// is below the picture count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto metadata = HeicXmp::metadata(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    for (const bool dark : { false, true }) {
        const auto index = metadata.pictureFor(dark, 3);
        if (index && (*index < 0 || *index >= 3))
            qFatal("picture index out of range");
    }
    return 0;
}
