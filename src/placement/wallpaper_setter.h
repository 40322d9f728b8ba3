#pragma once

#include "edition.h"
#include "owned_pack.h"
#include "placement.h"
#include "renderer.h"
#include "shown_files.h"

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <memory>

class Clock;
class ColourScheme;
class Displays;
namespace DesktopPictures {
struct Request;
}

// Sets verified local files on displays through the rendering they need, and puts up the picture
// due now of light/dark and time-of-day wallpapers where the desktop does not switch them itself.
class WallpaperSetter
    : public QObject
    , public ShownFiles {
    Q_OBJECT

public:
    WallpaperSetter(Displays *displays, Renderer renderer, ColourScheme *scheme,
                    std::shared_ptr<Clock> clock, QObject *parent = nullptr);
    ~WallpaperSetter() override;

    // Shows a verified local file on the displays with these ids and records placement (its
    // path is replaced by what the desktop is given). Throws DesktopPictures::UnreadableFile, or
    // the desktop's DesktopError.
    QCoro::Task<> setWallpaper(WallpaperFile file, QString localPath, Placement placement,
                               QStringList displayIds);
    [[nodiscard]] bool isShown(const QString &localPath) const override;

    // Puts back what displays showed. The placement's path is only the picture the desktop was
    // given: one of a light/dark pair, or the slideshow. So it is made again from its wallpaper
    // file, as setting its edition makes it, and followed from then on. Without a placement,
    // path is a picture of the displays' own, put back as it is.
    QCoro::Task<> restore(QStringList displayIds, QString path, std::optional<Placement> placement);
    // Whether restore finds on disk what it needs for path.
    [[nodiscard]] bool canRestore(const QString &path,
                                  const std::optional<Placement> &placement) const;

    // Puts up the picture due now on every display that shows a light/dark or time-of-day
    // wallpaper, and answers when the next one is due; a rendering smaller than the largest
    // display is made again. A display the desktop refuses keeps its picture; the others go on.
    QCoro::Task<std::optional<QTime>> follow();

Q_SIGNALS:
    // A set put up a picture that changes at next.
    void changesAt(QTime next);

private:
    QCoro::Task<> show(QString source, QString fileId, Edition edition, Placement placement,
                       QStringList displayIds);
    [[nodiscard]] DesktopPictures::Request request(QString source, QString fileId, Edition edition,
                                                   bool everyDisplay) const;

    [[nodiscard]] QSize largestDisplay() const;
    void setDone(const QString &source);

    Displays *m_displays;
    Renderer m_renderer;
    ColourScheme *m_scheme;
    std::shared_ptr<Clock> m_clock;
    // The files of sets under way, whose renderings must stay, and how many sets each.
    QHash<QString, int> m_setting;
};
