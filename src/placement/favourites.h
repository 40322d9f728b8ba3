#pragma once

#include <QObject>
#include <QStringList>

class Defaults;

// The user's favourite colourways, newest first, kept under "favouriteColourways": the hearts in
// the panel, the favourite automation and the shuffle's favourites all go through it.
class Favourites : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList keys READ keys WRITE setKeys NOTIFY keysChanged)

public:
    explicit Favourites(Defaults *defaults, QObject *parent = nullptr);

    [[nodiscard]] QStringList keys() const { return m_keys; }
    // Observers hear only of a list that differs. False, changing nothing, when the list couldn't
    // be saved. (Not [[nodiscard]]: it is the property's setter too.)
    bool setKeys(const QStringList &keys);

    // Removes the colourway when it is a favourite, else puts it first; then stores the list.
    [[nodiscard]] bool toggle(const QString &pack, const QString &colourway);

Q_SIGNALS:
    void keysChanged();

private:
    Defaults *m_defaults;
    QStringList m_keys;
};
