#include "edition.h"

using namespace Qt::Literals::StringLiterals;

QString rawValue(Edition edition)
{
    switch (edition) {
    case Edition::Automatic:
        // Deliberately not "automatic": that text is not an edition anywhere.
        return u"appearance"_s;
    case Edition::TimeOfDay:
        return u"time-of-day"_s;
    case Edition::Light:
        return u"light"_s;
    case Edition::Dark:
        return u"dark"_s;
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<Edition> editionFromRawValue(QStringView raw)
{
    for (const Edition edition : allEditions) {
        if (raw == rawValue(edition))
            return edition;
    }
    return std::nullopt;
}

QString rawValue(Appearance appearance)
{
    return appearance == Appearance::Light ? u"light"_s : u"dark"_s;
}

std::optional<Appearance> appearanceFromRawValue(QStringView raw)
{
    if (raw == u"light")
        return Appearance::Light;
    if (raw == u"dark")
        return Appearance::Dark;
    return std::nullopt;
}
