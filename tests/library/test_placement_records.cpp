#include "placement_records.h"
#include "test_files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const Placement mist { u"harbour"_s, u"mist"_s, u"dark"_s, u"/a.heic"_s, 1700000000123 };
} // namespace

class PlacementRecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void load_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<bool>("useOnAllSpaces");
        QTest::addColumn<QStringList>("displays");
        QTest::addColumn<QStringList>("applied");

        QTest::newRow("applied derived, null flag")
            << u"no-applied.json"_s << true << QStringList { u"display-1"_s }
            << QStringList { u"/p.heic"_s };
        QTest::newRow("everything given")
            << u"full.json"_s << false << QStringList { u"display-1"_s, u"display-2"_s }
            << QStringList { u"/a.heic"_s, u"/b.heic"_s };
        // Missing, empty or damaged: no record at all.
        for (const char *broken : { "", "empty.json", "empty-object.json", "string-setat.json",
                                    "missing-key.json", "array.json", "wrong-type.json" })
            QTest::newRow(*broken ? broken : "no file")
                << QString::fromLatin1(broken) << true << QStringList() << QStringList();
    }

    void load()
    {
        QFETCH(QString, fixture);
        QFETCH(bool, useOnAllSpaces);
        QFETCH(QStringList, applied);

        QTemporaryDir folder;
        if (!fixture.isEmpty())
            QVERIFY(QFile::copy(QStringLiteral(QUENNET_TEST_DATA "/library/placements/") + fixture,
                                folder.filePath(u"placements.json"_s)));
        const PlacementFile record = PlacementRecords(folder.path()).load();
        QCOMPARE(record.useOnAllSpaces, useOnAllSpaces);
        QTEST(record.placements.keys(), "displays");
        QCOMPARE(record.applied, QSet<QString>(applied.cbegin(), applied.cend()));
        if (fixture == "full.json"_L1) { // beyond a double's precision
            QCOMPARE(record.placements[u"display-2"_s].setAt, 9007199254740993LL);
            QCOMPARE(record.placements[u"display-2"_s].edition, u"time-of-day"_s);
        }
    }

    void saveCreatesFolderAndRoundTrips()
    {
        QTemporaryDir root;
        const PlacementRecords records(root.filePath(u"a/b/app.quennet.Quennet"_s));
        PlacementFile record;
        record.useOnAllSpaces = false;
        record.placements.insert(u"display-1"_s, mist);
        record.applied = { u"/a.heic"_s, u"/old.heic"_s };

        QVERIFY(records.save(record));
        QCOMPARE(records.load(), record);

        QVERIFY(writeFile(root.filePath(u"file"_s), "not a folder"));
        QVERIFY(!PlacementRecords(root.filePath(u"file/folder"_s)).save(record));
    }

    void released_data()
    {
        QTest::addColumn<QByteArray>("released"); // in {"released": {…}}; empty: no file
        QTest::addColumn<bool>("hasPlacement");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char *name, const char *released, bool hasPlacement,
                            bool expected) {
            QTest::newRow(name) << QByteArray(released) << hasPlacement << expected;
        };
        row("exactly this placement", R"("d": 1700000000123)", true, true);
        row("one millisecond off", R"("d": 1700000000122)", true, false);
        row("another display", R"("e": 1700000000123)", true, false);
        row("no placement", R"("d": 1700000000123)", false, false);
        row("no file", "", true, false);
        row("value as text", R"("d": "1700000000123")", true, false);
        row("another entry broken", R"("d": 1700000000123, "e": "x")", true, false);
    }

    void released()
    {
        QFETCH(QByteArray, released);
        QFETCH(bool, hasPlacement);

        QTemporaryDir folder;
        const PlacementRecords records(folder.path());
        const auto placement = hasPlacement ? std::optional(mist) : std::nullopt;
        // Asked before the file exists: another process writes it while Quennet runs.
        QVERIFY(!records.isReleased(u"d"_s, placement));
        if (!released.isEmpty())
            QVERIFY(writeFile(records.releasedFilePath(), "{\"released\": {" + released + "}}"));
        QTEST(records.isReleased(u"d"_s, placement), "expected");
    }
};

QTEST_GUILESS_MAIN(PlacementRecordsTest)
#include "test_placement_records.moc"
