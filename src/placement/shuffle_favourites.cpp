#include "shuffle_favourites.h"

ShuffleFavourites::ShuffleFavourites(QObject *parent)
    : QObject(parent)
{
}
