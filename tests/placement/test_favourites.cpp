#include "defaults.h"
#include "favourites.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class FavouritesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toggleOrder_data()
    {
        QTest::addColumn<QStringList>("toggles");
        QTest::addColumn<QStringList>("stored");
        QTest::newRow("newest first; a removal keeps the others' order")
            << QStringList { u"a/1"_s, u"b/2"_s, u"c/3"_s, u"b/2"_s }
            << QStringList { u"c/3"_s, u"a/1"_s };
        QTest::newRow("last one removed") << QStringList { u"a/1"_s, u"a/1"_s } << QStringList {};
    }

    void toggleOrder()
    {
        QFETCH(QStringList, toggles);
        QFETCH(QStringList, stored);
        QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.ini"_s);
        {
            Defaults defaults(path);
            Favourites favourites(&defaults);
            QSignalSpy changed(&favourites, &Favourites::keysChanged);
            for (const QString &key : std::as_const(toggles))
                QVERIFY(favourites.toggle(key.section(u'/', 0, 0), key.section(u'/', 1)));
            QCOMPARE(favourites.keys(), stored);
            QCOMPARE(changed.size(), toggles.size());
        }
        // Read back from the file by a new start.
        Defaults defaults(path);
        QCOMPARE(Favourites(&defaults).keys(), stored);
    }

    // Anything but a list of keys, or one key that reads back as text, is no favourites.
    void storedValueOfTheWrongType_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("number") << QVariant(42);
        QTest::newRow("bytes") << QVariant(QByteArray("a/1"));
        QTest::newRow("text that is no key") << QVariant(u"hello"_s);
    }

    void storedValueOfTheWrongType()
    {
        QFETCH(QVariant, value);
        QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.ini"_s);
        QSettings(path, QSettings::IniFormat).setValue("favouriteColourways", value);
        Defaults defaults(path);
        QVERIFY(Favourites(&defaults).keys().isEmpty());
    }
};

QTEST_GUILESS_MAIN(FavouritesTest)
#include "test_favourites.moc"
