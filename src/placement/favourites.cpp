#include "favourites.h"

#include "defaults.h"

Favourites::Favourites(Defaults *defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_keys(defaults->favouriteColourways())
{
}

void Favourites::setKeys(const QStringList &keys)
{
    if (keys == m_keys)
        return;
    m_keys = keys;
    m_defaults->setFavouriteColourways(m_keys);
    Q_EMIT keysChanged();
}

void Favourites::toggle(const QString &pack, const QString &colourway)
{
    const QString key = pack + u'/' + colourway;
    QStringList keys = m_keys;
    if (const qsizetype at = keys.indexOf(key); at >= 0)
        keys.removeAt(at);
    else
        keys.prepend(key);
    setKeys(keys);
}
