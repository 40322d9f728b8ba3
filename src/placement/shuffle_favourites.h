#pragma once

#include <QObject>
#include <QStringList>

// What the shuffle needs of the favourites: their keys, and a word when they change.
class ShuffleFavourites : public QObject {
    Q_OBJECT

public:
    explicit ShuffleFavourites(QObject *parent = nullptr);

    [[nodiscard]] virtual QStringList keys() const = 0;

Q_SIGNALS:
    void keysChanged();
};
