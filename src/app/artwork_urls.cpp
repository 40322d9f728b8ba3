#include "artwork_urls.h"

namespace ArtworkUrls {
QUrl thumbnail(const Colourway &colourway, Appearance appearance)
{
    const Appearance other = appearance == Appearance::Light ? Appearance::Dark : Appearance::Light;
    for (const Appearance wanted : { appearance, other }) {
        if (const auto it = colourway.thumbnails.constFind(wanted);
            it != colourway.thumbnails.cend())
            return *it;
    }
    return colourway.artwork(appearance).value_or(QUrl());
}

QUrl preview(const Colourway &colourway, Appearance appearance)
{
    return colourway.artwork(appearance).value_or(QUrl());
}
} // namespace ArtworkUrls
