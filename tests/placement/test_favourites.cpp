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
    // Newest first, a removal keeps the others' order, and each start reads back what the last
    // one left, down to none.
    void toggleOrderAndReadBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.ini"_s);
        const auto toggled = [&](const QStringList &keys) {
            Defaults defaults(path);
            Favourites favourites(&defaults);
            QSignalSpy changed(&favourites, &Favourites::keysChanged);
            bool saved = true;
            for (const QString &key : keys)
                saved = favourites.toggle(key.section(u'/', 0, 0), key.section(u'/', 1)) && saved;
            return saved && changed.size() == keys.size() ? favourites.keys()
                                                          : QStringList { u"?"_s };
        };
        QCOMPARE(toggled({ u"a/1"_s, u"b/2"_s, u"c/3"_s, u"b/2"_s }),
                 QStringList({ u"c/3"_s, u"a/1"_s }));
        QCOMPARE(toggled({}), QStringList({ u"c/3"_s, u"a/1"_s }));
        QCOMPARE(toggled({ u"c/3"_s, u"a/1"_s }), QStringList());
        QCOMPARE(toggled({}), QStringList());

        // Anything but a list of keys, or one key that reads back as text, is no favourites.
        for (const QVariant &value : { QVariant(QByteArray("a/1")), QVariant(u"hello"_s) }) {
            QSettings(path, QSettings::IniFormat).setValue("favouriteColourways", value);
            Defaults defaults(path);
            QVERIFY(Favourites(&defaults).keys().isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(FavouritesTest)
#include "test_favourites.moc"
