#pragma once

#include "edition.h"
#include "heic_metadata.h"

#include <QList>
#include <QTime>
#include <optional>

// Which picture of a wallpaper file should show: light or dark by "apr", by the time of day from
// "h24", or from "solar" read as a time of day. Indices past the file's pictures are skipped.
namespace PictureChoice {
// A file's pictures and what its metadata says about them.
struct Pictures {
    HeicMetadata metadata;
    int count = 1;
    int primary = 0;
};

// The day's changes in time order: from "h24", else from "solar", where the sun's azimuth is
// taken as the hour (south at noon, north at midnight), since the file does not say where on
// Earth it was meant for.
[[nodiscard]] QList<HeicMetadata::TimedPicture> schedule(const Pictures &pictures);

// The picture of an edition at a local time of day in light or dark mode.
[[nodiscard]] int pictureFor(const Pictures &pictures, Edition edition, bool dark, QTime time);

// The next local time at which a time-of-day file changes picture; none for other editions or a
// file without a schedule.
[[nodiscard]] std::optional<QTime> nextChange(const Pictures &pictures, Edition edition,
                                              QTime time);
} // namespace PictureChoice
