#include "display_turn.h"

DisplayTurn::DisplayTurn(QObject *parent)
    : QObject(parent)
{
}
