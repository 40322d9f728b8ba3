#pragma once

#include "edition.h"
#include "renderer.h"
#include "wallpaper_target.h"

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

    // Re-renders what should show now on every display that follows its file; the scheme and
    // the phase schedule call it.
    QCoro::Task<> follow();

private:
    [[nodiscard]] DesktopPictures::Request request(QString source, QString fileId, Edition edition,
                                                   bool everyDisplay) const;
    void scheduleAt(std::optional<QTime> next);

    Displays *m_displays;
    Renderer m_renderer;
    ColourScheme *m_scheme;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<CancelToken> m_schedule;
};
