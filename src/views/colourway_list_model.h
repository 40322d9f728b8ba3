#pragma once

#include "row_list_model.h"

#include <QPointer>
#include <QtQmlIntegration>

class Displays;
class Favourites;
class Shop;

// The colourways of one pack (or of every pack the user has, or only the favourites) for the
// browsers: artwork, the heart, whether it is new to the user, its editions, whether it is on disk
// or downloading, and whether a display shows it.
class ColourwayListModel : public RowListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(ColourwayList)
    Q_MOC_INCLUDE("displays.h")
    Q_MOC_INCLUDE("favourites.h")
    Q_MOC_INCLUDE("shop.h")
    Q_PROPERTY(Shop *shop READ shop WRITE setShop NOTIFY inputsChanged)
    Q_PROPERTY(Favourites *favourites READ favourites WRITE setFavourites NOTIFY inputsChanged)
    Q_PROPERTY(Displays *displays READ displays WRITE setDisplays NOTIFY inputsChanged)
    // A pack slug; empty: the colourways of every pack the user may use.
    Q_PROPERTY(QString pack READ pack WRITE setPack NOTIFY inputsChanged)
    Q_PROPERTY(bool favouritesOnly READ favouritesOnly WRITE setFavouritesOnly NOTIFY inputsChanged)

public:
    enum Role {
        KeyRole = Qt::UserRole + 1,
        PackRole,
        PackNameRole,
        SlugRole,
        NameRole,
        ThumbnailRole,
        ThumbnailDarkRole,
        PreviewRole,
        PreviewDarkRole,
        FavouriteRole,
        NewRole,
        OwnedRole,
        EditionsRole, // raw values of the editions the user has, in edition order
        DownloadedRole,
        DownloadingRole,
        ProgressRole,
        ShownRole,
        PhasesRole, // [{id, label, url}] in the shop's phase order
    };
    Q_ENUM(Role)

    explicit ColourwayListModel(QObject *parent = nullptr);

    [[nodiscard]] Shop *shop() const;
    void setShop(Shop *shop);
    [[nodiscard]] Favourites *favourites() const;
    void setFavourites(Favourites *favourites);
    [[nodiscard]] Displays *displays() const;
    void setDisplays(Displays *displays);
    [[nodiscard]] QString pack() const { return m_pack; }
    void setPack(const QString &pack);
    [[nodiscard]] bool favouritesOnly() const { return m_favouritesOnly; }
    void setFavouritesOnly(bool only);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int indexOf(const QString &key) const override;

Q_SIGNALS:
    void inputsChanged();

private:
    struct Row {
        QString pack;
        QString packName;
        QString slug;
        QString name;
        QUrl thumbnail;
        QUrl thumbnailDark;
        QUrl preview;
        QUrl previewDark;
        bool favourite = false;
        bool fresh = false;
        bool owned = false;
        QStringList editions;
        QStringList fileKeys;
        bool downloaded = false;
        bool downloading = false;
        double progress = 0;
        bool shown = false;
        QVariantList phases;

        [[nodiscard]] QString key() const { return pack + u'/' + slug; }
        bool operator==(const Row &) const = default;
    };

    void reload();
    // What changes often (progress, the hearts, the displays) without a reset of the model.
    void refreshStates();
    void fillStates(Row &row) const;

    QPointer<Shop> m_shop;
    QPointer<Favourites> m_favourites;
    QPointer<Displays> m_displays;
    QString m_pack;
    bool m_favouritesOnly = false;
    QList<Row> m_rows;
};
