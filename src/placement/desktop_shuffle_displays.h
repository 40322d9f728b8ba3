#pragma once

#include "shuffle_displays.h"

#include <QPointer>

class Displays;

// The displays as the shuffle sees them, read from Displays.
class DesktopShuffleDisplays : public ShuffleDisplays
{
    Q_OBJECT

public:
    explicit DesktopShuffleDisplays(Displays *displays, QObject *parent = nullptr);

    [[nodiscard]] QList<Screen> screens() const override;
    [[nodiscard]] QCoro::Task<> restore(QString displayId, QString path,
                                        std::optional<Placement> placement) override;

private:
    QPointer<Displays> m_displays;
};
