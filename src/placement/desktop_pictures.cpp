#include "desktop_pictures.h"

#include "atomic_file.h"
#include "gnome_slideshow.h"
#include "heic_decoder.h"
#include "picture_choice.h"
#include "renderer.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace DesktopPictures {
QString UnreadableFile::description() const
{
    return QCoreApplication::translate("DesktopPictures",
                                       "This wallpaper could not be prepared for your desktop.");
}

namespace {
QString rendered(const Renderer &renderer, const Request &request, int index)
{
    bool undecodable = false;
    const auto path =
        renderer.render(request.source, request.fileId, index, request.bounds, &undecodable);
    if (!path && undecodable)
        throw UnreadableFile();
    if (!path)
        throw DesktopError(QCoreApplication::translate(
            "DesktopPictures", "This wallpaper could not be prepared for your desktop."));
    return *path;
}

std::optional<DesktopPicture> slideshow(const Renderer &renderer, const Request &request,
                                        const PictureChoice::Pictures &pictures)
{
    const auto changes = PictureChoice::schedule(pictures);
    if (changes.isEmpty())
        return std::nullopt;
    QList<GnomeSlideshow::Entry> entries;
    for (const HeicMetadata::TimedPicture &change : changes)
        entries.append({ change.dayFraction, rendered(renderer, request, change.index) });
    const QString path = renderer.companionPath(request.fileId, u"xml"_s);
    if (!writeAtomically(path, GnomeSlideshow::xml(entries)))
        throw DesktopError(QCoreApplication::translate(
            "DesktopPictures", "This wallpaper could not be prepared for your desktop."));
    const int now =
        PictureChoice::pictureFor(pictures, Edition::TimeOfDay, request.dark, request.time);
    return DesktopPicture { .path = path, .still = rendered(renderer, request, now) };
}
} // namespace

Prepared prepare(const Renderer &renderer, const Request &request)
{
    const auto found = renderer.pictures(request.source, request.fileId);
    if (!found && request.source.endsWith(u".heic"_s, Qt::CaseInsensitive)) {
        // A downloaded wallpaper that does not open was damaged after its check; without a
        // decoder no file opens, and fetching it again would not help.
        const HeicDecoder *decoder = renderer.decoder();
        if (decoder && decoder->isAvailable())
            throw UnreadableFile();
        throw DesktopError(QCoreApplication::translate(
            "DesktopPictures", "This wallpaper could not be prepared for your desktop."));
    }
    if (!found)
        return { .picture = { .path = request.source } };
    const PictureChoice::Pictures &pictures = *found;

    if (request.edition == Edition::TimeOfDay && request.slideshow) {
        if (auto picture = slideshow(renderer, request, pictures))
            return { .picture = *picture };
    }
    if (request.edition == Edition::Automatic && request.pair) {
        const int light =
            PictureChoice::pictureFor(pictures, Edition::Automatic, false, request.time);
        const int dark =
            PictureChoice::pictureFor(pictures, Edition::Automatic, true, request.time);
        if (light != dark)
            return { .picture = { .path = rendered(renderer, request, light),
                                  .dark = rendered(renderer, request, dark) } };
    }
    const int index =
        PictureChoice::pictureFor(pictures, request.edition, request.dark, request.time);
    return { .picture = { .path = rendered(renderer, request, index) },
             .nextChange = PictureChoice::nextChange(pictures, request.edition, request.time) };
}
} // namespace DesktopPictures
