#include "shop_cache.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QByteArray fixture(const QString &name)
{
    QFile file(QStringLiteral(QUENNET_TEST_DATA "/library/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture");
    return file.readAll();
}
} // namespace

class ShopCacheTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void roundTripAndUpdate()
    {
        QTemporaryDir root;
        const QString path = root.filePath(u"deep/app.quennet.Quennet/shop-cache.json"_s);
        QVERIFY(!Cache::load(path));

        const Cache::Saved saved { .catalogue =
                                       CatalogueReply::decode(fixture(u"catalogue.json"_s)),
                                   .library = LibraryReply::decode(fixture(u"library.json"_s)),
                                   .account = u"ada@example.com"_s,
                                   .base = QUrl(u"https://shop.example/api/app/v1"_s) };
        QVERIFY(Cache::save(path, saved));
        QCOMPARE(Cache::load(path), saved);

        // Signing out drops the library and keeps the catalogue.
        QVERIFY(Cache::update(path, [](Cache::Saved &copy) {
            copy.library.reset();
            copy.account.reset();
        }));
        const auto afterSignOut = Cache::load(path);
        QVERIFY(afterSignOut);
        QVERIFY(!afterSignOut->library);
        QCOMPARE(afterSignOut->catalogue, saved.catalogue);
    }

    void damagedCopyIsNoCopy()
    {
        QTemporaryDir root;
        const QString path = root.filePath(u"shop-cache.json"_s);
        for (const QByteArray &bytes : { QByteArray("{\"catalogue\": {\"packs\": []}}"),
                                         QByteArray("not json"), QByteArray("{}") }) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            file.close();
            QVERIFY(!Cache::load(path));
        }
        // An update over a damaged copy starts from an empty record.
        QVERIFY(Cache::update(path, [](Cache::Saved &copy) { copy.account = u"x"_s; }));
        QCOMPARE(Cache::load(path)->account, u"x"_s);
    }
};

QTEST_GUILESS_MAIN(ShopCacheTest)
#include "test_shop_cache.moc"
