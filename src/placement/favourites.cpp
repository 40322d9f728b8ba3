#include "favourites.h"

#include "defaults.h"
#include "logging.h"

Favourites::Favourites(Defaults *defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_keys(defaults->favouriteColourways())
{
}

bool Favourites::setKeys(const QStringList &keys)
{
    if (keys == m_keys)
        return true;
    if (!m_defaults->setFavouriteColourways(keys)) {
        qCWarning(lcFavourites) << "Couldn't save the favourites; they stay as they were";
        return false;
    }
    m_keys = keys;
    Q_EMIT keysChanged();
    return true;
}

bool Favourites::toggle(const QString &pack, const QString &colourway)
{
    const QString key = pack + u'/' + colourway;
    QStringList keys = m_keys;
    if (const qsizetype at = keys.indexOf(key); at >= 0)
        keys.removeAt(at);
    else
        keys.prepend(key);
    return setKeys(keys);
}
