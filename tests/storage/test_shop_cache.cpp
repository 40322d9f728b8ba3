#include "shop_cache.h"
#include "test_files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// A damaged disk copy; the round trip shows in the store's restarts (test_shop_library).
class ShopCacheTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void damagedCopyIsNoCopy()
    {
        QTemporaryDir root;
        const QString path = root.filePath(u"shop-cache.json"_s);
        for (const QByteArray &bytes : { QByteArray("{\"catalogue\": {\"packs\": []}}"),
                                         QByteArray("not json"), QByteArray("{}") }) {
            QVERIFY(writeFile(path, bytes));
            QVERIFY(!Cache::load(path));
        }
        // An update over a damaged copy starts from an empty record.
        QVERIFY(Cache::update(path, [](Cache::Saved &copy) { copy.account = u"x"_s; }));
        QCOMPARE(Cache::load(path)->account, u"x"_s);
    }
};

QTEST_GUILESS_MAIN(ShopCacheTest)
#include "test_shop_cache.moc"
