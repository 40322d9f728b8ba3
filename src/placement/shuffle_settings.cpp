#include "shuffle_settings.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace ShuffleSettings {
QString rawValue(Interval interval)
{
    switch (interval) {
    case Interval::Hour:
        return u"hour"_s;
    case Interval::SixHours:
        return u"six-hours"_s;
    case Interval::Day:
        return u"day"_s;
    case Interval::Week:
        return u"week"_s;
    }
    Q_UNREACHABLE();
    return {};
}

Interval intervalFromRawValue(QStringView raw)
{
    for (const auto interval : { Interval::Hour, Interval::SixHours, Interval::Week }) {
        if (raw == rawValue(interval))
            return interval;
    }
    return Interval::Day;
}

QString rawValue(Source source)
{
    return source == Source::Favourites ? u"favourites"_s : u"all"_s;
}

Source sourceFromRawValue(QStringView raw)
{
    return raw == u"favourites" ? Source::Favourites : Source::All;
}

std::chrono::seconds fallbackLength(Interval interval)
{
    switch (interval) {
    case Interval::Hour:
        return 1h;
    case Interval::SixHours:
        return 6h;
    case Interval::Day:
        return 24h;
    case Interval::Week:
        return 7 * 24h;
    }
    Q_UNREACHABLE();
    return 24h;
}
} // namespace ShuffleSettings
