#pragma once

#include <QObject>

// Whose turn it is at the displays: while the Do Not Disturb wallpaper holds them, scheduled
// shuffles leave them alone. The shuffle only asks, so that neither knows the other.
class DisplayTurn : public QObject {
    Q_OBJECT

public:
    explicit DisplayTurn(QObject *parent = nullptr);

    // Whether the displays are held from the shuffle now.
    [[nodiscard]] virtual bool isHeld() const = 0;

Q_SIGNALS:
    void heldChanged();
};
