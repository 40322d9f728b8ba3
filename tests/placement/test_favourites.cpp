#include "defaults.h"
#include "favourites.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class FavouritesTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_path;

private Q_SLOTS:
    void init()
    {
        m_path = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + u".ini"_s);
        QFile::remove(m_path);
    }

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
        {
            Defaults defaults(m_path);
            Favourites favourites(&defaults);
            QSignalSpy changed(&favourites, &Favourites::keysChanged);
            for (const QString &key : std::as_const(toggles))
                QVERIFY(favourites.toggle(key.section(u'/', 0, 0), key.section(u'/', 1)));
            QCOMPARE(favourites.keys(), stored);
            QCOMPARE(changed.size(), toggles.size());
        }
        // Read back from the file by a new start.
        Defaults defaults(m_path);
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
        QSettings(m_path, QSettings::IniFormat).setValue("favouriteColourways", value);
        Defaults defaults(m_path);
        QVERIFY(Favourites(&defaults).keys().isEmpty());
    }
};

QTEST_GUILESS_MAIN(FavouritesTest)
#include "test_favourites.moc"
