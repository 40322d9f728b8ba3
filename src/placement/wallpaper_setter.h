#pragma once

#include "edition.h"
#include "renderer.h"
#include "wallpaper_target.h"

#include <QDateTime>
#include <QObject>

#include <memory>

class CancelToken;
class Clock;
class ColourScheme;
class Displays;
namespace DesktopPictures
{
struct Request;
}

// Sets the store's verified files on displays through the rendering they need, and keeps
// following them: a light/dark wallpaper when the colour scheme changes, a time-of-day one at
// each of its phase times, where the desktop does not do either itself.
class WallpaperSetter : public QObject, public WallpaperTarget
{
    Q_OBJECT

public:
    WallpaperSetter(Displays *displays, Renderer renderer, ColourScheme *scheme,
                    std::shared_ptr<Clock> clock, QObject *parent = nullptr);
    ~WallpaperSetter() override;

    [[nodiscard]] QStringList displayIds() const override;
    QCoro::Task<> setWallpaper(WallpaperFile file, QString localPath, Placement placement,
                               QStringList displayIds) override;
    [[nodiscard]] bool isShown(const QString &localPath) const override;

    // Puts back what displays showed. The placement's path is only the picture the desktop was
    // given: one of a light/dark pair, or the slideshow. So it is made again from its wallpaper
    // file, as setting its edition makes it, and followed from then on. Without a placement,
    // path is a picture of the displays' own, put back as it is.
    QCoro::Task<> restore(QStringList displayIds, QString path, std::optional<Placement> placement);
    // Whether restore finds on disk what it needs for path.
    [[nodiscard]] bool canRestore(const QString &path,
                                  const std::optional<Placement> &placement) const;

    // Re-renders what should show now on every display that follows its file; the scheme and
    // the phase schedule call it.
    QCoro::Task<> follow();

private:
    QCoro::Task<> show(QString source, QString fileId, Edition edition, Placement placement,
                       QStringList displayIds);
    [[nodiscard]] DesktopPictures::Request request(QString source, QString fileId, Edition edition,
                                                   bool everyDisplay) const;
    // Wakes follow() at next, or not at all. With keepSooner, a sooner wake already set stays:
    // it is another display's change, and follow() looks at every display.
    void scheduleAt(std::optional<QTime> next, bool keepSooner);

    Displays *m_displays;
    Renderer m_renderer;
    ColourScheme *m_scheme;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<CancelToken> m_schedule;
    QDateTime m_wakeAt;
};
