#include "edition.h"

QString rawValue(Edition edition)
{
    return optionRawValue(edition);
}

std::optional<Edition> editionFromRawValue(QStringView raw)
{
    return optionFromRawValue<Edition>(raw);
}

QString rawValue(Appearance appearance)
{
    return optionRawValue(appearance);
}

std::optional<Appearance> appearanceFromRawValue(QStringView raw)
{
    return optionFromRawValue<Appearance>(raw);
}
