#pragma once

#include "error.h"
#include "placement.h"

#include <QCoroTask>
#include <QStringList>

struct WallpaperFile;

// What the store needs from the displays: the last step of setting a wallpaper, and the keep
// rule's question. The placement layer implements it; the composition root connects the two.
class WallpaperTarget {
public:
    // The verified local file does not decode: it was damaged on disk after its check. The store
    // deletes it and fetches it again once.
    class UnreadableFile : public Error {
    public:
        [[nodiscard]] QString description() const override
        {
            return QStringLiteral("This wallpaper could not be prepared for your desktop.");
        }
        bool operator==(const UnreadableFile &) const { return true; }
    };

    virtual ~WallpaperTarget() = default;

    // The attached displays' ids, the main display first.
    [[nodiscard]] virtual QStringList displayIds() const = 0;

    // Shows a verified local file on the displays with these ids and records placement (its path
    // is replaced by what the desktop is given). Throws UnreadableFile, or the desktop's
    // DesktopError.
    virtual QCoro::Task<> setWallpaper(WallpaperFile file, QString localPath, Placement placement,
                                       QStringList displayIds) = 0;

    // Whether an attached display shows this local file, or a picture rendered from it.
    [[nodiscard]] virtual bool isShown(const QString &localPath) const = 0;
};
