#include "picture_choice.h"

#include <algorithm>
#include <cmath>

namespace PictureChoice {
namespace {
double dayFraction(QTime time)
{
    return time.msecsSinceStartOfDay() / (24.0 * 60 * 60 * 1000);
}

QTime timeOf(double fraction)
{
    return QTime::fromMSecsSinceStartOfDay(int(std::lround(fraction * 24 * 60 * 60 * 1000))
                                           % (24 * 60 * 60 * 1000));
}

int appearancePicture(const Pictures &pictures, bool dark)
{
    return pictures.metadata.pictureFor(dark, pictures.count).value_or(pictures.primary);
}
} // namespace

QList<HeicMetadata::TimedPicture> schedule(const Pictures &pictures)
{
    QList<HeicMetadata::TimedPicture> result;
    for (const HeicMetadata::TimedPicture &entry : pictures.metadata.times()) {
        if (entry.index >= 0 && entry.index < pictures.count && entry.dayFraction >= 0
            && entry.dayFraction < 1)
            result.append(entry);
    }
    if (result.isEmpty()) {
        for (const HeicMetadata::SolarPicture &entry : pictures.metadata.solarPositions()) {
            if (entry.index >= 0 && entry.index < pictures.count && std::isfinite(entry.azimuth))
                result.append(
                    { std::fmod(std::fmod(entry.azimuth, 360) + 360, 360) / 360, entry.index });
        }
    }
    std::ranges::stable_sort(result, {}, &HeicMetadata::TimedPicture::dayFraction);
    return result;
}

int pictureFor(const Pictures &pictures, Edition edition, bool dark, QTime time)
{
    switch (edition) {
    case Edition::Light:
        return appearancePicture(pictures, false);
    case Edition::Dark:
        return appearancePicture(pictures, true);
    case Edition::Automatic:
        return appearancePicture(pictures, dark);
    case Edition::TimeOfDay:
        break;
    }
    const auto changes = schedule(pictures);
    if (changes.isEmpty())
        return appearancePicture(pictures, dark);
    // Before the day's first change, the last one of the day before still shows.
    const double now = dayFraction(time);
    int index = changes.last().index;
    for (const HeicMetadata::TimedPicture &change : changes) {
        if (change.dayFraction <= now)
            index = change.index;
    }
    return index;
}

std::optional<QTime> nextChange(const Pictures &pictures, Edition edition, QTime time)
{
    if (edition != Edition::TimeOfDay)
        return std::nullopt;
    const auto changes = schedule(pictures);
    if (changes.isEmpty())
        return std::nullopt;
    const double now = dayFraction(time);
    for (const HeicMetadata::TimedPicture &change : changes) {
        if (change.dayFraction > now)
            return timeOf(change.dayFraction);
    }
    return timeOf(changes.first().dayFraction);
}
} // namespace PictureChoice
