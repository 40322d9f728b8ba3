#include "edition_choice.h"

std::optional<Edition> chooseEdition(const OwnedPack &pack, const QString &colourway,
                                     Edition wanted)
{
    const auto editions = pack.files.constFind(colourway);
    if (editions == pack.files.cend())
        return std::nullopt;

    const auto order = [wanted]() -> std::array<Edition, 4> {
        switch (wanted) {
        case Edition::Automatic:
            return { Edition::Automatic, Edition::TimeOfDay, Edition::Light, Edition::Dark };
        case Edition::TimeOfDay:
            return { Edition::TimeOfDay, Edition::Automatic, Edition::Light, Edition::Dark };
        case Edition::Light:
            return { Edition::Light, Edition::Automatic, Edition::TimeOfDay, Edition::Dark };
        case Edition::Dark:
            return { Edition::Dark, Edition::Automatic, Edition::TimeOfDay, Edition::Light };
        }
        Q_UNREACHABLE();
        return {};
    }();
    for (const Edition edition : order) {
        if (editions->contains(edition))
            return edition;
    }
    return std::nullopt;
}
