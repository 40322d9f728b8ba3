#include "shuffle_settings.h"

using namespace std::chrono_literals;

namespace ShuffleSettings {
QString rawValue(Interval interval)
{
    return optionRawValue(interval);
}

Interval intervalFromRawValue(QStringView raw)
{
    return optionFromRawValue<Interval>(raw).value_or(Interval::Day);
}

QString rawValue(Source source)
{
    return optionRawValue(source);
}

Source sourceFromRawValue(QStringView raw)
{
    return optionFromRawValue<Source>(raw).value_or(Source::All);
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
