#include "owned_pack.h"
#include "pack.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class LibraryModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void artworkChoice_data()
    {
        QTest::addColumn<QStringList>("desktop"); // light, dark; empty text = none
        QTest::addColumn<QStringList>("thumbnails");
        QTest::addColumn<QString>("light");
        QTest::addColumn<QString>("dark");

        QTest::newRow("only dark thumbnail serves both")
            << QStringList { {}, {} } << QStringList { {}, u"td"_s } << u"td"_s << u"td"_s;
        QTest::newRow("full size before thumbnail")
            << QStringList { u"dl"_s, u"dd"_s } << QStringList { u"tl"_s, u"td"_s } << u"dl"_s
            << u"dd"_s;
        QTest::newRow("own thumbnail before other desktop")
            << QStringList { u"dl"_s, {} } << QStringList { {}, u"td"_s } << u"dl"_s << u"td"_s;
        QTest::newRow("other desktop before other thumbnail")
            << QStringList { {}, u"dd"_s } << QStringList { {}, u"td"_s } << u"dd"_s << u"dd"_s;
    }

    void artworkChoice()
    {
        QFETCH(QStringList, desktop);
        QFETCH(QStringList, thumbnails);
        QFETCH(QString, light);
        QFETCH(QString, dark);

        Colourway colourway;
        for (const Appearance appearance : allAppearances) {
            const int i = static_cast<int>(appearance);
            if (!desktop[i].isEmpty())
                colourway.desktop.insert(appearance, QUrl(desktop[i]));
            if (!thumbnails[i].isEmpty())
                colourway.thumbnails.insert(appearance, QUrl(thumbnails[i]));
        }
        QCOMPARE(colourway.artwork(Appearance::Light).value_or(QUrl()), QUrl(light));
        QCOMPARE(colourway.artwork(Appearance::Dark).value_or(QUrl()), QUrl(dark));
    }

    void valuesDifferByEveryField()
    {
        const WallpaperFile file { .id = u"f_0123456789ab"_s,
                                   .pack = u"p"_s,
                                   .colourway = u"c"_s,
                                   .edition = Edition::Dark,
                                   .bytes = 10,
                                   .sha256 = u"ab"_s,
                                   .source = FileSource::shop() };
        WallpaperFile otherBytes = file;
        otherBytes.bytes = 11;
        WallpaperFile otherSource = file;
        otherSource.source = FileSource::publicUrl(QUrl(u"https://shop.example/f"_s));
        WallpaperFile noHash = file;
        noHash.sha256.reset();

        QCOMPARE(qHash(file, 7), qHash(WallpaperFile(file), 7));
        for (const auto &other : { otherBytes, otherSource, noHash }) {
            QVERIFY(other != file);
            QVERIFY(qHash(other) != qHash(file));
        }
        QVERIFY(FileSource::local(QUrl(u"file:///a"_s))
                != FileSource::publicUrl(QUrl(u"file:///a"_s)));

        OwnedPack pack { .slug = u"p"_s };
        pack.files[u"c"_s].insert(Edition::Dark, file);
        OwnedPack changed = pack;
        changed.files[u"c"_s].insert(Edition::Dark, otherBytes);
        QVERIFY(pack != changed);
        QVERIFY(qHash(pack) != qHash(changed));
        QCOMPARE(pack.file(u"c"_s, Edition::Dark), file);
        QVERIFY(!pack.file(u"c"_s, Edition::Light));
        QVERIFY(!pack.file(u"x"_s, Edition::Dark));
        QCOMPARE(changed.allFiles(), QList<WallpaperFile> { otherBytes });
    }
};

QTEST_GUILESS_MAIN(LibraryModelTest)
#include "test_library_model.moc"
