#include "edition_option.h"

using namespace Qt::Literals::StringLiterals;

namespace EditionOption
{
std::optional<Edition> toEdition(QStringView raw)
{
    if (raw.isEmpty())
        return Edition::Automatic;
    for (const Edition edition : allEditions) {
        if (raw == EditionOption::rawValue(edition))
            return edition;
    }
    return std::nullopt;
}

QString rawValue(Edition edition)
{
    switch (edition) {
    case Edition::Automatic:
        return u"automatic"_s;
    case Edition::TimeOfDay:
        return u"timeOfDay"_s;
    case Edition::Light:
        return u"light"_s;
    case Edition::Dark:
        return u"dark"_s;
    }
    Q_UNREACHABLE();
    return {};
}
} // namespace EditionOption
