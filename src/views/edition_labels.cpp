#include "edition_labels.h"

#include "edition_option.h"

namespace EditionLabels {
QString edition(const QString &raw)
{
    const auto edition = editionFromRawValue(raw);
    return edition ? optionLabel(toEditionOption(*edition)) : raw;
}
} // namespace EditionLabels
