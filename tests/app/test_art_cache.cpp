#include "art_cache.h"
#include "artwork_urls.h"
#include "await_task.h"
#include "dev_shop.h"
#include "libheif_decoder.h"
#include "network_access_manager.h"
#include "pixels.h"

#include <QCoroTask>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QString sample(const QString &name)
{
    return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/") + name;
}

QColor middle(const QImage &image)
{
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

std::optional<QImage> imageOf(ArtCache &cache, const QUrl &url, int maxPixels, bool dark)
{
    return finish(cache.image(url, maxPixels, dark)).value.value_or(std::nullopt);
}
} // namespace

// Artwork and wallpaper pictures for the views: which picture, at what size, and cached how.
class ArtCacheTest : public QObject {
    Q_OBJECT

    std::shared_ptr<const HeicDecoder> m_heic = std::make_shared<LibheifDecoder>();

private Q_SLOTS:
    // A file of one picture, or a PNG, looks the same in light and dark mode.
    void appearanceIgnored_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("one picture") << u"files/aurora/emerald-dark.heic"_s;
        QTest::newRow("png") << u"art/aurora/emerald/light.png"_s;
    }

    void appearanceIgnored()
    {
        QFETCH(QString, file);
        const QImage light = ArtCache::decodeFile(*m_heic, sample(file), 64, false);
        QVERIFY(!light.isNull() && std::max(light.width(), light.height()) <= 64);
        QVERIFY(near(middle(light), middle(ArtCache::decodeFile(*m_heic, sample(file), 64, true))));
    }

    // A dynamic HEIC shows its light picture in light mode and its dark one in dark mode, by its
    // "apr" metadata. Light and dark, and each size, are cached apart; what cannot be read is not
    // cached.
    void appearanceAndKeys()
    {
        ArtCache cache(nullptr, {}, m_heic);
        const QString path = sample(u"files/aurora/emerald-appearance.heic"_s);
        const QUrl url = QUrl::fromLocalFile(path);
        const auto light = imageOf(cache, url, 128, false);
        QVERIFY(light && std::max(light->width(), light->height()) <= 128);
        QVERIFY(cache.contains(ArtCache::key(url, 128, false)));
        QVERIFY(!cache.contains(ArtCache::key(url, 128, true)));
        QVERIFY(!cache.contains(ArtCache::key(url, 256, false)));
        const auto dark = imageOf(cache, url, 128, true);
        QVERIFY(dark && cache.contains(ArtCache::key(url, 128, true)));
        const auto heic = LibheifFile::open(path);
        QVERIFY(heic);
        QVERIFY(near(middle(*light), middle(heic->picture(0))));
        QVERIFY(near(middle(*dark), middle(heic->picture(1))));

        const QUrl missing = QUrl::fromLocalFile(sample(u"files/none.heic"_s));
        QVERIFY(!imageOf(cache, missing, 128, false));
        QVERIFY(!cache.contains(ArtCache::key(missing, 128, false)));
    }

    // Remote artwork comes through the shop's network manager, which trusts the shop, and from
    // the shop alone: art elsewhere is not fetched even where the connection would be trusted.
    void remote()
    {
        QTemporaryDir state;
        DevShop shop(
            { .contentDir = QStringLiteral(QUENNET_DEVSHOP_CONTENT), .stateDir = state.path() });
        QVERIFY(shop.start());
        NetworkAccessManager network(shop.caPath(), shop.baseUrl());
        ArtCache cache(&network, shop.baseUrl(), m_heic);
        QUrl url = shop.baseUrl();
        url.setPath(u"/art/aurora/emerald/light.png"_s);
        const auto image = imageOf(cache, url, 96, false);
        QVERIFY(image);
        QVERIFY(near(middle(*image),
                     middle(ArtCache::decodeFile(*m_heic, sample(u"art/aurora/emerald/light.png"_s),
                                                 96, false))));
        url.setPath(u"/art/aurora/none.png"_s);
        QVERIFY(!imageOf(cache, url, 96, false));

        // The same server under its other loopback name, with a manager that trusts that name.
        QUrl elsewhere = shop.baseUrl();
        elsewhere.setHost(elsewhere.host() == "localhost"_L1 ? u"127.0.0.1"_s : u"localhost"_s);
        NetworkAccessManager trusting(shop.caPath(), elsewhere);
        elsewhere.setPath(u"/art/aurora/emerald/light.png"_s);
        ArtCache trusted(&trusting, elsewhere, m_heic);
        QVERIFY(imageOf(trusted, elsewhere, 96, false));
        ArtCache refusing(&trusting, shop.baseUrl(), m_heic);
        QVERIFY(!imageOf(refusing, elsewhere, 96, false));
    }

    // Only HTTPS catalogue art is shown; a file or plain http named by the catalogue is not.
    void catalogueArt()
    {
        const QUrl file(u"file:///home/sam/secret.png"_s);
        const QUrl http(u"http://127.0.0.1:9/light.png"_s);
        const QUrl https(u"https://127.0.0.1:9/dark.png"_s);
        Colourway colourway { .thumbnails = { { Appearance::Light, file },
                                              { Appearance::Dark, https } },
                              .desktop = { { Appearance::Light, http } } };
        QCOMPARE(ArtworkUrls::thumbnail(colourway, Appearance::Light), https);
        QCOMPARE(ArtworkUrls::preview(colourway, Appearance::Light), QUrl());
        colourway.thumbnails.clear();
        QCOMPARE(ArtworkUrls::thumbnail(colourway, Appearance::Dark), QUrl());
        colourway.desktop = { { Appearance::Dark, https } };
        QCOMPARE(ArtworkUrls::preview(colourway, Appearance::Light), https);
    }
};

QTEST_MAIN(ArtCacheTest)
#include "test_art_cache.moc"
