#pragma once

#include "desktop_backend.h"
#include "edition.h"
#include "error.h"

#include <QSize>
#include <QTime>
#include <optional>

class Renderer;

// Turns a wallpaper file into what the desktop is given: the rendering of the picture due now,
// a light/dark pair where the desktop switches itself, or a timed slideshow where it follows one.
namespace DesktopPictures {
// The verified local file does not decode: it was damaged on disk after its check.
class UnreadableFile : public Error {
public:
    [[nodiscard]] QString description() const override;
    bool operator==(const UnreadableFile & /*other*/) const { return true; }
};

struct Request {
    QString source; // the verified local file
    QString fileId;
    Edition edition = Edition::Automatic;
    bool dark = false;
    QTime time; // local time of day
    bool pair = false; // the desktop takes a light/dark pair
    bool slideshow = false; // the desktop follows a timed slideshow
    QSize bounds; // what a rendering must cover, in device pixels; empty: the picture's own size
};

struct Prepared {
    DesktopPicture picture;
    // When the picture due changes next; none when the desktop follows the file itself or the
    // file does not change through the day.
    std::optional<QTime> nextChange;
};

// Decodes what is not rendered yet: seconds for a large picture, so call it off the main thread.
// A file that is not HEIC is given as it is. Throws UnreadableFile when a HEIC
// file does not decode, DesktopError when a picture cannot be made otherwise or the renderer has
// no HEIC decoder.
[[nodiscard]] Prepared prepare(const Renderer &renderer, const Request &request);
} // namespace DesktopPictures
