#include "automation_options.h"

ShuffleSettings::Interval toInterval(ShuffleIntervalOption option)
{
    switch (option) {
    case ShuffleIntervalOption::Hour:
        return ShuffleSettings::Interval::Hour;
    case ShuffleIntervalOption::SixHours:
        return ShuffleSettings::Interval::SixHours;
    case ShuffleIntervalOption::Week:
        return ShuffleSettings::Interval::Week;
    case ShuffleIntervalOption::Day:
        break;
    }
    return ShuffleSettings::Interval::Day;
}

ShuffleSettings::Source toSource(ShuffleSourceOption option)
{
    return option == ShuffleSourceOption::Favourites ? ShuffleSettings::Source::Favourites
                                                     : ShuffleSettings::Source::All;
}
