#include "account.h"
#include "colourway_list_model.h"
#include "favourites.h"
#include "library_status.h"
#include "pack_list_model.h"
#include "store_rig.h"
#include "test_support.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QList<ContentPack> packs()
{
    return {
        { .slug = u"aurora"_s,
          .files = { { u"emerald"_s, u"light"_s, 20'000 },
                     { u"emerald"_s, u"appearance"_s, 20'000 },
                     { u"violet"_s, u"dark"_s, 20'000 } } },
        { .slug = u"harbour"_s, .owned = false, .files = { { u"slate"_s, u"light"_s, 20'000 } } },
        { .slug = u"dunes"_s, .files = { { u"amber"_s, u"light"_s, 20'000 } } },
    };
}

QStringList column(const QAbstractListModel &model, int role)
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values.append(model.data(model.index(row), role).toString());
    return values;
}
} // namespace

// What the windows show of the store and the favourites, against the development shop.
class ViewModelsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    // The user's packs come first, the rest of the shop after them; colourways new to the user
    // are counted only in packs looked at before, and none once the pack is seen. The row the
    // view chose follows the library.
    void packs()
    {
        StoreRig rig(::packs());
        QVERIFY(rig.isReady());
        QVERIFY(rig.defaults().setSeenColourways({ { u"aurora"_s, { u"emerald"_s } } }));
        rig.restartStore();
        PackListModel model;
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setShop(&rig.store());
        model.setCurrentKey(u"aurora"_s);
        finish(rig.store().start());
        QCOMPARE(model.current().value(u"newCount"_s).toInt(), 1);

        QCOMPARE(column(model, PackListModel::SlugRole),
                 (QStringList { u"aurora"_s, u"dunes"_s, u"harbour"_s }));
        QCOMPARE(column(model, PackListModel::SectionRole),
                 (QStringList { u"Your Packs"_s, u"Your Packs"_s, u"In the Shop"_s }));
        QCOMPARE(column(model, PackListModel::NewCountRole),
                 (QStringList { u"1"_s, u"0"_s, u"0"_s }));

        QSignalSpy current(&model, &RowListModel::currentChanged);
        rig.store().markSeen(u"aurora"_s);
        QCOMPARE(model.index(0).data(PackListModel::NewCountRole).toInt(), 0);
        QVERIFY(!current.isEmpty());
        QCOMPARE(model.current().value(u"newCount"_s).toInt(), 0);

        model.setOwnedOnly(true);
        QCOMPARE(column(model, PackListModel::SlugRole), (QStringList { u"aurora"_s, u"dunes"_s }));
        QCOMPARE(model.indexOf(u"harbour"_s), -1);
    }

    // A pack's colourways with their editions, hearts and downloads; the favourites alone follow
    // every heart.
    void colourways()
    {
        StoreRig rig(::packs());
        QVERIFY(rig.isReady());
        finish(rig.store().start());
        Favourites favourites(&rig.defaults());
        ColourwayListModel model;
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setShop(&rig.store());
        model.setFavourites(&favourites);
        model.setPack(u"aurora"_s);

        QCOMPARE(column(model, ColourwayListModel::KeyRole),
                 (QStringList { u"aurora/emerald"_s, u"aurora/violet"_s }));
        QCOMPARE(model.index(0).data(ColourwayListModel::EditionsRole).toStringList(),
                 (QStringList { u"appearance"_s, u"light"_s }));
        QVERIFY(!model.index(0).data(ColourwayListModel::NewRole).toBool());

        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(favourites.toggle(u"aurora"_s, u"violet"_s));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(column(model, ColourwayListModel::FavouriteRole),
                 (QStringList { u"false"_s, u"true"_s }));

        ColourwayListModel hearts;
        QAbstractItemModelTester heartsTester(
            &hearts, QAbstractItemModelTester::FailureReportingMode::QtTest);
        hearts.setShop(&rig.store());
        hearts.setFavourites(&favourites);
        hearts.setFavouritesOnly(true);
        QCOMPARE(column(hearts, ColourwayListModel::KeyRole), QStringList { u"aurora/violet"_s });
        QVERIFY(favourites.toggle(u"dunes"_s, u"amber"_s));
        QCOMPARE(column(hearts, ColourwayListModel::KeyRole),
                 (QStringList { u"aurora/violet"_s, u"dunes/amber"_s }));
        QVERIFY(favourites.toggle(u"aurora"_s, u"violet"_s));
        QCOMPARE(column(hearts, ColourwayListModel::KeyRole), QStringList { u"dunes/amber"_s });

        QVERIFY(finish(rig.store().localFile(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light)))
                    .value);
        QTRY_COMPARE(column(model, ColourwayListModel::DownloadedRole),
                     (QStringList { u"true"_s, u"false"_s }));

        // A pack of the shop the user has not bought: its art, nothing to set.
        model.setPack(u"harbour"_s);
        QCOMPARE(model.rowCount(), 1);
        QVERIFY(!model.index(0).data(ColourwayListModel::OwnedRole).toBool());
        QVERIFY(model.index(0).data(ColourwayListModel::EditionsRole).toStringList().isEmpty());
    }

    // Either load can fail. The sentences are the client's; the states that need none,
    // signed out and out of reach, are test_panel_text's.
    void firstLoadFails_data()
    {
        QTest::addColumn<QByteArray>("faults");
        QTest::addColumn<QString>("message");
        QTest::newRow("catalogue 500")
            << R"({"statuses": [{"endpoint": "catalogue", "status": 500}]})"_ba
            << u"Couldn't check for new files. The shop replied 500."_s;
        QTest::newRow("library malformed")
            << R"({"malformed": ["library"]})"_ba
            << u"Couldn't check for new files. The shop sent something the app didn't understand."_s;
    }

    // In place of the packs, a failure is the store's own sentence, not a connection to check;
    // the next load that works ends it.
    void firstLoadFails()
    {
        QFETCH(QByteArray, faults);
        StoreRig rig(::packs());
        QVERIFY(rig.isReady());
        LibraryStatus status(&rig.account(), &rig.store());
        QSignalSpy changed(&status, &LibraryStatus::changed);
        QVERIFY(rig.shop().setFaults(faults.constData()));
        finish(rig.store().start());
        QCOMPARE(status.state(), LibraryStatus::State::Failed);
        QTEST(status.message(), "message");
        QVERIFY(rig.store().owned().isEmpty());
        QVERIFY(!changed.isEmpty());

        changed.clear();
        QVERIFY(rig.shop().setFaults("{}"));
        finish(rig.store().refresh());
        QCOMPARE(status.state(), LibraryStatus::State::Ready);
        QCOMPARE(status.message(), QString());
        QVERIFY(!changed.isEmpty());
    }
};

QTEST_GUILESS_MAIN(ViewModelsTest)
#include "test_view_models.moc"
