#pragma once

#include "pack.h"

#include <QUrl>

// Which artwork a view shows of a colourway: small tiles take the thumbnail of the appearance
// (else any thumbnail, else the full-size art); large previews take the full-size art first.
// Only HTTPS addresses count: anything else gives none, and the view its placeholder.
namespace ArtworkUrls {
[[nodiscard]] QUrl thumbnail(const Colourway &colourway, Appearance appearance);
[[nodiscard]] QUrl preview(const Colourway &colourway, Appearance appearance);
} // namespace ArtworkUrls
