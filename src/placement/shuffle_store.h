#pragma once

#include "edition.h"
#include "error.h"
#include "shuffle_choice.h"

#include <QCoroTask>
#include <QObject>
#include <QStringList>

// What the shuffle needs of the library store: the colourways it may pick and the request that
// sets one. The composition root implements it over the store.
class ShuffleStore : public QObject {
    Q_OBJECT

public:
    // The pick's file could not be had: no edition of it, not in the packs any more, or its
    // download failed. Carries the cause's sentence.
    class DownloadFailed : public Error {
    public:
        explicit DownloadFailed(QString description);

        [[nodiscard]] QString description() const override { return m_description; }

        bool operator==(const DownloadFailed &other) const
        {
            return m_description == other.m_description;
        }

    private:
        QString m_description;
    };

    explicit ShuffleStore(QObject *parent = nullptr);

    // Every colourway of the user's packs, in library order.
    [[nodiscard]] virtual QList<ShuffleChoice> choices() const = 0;

    // Whether the file the store would set for the wanted edition is on disk already.
    [[nodiscard]] virtual bool isDownloaded(const ShuffleChoice &choice, Edition wanted) const = 0;

    // Sets the edition the store resolves for the wanted one on the displays, downloading it
    // first. Throws DownloadFailed before anything is set, else the desktop's error or the
    // store's Overtaken.
    [[nodiscard]] virtual QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition wanted,
                                                     QStringList displayIds) = 0;

Q_SIGNALS:
    void choicesChanged();
};
