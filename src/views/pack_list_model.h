#pragma once

#include "row_list_model.h"

#include <QPointer>
#include <QtQmlIntegration>

class Shop;

// The packs of the catalogue for the views: the user's own first, then the rest of the shop, each
// in catalogue order, with how many of their colourways the user has not been shown yet.
class PackListModel : public RowListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(PackList)
    Q_MOC_INCLUDE("shop.h")
    Q_PROPERTY(Shop *shop READ shop WRITE setShop NOTIFY shopChanged)
    // Only the packs whose files the user may use.
    Q_PROPERTY(bool ownedOnly READ ownedOnly WRITE setOwnedOnly NOTIFY ownedOnlyChanged)

public:
    enum Role {
        SlugRole = Qt::UserRole + 1,
        NameRole,
        LineRole,
        PriceRole,
        UrlRole,
        OwnedRole,
        FreeRole,
        OnSaleRole,
        SectionRole, // "Your Packs" or "In the Shop"
        ColourwayCountRole,
        NewCountRole,
        ArtworkRole, // light artwork of the first colourway
        ArtworkDarkRole,
        HasTimeOfDayRole,
        HasDesktopFilesRole,
    };
    Q_ENUM(Role)

    explicit PackListModel(QObject *parent = nullptr);

    [[nodiscard]] Shop *shop() const;
    void setShop(Shop *shop);
    [[nodiscard]] bool ownedOnly() const { return m_ownedOnly; }
    void setOwnedOnly(bool ownedOnly);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // The row of a pack, or -1.
    [[nodiscard]] int indexOf(const QString &slug) const override;
    // One role of a row by name, for views that keep a current pack.

Q_SIGNALS:
    void shopChanged();
    void ownedOnlyChanged();

private:
    struct Row {
        QString slug;
        QString name;
        QString line;
        QString price;
        QUrl url;
        bool owned = false;
        bool free = false;
        bool onSale = false;
        int colourways = 0;
        int fresh = 0;
        QUrl artwork;
        QUrl artworkDark;
        bool timeOfDay = false;
        bool desktopFiles = false;

        bool operator==(const Row &) const = default;
    };

    void reload();

    QPointer<Shop> m_shop;
    bool m_ownedOnly = false;
    QList<Row> m_rows;
};
