#pragma once

#include "row_list_model.h"

#include <QPointer>
#include <QRectF>
#include <QtQmlIntegration>

class Displays;
class Shop;

// The attached displays for the panel and the desk: where each is in the arrangement, what it
// shows, and whether that is one of the user's wallpapers or "Not from your packs".
class DisplayListModel : public RowListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(DisplayList)
    Q_MOC_INCLUDE("displays.h")
    Q_MOC_INCLUDE("shop.h")
    Q_PROPERTY(Displays *displays READ displays WRITE setDisplays NOTIFY inputsChanged)
    Q_PROPERTY(Shop *shop READ shop WRITE setShop NOTIFY inputsChanged)
    // The arrangement's bounding rectangle, for drawing it to scale.
    Q_PROPERTY(QRectF bounds READ bounds NOTIFY boundsChanged)
    Q_PROPERTY(QString mainId READ mainId NOTIFY rowsChanged)

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        NameRole,
        FrameRole,
        MainRole,
        ThumbnailRole, // file URL of what it shows in light, or empty
        ThumbnailDarkRole, // and in dark
        OwnRole, // it shows the wallpaper Quennet recorded for it
        CaptionRole, // the colourway's name, or "Not from your packs"
        DetailRole, // pack and edition of an own wallpaper
        PackRole,
        ColourwayRole,
        EditionRole,
        ArtworkRole, // the colourway's art, light and dark, for when the picture cannot be read
        ArtworkDarkRole,
    };
    Q_ENUM(Role)

    explicit DisplayListModel(QObject *parent = nullptr);

    [[nodiscard]] Displays *displays() const;
    void setDisplays(Displays *displays);
    [[nodiscard]] Shop *shop() const;
    void setShop(Shop *shop);
    [[nodiscard]] QRectF bounds() const { return m_bounds; }
    [[nodiscard]] QString mainId() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int indexOf(const QString &id) const override;
    Q_INVOKABLE [[nodiscard]] QStringList ids() const;

Q_SIGNALS:
    void inputsChanged();
    void boundsChanged();

private:
    struct Row {
        QString id;
        QString name;
        QRectF frame;
        bool main = false;
        QUrl thumbnail;
        QUrl thumbnailDark;
        bool own = false;
        QString caption;
        QString detail;
        QString pack;
        QString colourway;
        QString edition;
        QUrl artwork;
        QUrl artworkDark;

        bool operator==(const Row &) const = default;
    };

    void reload();

    QPointer<Displays> m_displays;
    QPointer<Shop> m_shop;
    QList<Row> m_rows;
    QRectF m_bounds;
};
