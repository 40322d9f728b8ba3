#include "edition_choice.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(Edition)

class EditionChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fallback_data()
    {
        QTest::addColumn<QList<Edition>>("available");
        QTest::addColumn<Edition>("wanted");
        QTest::addColumn<int>("expected"); // an Edition, or -1 for none

        const QList all { Edition::Automatic, Edition::TimeOfDay, Edition::Light, Edition::Dark };
        QTest::newRow("wanted is there") << all << Edition::Dark << int(Edition::Dark);
        QTest::newRow("dark falls back to appearance")
            << QList { Edition::Light, Edition::Automatic } << Edition::Dark
            << int(Edition::Automatic);
        QTest::newRow("appearance falls back to time of day")
            << QList { Edition::Dark, Edition::TimeOfDay } << Edition::Automatic
            << int(Edition::TimeOfDay);
        QTest::newRow("fixed light before dark")
            << QList { Edition::Dark, Edition::Light } << Edition::TimeOfDay << int(Edition::Light);
        QTest::newRow("last resort")
            << QList { Edition::Light } << Edition::Dark << int(Edition::Light);
        QTest::newRow("no files") << QList<Edition>() << Edition::Light << -1;
    }

    void fallback()
    {
        QFETCH(QList<Edition>, available);
        QFETCH(Edition, wanted);
        QFETCH(int, expected);

        OwnedPack pack { .slug = u"p"_s };
        for (const Edition edition : available)
            pack.files[u"c"_s].insert(edition, WallpaperFile { .edition = edition });
        const auto chosen = chooseEdition(pack, u"c"_s, wanted);
        QCOMPARE(chosen ? int(*chosen) : -1, expected);
        QVERIFY(!chooseEdition(pack, u"other"_s, wanted));
    }
};

QTEST_GUILESS_MAIN(EditionChoiceTest)
#include "test_edition_choice.moc"
