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
};

QTEST_GUILESS_MAIN(LibraryModelTest)
#include "test_library_model.moc"
