#pragma once

#include "shuffle_displays.h"

#include <QPointer>

class Displays;
class WallpaperSetter;

// The displays as the shuffle sees them, read from Displays; what is put back goes through the
// setter, which makes each edition's pictures.
class DesktopShuffleDisplays : public ShuffleDisplays {
    Q_OBJECT

public:
    DesktopShuffleDisplays(Displays *displays, WallpaperSetter *setter, QObject *parent = nullptr);

    [[nodiscard]] QList<Screen> screens() const override;
    [[nodiscard]] QCoro::Task<> restore(QStringList displayIds, QString path,
                                        std::optional<Placement> placement) override;
    [[nodiscard]] bool canRestore(const QString &path,
                                  const std::optional<Placement> &placement) const override;

private:
    QPointer<Displays> m_displays;
    QPointer<WallpaperSetter> m_setter;
};
