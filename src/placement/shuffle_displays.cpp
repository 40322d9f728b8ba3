#include "shuffle_displays.h"

ShuffleDisplays::ShuffleDisplays(QObject *parent)
    : QObject(parent)
{
}
