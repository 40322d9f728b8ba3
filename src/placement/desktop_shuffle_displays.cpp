#include "desktop_shuffle_displays.h"

#include "displays.h"
#include "wallpaper_setter.h"

DesktopShuffleDisplays::DesktopShuffleDisplays(Displays *displays, WallpaperSetter *setter,
                                               QObject *parent)
    : ShuffleDisplays(parent)
    , m_displays(displays)
    , m_setter(setter)
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

QCoro::Task<> DesktopShuffleDisplays::restore(QStringList displayIds, QString path,
                                              std::optional<Placement> placement)
{
    if (m_setter)
        co_await m_setter->restore(std::move(displayIds), std::move(path), std::move(placement));
}

bool DesktopShuffleDisplays::canRestore(const QString &path,
                                        const std::optional<Placement> &placement) const
{
    return m_setter && m_setter->canRestore(path, placement);
}
