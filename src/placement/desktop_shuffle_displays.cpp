#include "desktop_shuffle_displays.h"

#include "displays.h"

DesktopShuffleDisplays::DesktopShuffleDisplays(Displays *displays, QObject *parent)
    : ShuffleDisplays(parent)
    , m_displays(displays)
{
    connect(displays, &Displays::allChanged, this, &ShuffleDisplays::changed);
    connect(displays, &Displays::fileChanged, this, &ShuffleDisplays::changed);
    connect(displays->backend(), &DesktopBackend::screensChanged, this,
            &ShuffleDisplays::screensChanged);
}

QList<ShuffleDisplays::Screen> DesktopShuffleDisplays::screens() const
{
    QList<Screen> screens;
    if (!m_displays)
        return screens;
    for (const auto &display : m_displays->all()) {
        screens.append({ .id = display.id,
                         .placement = m_displays->placement(display.id),
                         .showsOwnWallpaper = m_displays->showsOwnWallpaper(display),
                         .picture = display.wallpaper });
    }
    return screens;
}

QCoro::Task<> DesktopShuffleDisplays::restore(QString displayId, QString path,
                                              std::optional<Placement> placement)
{
    if (m_displays)
        co_await m_displays->restore(std::move(displayId), std::move(path), std::move(placement));
}
