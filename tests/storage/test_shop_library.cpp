#include "shop_cache.h"
#include "store_rig.h"
#include "test_support.h"

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
QList<ContentPack> samplePacks()
{
    return {
        { .slug = u"aurora"_s,
          .files = { { u"emerald"_s, u"light"_s, 20'000 }, { u"violet"_s, u"dark"_s, 20'000 } } },
        { .slug = u"dunes"_s, .files = { { u"amber"_s, u"light"_s, 20'000 } } },
        { .slug = u"meadow"_s, .free = true, .files = { { u"dew"_s, u"light"_s, 20'000 } } },
        { .slug = u"glacier"_s, .released = false, .files = { { u"ice"_s, u"dark"_s, 20'000 } } },
    };
}

QStringList slugs(const QList<Pack> &packs)
{
    QStringList result;
    for (const auto &pack : packs)
        result.append(pack.slug);
    return result;
}
} // namespace

// The store's catalogue and library: refresh, the disk copy, the six-hourly check and the
// settings it keeps, against the development shop.
class TestShopLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void refreshShowsTheLibraryAndARestartKeepsIt()
    {
        StoreRig rig(samplePacks());
        QVERIFY(rig.start());
        auto &store = rig.store();
        QCOMPARE(slugs(store.packs()), (QStringList { u"aurora"_s, u"dunes"_s, u"meadow"_s }));
        QCOMPARE(store.bought().keys(), (QStringList { u"aurora"_s, u"dunes"_s, u"glacier"_s }));
        // Bought files come through signed links, free ones from their address on the shop.
        QCOMPARE(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light).source, FileSource::shop());
        QCOMPARE(rig.file(u"meadow"_s, u"dew"_s, Edition::Light).source.kind(),
                 FileSource::Kind::Public);
        QCOMPARE(store.lastChecked(), rig.clock().now());
        QCOMPARE(rig.account().email(), u"tess.test@example.com"_s);
        store.setShowsUnreleased(true);
        QVERIFY(slugs(store.packs()).contains(u"glacier"_s));
        store.markSeen(u"aurora"_s);
        const SeenColourways seen { { u"aurora"_s, { u"emerald"_s, u"violet"_s } } };
        QCOMPARE(store.seen(), seen);

        // A copy that differs from the shop's library shows which one a 304 leads to; a changed
        // library arrives whole again.
        const QString path = store.cache().shopCachePath();
        QVERIFY(
            Cache::update(path, [](Cache::Saved &saved) { saved.library->packs.removeFirst(); }));
        const int before = rig.shop().requests(u"library"_s);
        finish(store.refresh());
        QCOMPARE(rig.shop().requests(u"library"_s), before + 1);
        QVERIFY(!store.bought().contains(u"aurora"_s));
        QVERIFY(rig.shop().setFaults("{\"changeLibrary\": true}"));
        finish(store.refresh());
        QVERIFY(store.bought().contains(u"aurora"_s));

        // A restart with the shop out of reach: the disk copy, and the choices made before.
        const auto owned = store.owned();
        rig.shop().shop().stop();
        rig.restartStore();
        QSignalSpy shown(&rig.store(), &Shop::contentsChanged);
        finish(rig.store().start());
        QCOMPARE(shown.size(), 1);
        QCOMPARE(rig.store().status(), Shop::Status::Ready);
        QCOMPARE(rig.store().owned(), owned);
        QVERIFY(rig.store().message()->message().startsWith(u"Couldn't check for new files. "_s));
        QVERIFY(rig.store().showsUnreleased());
        QCOMPARE(rig.store().seen(), seen);

        // A session that ends takes its packs along at once, though the shop is out of reach,
        // and they stay gone after a restart.
        finish(rig.account().signOut());
        QTRY_VERIFY(rig.store().bought().isEmpty());
        QTRY_VERIFY(!Cache::load(rig.store().cache().shopCachePath())->library);
        rig.restartStore();
        finish(rig.store().start());
        QVERIFY(rig.store().bought().isEmpty());
        QCOMPARE(rig.store().owned().keys(), QStringList { u"meadow"_s });
    }

    void failedRefreshKeepsWhatWasThere_data()
    {
        QTest::addColumn<QByteArray>("faults");
        QTest::addColumn<QString>("reason");

        QTest::newRow("library 503")
            << "{\"statuses\": [{\"endpoint\": \"library\", \"status\": 503}]}"_ba
            << u"The shop replied 503."_s;
        // Twice the cap, refused by its length before it is read, or part-way without one.
        const QString tooLarge =
            u"The shop sent more than %1 MB at once, more than Quennet reads."_s.arg(
                APIClient::maxReplyBytes / (1024 * 1024));
        const QByteArray oversized = "{\"oversized\": {\"endpoint\": \"library\", \"bytes\": "
            + QByteArray::number(2 * APIClient::maxReplyBytes);
        QTest::newRow("library too large by its length") << oversized + "}}" << tooLarge;
        QTest::newRow("library too large, chunked")
            << oversized + ", \"chunked\": true}}" << tooLarge;
    }

    void failedRefreshKeepsWhatWasThere()
    {
        QFETCH(QByteArray, faults);
        QFETCH(QString, reason);
        StoreRig rig(samplePacks());
        QVERIFY(rig.start());
        const auto owned = rig.store().owned();
        const QByteArray copy = readAll(rig.store().cache().shopCachePath());
        const QDateTime checked = rig.store().lastChecked();
        QVERIFY(rig.shop().setFaults(faults.constData()));
        rig.clock().advance(60s);

        finish(rig.store().refresh());
        QCOMPARE(rig.store().status(), Shop::Status::Ready);
        QCOMPARE(rig.store().owned(), owned);
        QCOMPARE(readAll(rig.store().cache().shopCachePath()), copy);
        QCOMPARE(rig.store().lastChecked(), checked);
        QCOMPARE(rig.store().message(),
                 std::optional(Notice::failed(u"Couldn't check for new files. "_s + reason)));
        // The next check that succeeds takes the failure away.
        QVERIFY(rig.shop().setFaults("{}"));
        finish(rig.store().refresh());
        QCOMPARE(rig.store().message(), std::nullopt);
    }

    // Every six hours, and at a wake once one is due; none when the setting is off.
    void periodicCheck_data()
    {
        QTest::addColumn<std::optional<bool>>("setting");
        QTest::newRow("setting absent") << std::optional<bool>();
        QTest::newRow("off") << std::optional(false);
    }

    void periodicCheck()
    {
        QFETCH(std::optional<bool>, setting);
        StoreRig rig(samplePacks());
        QVERIFY(rig.isReady());
        if (setting)
            QVERIFY(rig.defaults().setChecksForNewFiles(*setting));
        finish(rig.store().start());
        const int before = rig.shop().requests(u"catalogue"_s);
        const auto checked = [&](int checks) {
            QTest::qWait(setting ? 200 : 50);
            QTRY_COMPARE(rig.shop().requests(u"catalogue"_s), before + (setting ? 0 : checks));
        };

        rig.clock().advance(6h - 1s);
        checked(0);
        for (int i = 0; i < 2; ++i) {
            rig.clock().advance(6h);
            QTest::qWait(50);
            rig.clock().advance(1s);
        }
        checked(3); // at 6, 12 and 18 hours
        // Asleep for seven hours: no timer ran meanwhile.
        rig.clock().suspend(7h);
        checked(3);
        rig.store().systemWoke();
        checked(4);
        // Woken before the check is due: it stays where it was.
        rig.clock().suspend(1h);
        rig.store().systemWoke();
        checked(4);
    }
};

QTEST_GUILESS_MAIN(TestShopLibrary)
#include "test_shop_library.moc"
