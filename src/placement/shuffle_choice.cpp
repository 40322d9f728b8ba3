#include "shuffle_choice.h"

QString ShuffleChoice::key() const
{
    return pack.slug + u'/' + colourway.slug;
}

size_t qHash(const ShuffleChoice &choice, size_t seed)
{
    return qHashMulti(seed, choice.pack, choice.colourway);
}
