#include "defaults.h"
#include "test_files.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// What QSettings, and so every earlier build, reads from the file.
QVariantMap asQSettingsReadsIt(const QString &path)
{
    const QSettings settings(path, QSettings::IniFormat);
    QVariantMap values;
    for (const QString &key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}
} // namespace

// The settings file: the development keys as a person writes them by hand, and every value as
// this and earlier builds read it back. Full disks are in test_atomic_file.
class DefaultsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void shopKeys_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QUrl>("base");
        QTest::addColumn<std::optional<QString>>("certificates");

        // Anything but a usable http(s) address is the production shop.
        const auto row = [](const char *name, const QByteArray &ini, const QUrl &base = {},
                            const std::optional<QString> &certificates = {}) {
            QTest::newRow(name) << ini << (base.isEmpty() ? Defaults::productionShopURL() : base)
                                << certificates;
        };
        row("nothing set", {});
        row("a development shop",
            "shopBaseURL=https://127.0.0.1:8443/api/app/v1\nshopCertificates=/ca.pem",
            QUrl(u"https://127.0.0.1:8443/api/app/v1"_s), u"/ca.pem"_s);
        row("empty", "shopBaseURL=\nshopCertificates=");
        row("not a URL", "shopBaseURL=shop.example");
        row("another scheme", "shopBaseURL=ftp://shop.example/");
        // INI reads an unquoted comma as a list.
        row("a list", "shopBaseURL=https://a.example,b");
    }

    void shopKeys()
    {
        QFETCH(QByteArray, ini);
        QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.ini"_s);
        QVERIFY(writeFile(path, "[General]\n" + ini + '\n'));
        const Defaults defaults(path);
        QTEST(defaults.shopBaseURL(), "base");
        QTEST(defaults.shopCertificates(), "certificates");
    }

    void everyValueReadsBack()
    {
        // Text that INI would split at commas, cut at ';', trim, unescape or take for a typed
        // value; a hex digit right after a control character; text beyond Latin-1.
        const QString awkward = u"@home; \"a, b\" = c\\d\t\x01"
                                u"F \u00e9 \U0001F304 "_s;
        const QStringList keys { u"a/1, b"_s, u"@c/2"_s, u" d/3 "_s };
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes += char(i);
        const QDateTime anchor(QDate(2026, 3, 1), QTime(8, 0, 0, 250), Qt::UTC);
        const QMap<QString, QStringList> seen { { u"aurora"_s, { u"emerald"_s } },
                                                { u"dunes, rose"_s, { u"amber"_s, u"@x"_s } } };

        QTemporaryDir folder;
        const QString path = folder.filePath(u"new/defaults.ini"_s);
        Defaults defaults(path);
        // Two objects on one file keep each other's changes.
        QVERIFY(defaults.setShuffleInterval(awkward));
        QVERIFY(Defaults(path).setShuffleIsOn(true));
        QVERIFY(defaults.setShuffleAnchor(anchor));
        QVERIFY(defaults.setShufflePlayed({ u"p/one"_s }));
        QVERIFY(defaults.setFavouriteColourways(keys));
        QVERIFY(defaults.setFocusWallpaper(bytes));
        QVERIFY(defaults.setFocusRestores("[]"));
        QVERIFY(defaults.setFocusRestores({}));
        QVERIFY(defaults.setSeenColourways(seen));

        const Defaults read(path);
        QVERIFY(read.shuffleIsOn());
        QCOMPARE(read.shuffleInterval(), awkward);
        QCOMPARE(read.shuffleAnchor(), anchor);
        QCOMPARE(read.shufflePlayed(), QStringList { u"p/one"_s });
        QCOMPARE(read.favouriteColourways(), keys);
        QCOMPARE(read.focusWallpaper(), bytes);
        QCOMPARE(read.focusRestores(), QByteArray());
        QCOMPARE(read.seenColourways(), seen);

        // As earlier builds wrote them; a list of one is plain text in INI.
        QVariantMap seenMap;
        for (auto it = seen.cbegin(); it != seen.cend(); ++it)
            seenMap.insert(it.key(), it.value());
        const QVariantMap expected {
            { u"shuffleIsOn"_s, u"true"_s },
            { u"shuffleInterval"_s, awkward },
            { u"shuffleAnchor"_s, u"2026-03-01T08:00:00.250Z"_s },
            { u"shufflePlayed"_s, u"p/one"_s },
            { u"favouriteColourways"_s, keys },
            { u"focusWallpaper"_s, bytes },
            { u"seenColourways"_s, seenMap },
        };
        QCOMPARE(asQSettingsReadsIt(path), expected);
    }

    void anEarlierFileReadsAndKeepsWhatItHolds()
    {
        // Written by QSettings in an earlier build, with keys no build reads.
        const QString earlier = QStringLiteral(QUENNET_TEST_DATA "/library/earlier-defaults.ini");
        QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.ini"_s);
        QVERIFY(QFile::copy(earlier, path));

        // Read through QSettings as every file is (everyValueReadsBack); the quoted and binary
        // forms of an earlier build are the ones worth a look.
        Defaults defaults(path);
        QCOMPARE(defaults.focusWallpaper(),
                 QByteArray("{\"key\":\"aurora/violet\",\"name\":\"Z\xc3\xbcrich, \\\"x\\\"\"}"));
        QCOMPARE(defaults.seenColourways(),
                 (QMap<QString, QStringList> { { u"aurora"_s, { u"emerald"_s } },
                                               { u"dunes"_s, { u"amber"_s, u"rose"_s } } }));

        // One change rewrites the file; everything else in it reads as before.
        QVERIFY(defaults.setShuffleIsOn(false));
        QVariantMap expected = asQSettingsReadsIt(earlier);
        expected.insert(u"shuffleIsOn"_s, u"false"_s);
        QCOMPARE(asQSettingsReadsIt(path), expected);
    }
};

QTEST_GUILESS_MAIN(DefaultsTest)
#include "test_defaults.moc"
