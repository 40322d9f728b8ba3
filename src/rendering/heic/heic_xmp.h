#pragma once

#include "heic_metadata.h"

class QByteArray;

// Reads what a dynamic wallpaper's XMP packet says about its pictures. Its entries are binary
// property lists, read with libplist: this is part of the HEIC module.
namespace HeicXmp {
// Never fails: whatever cannot be read is left empty.
[[nodiscard]] HeicMetadata metadata(const QByteArray &xmp);
} // namespace HeicXmp
