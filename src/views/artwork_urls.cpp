#include "artwork_urls.h"

using namespace Qt::Literals::StringLiterals;

namespace {
// Catalogue art is the shop's: a local file or plain http named by the catalogue is never shown.
bool isFetchable(const QUrl &url)
{
    return url.scheme() == "https"_L1 && !url.host().isEmpty();
}

QUrl fetchable(const std::optional<QUrl> &url)
{
    return url && isFetchable(*url) ? *url : QUrl();
}
} // namespace

namespace ArtworkUrls {
QUrl thumbnail(const Colourway &colourway, Appearance appearance)
{
    const Appearance other = appearance == Appearance::Light ? Appearance::Dark : Appearance::Light;
    for (const Appearance wanted : { appearance, other }) {
        if (const auto it = colourway.thumbnails.constFind(wanted);
            it != colourway.thumbnails.cend() && isFetchable(*it))
            return *it;
    }
    return fetchable(colourway.artwork(appearance));
}

QUrl preview(const Colourway &colourway, Appearance appearance)
{
    return fetchable(colourway.artwork(appearance));
}
} // namespace ArtworkUrls
