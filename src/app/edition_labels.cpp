#include "edition_labels.h"

#include "edition.h"

using namespace Qt::Literals::StringLiterals;

namespace EditionLabels {
QString edition(const QString &raw)
{
    const auto edition = editionFromRawValue(raw);
    if (!edition)
        return raw;
    switch (*edition) {
    case Edition::Automatic:
        return u"Automatic"_s;
    case Edition::TimeOfDay:
        return u"Time of day"_s;
    case Edition::Light:
        return u"Light"_s;
    case Edition::Dark:
        return u"Dark"_s;
    }
    return raw;
}
} // namespace EditionLabels
