#include "heic_metadata.h"

std::optional<int> HeicMetadata::pictureFor(bool dark, int pictureCount) const
{
    for (const LightAndDark &entry : { m_appearance, m_solarAppearance }) {
        const auto index = dark ? entry.dark : entry.light;
        if (index && *index < pictureCount)
            return index;
    }
    return std::nullopt;
}
