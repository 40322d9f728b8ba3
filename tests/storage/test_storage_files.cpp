#include "download_cache.h"
#include "downloads_folder.h"
#include "owned_pack.h"
#include "renderer.h"
#include "shop_cache.h"
#include "test_files.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const WallpaperFile mistDark { .id = u"f_0123456789ab"_s,
                               .pack = u"harbour"_s,
                               .colourway = u"mist"_s,
                               .edition = Edition::Dark,
                               .bytes = 10 };
} // namespace

// The files the store keeps: its downloads, its copy of the shop, and archives saved to Downloads.
class StorageFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A hyphenated slug is fine; an unknown edition or trailing text is not an installed file.
    void installedNames()
    {
        QTemporaryDir root;
        const DownloadCache cache(root.path());
        for (const auto &name :
             { u"mist-dark-f_0123456789ab.heic"_s, u"sea-mist-2-time-of-day-f_00ff.heic"_s,
               u"mist-automatic-f_0123456789ac.heic"_s, u"mist-dark-f_0123456789ad.heic.tmp"_s })
            QVERIFY(writeFile(cache.wallpaperFolder() + u"/harbour/"_s + name, QByteArray(1, 'x')));
        QStringList found;
        for (const auto &file : cache.installedFiles())
            found << file.id + u' ' + file.key;
        found.sort();
        QCOMPARE(found,
                 (QStringList { u"f_00ff harbour/sea-mist-2-time-of-day-f_00ff.heic"_s,
                                u"f_0123456789ab harbour/mist-dark-f_0123456789ab.heic"_s }));
    }

    void removeKeepsWhatIsShown()
    {
        QTemporaryDir root;
        const DownloadCache cache(root.path());
        const QString shown = cache.localPath(mistDark);
        const QString other = cache.wallpaperFolder() + u"/meadow/clover-light-f_0a.heic"_s;
        const QString stranger = cache.wallpaperFolder() + u"/harbour/notes.txt"_s;
        for (const auto &path : { shown, other, stranger })
            QVERIFY(writeFile(path, QByteArray(1, 'x')));
        QVERIFY(writeFile(cache.partialPath(mistDark), QByteArray(1, 'x')));
        QVERIFY(writeFile(cache.shopCachePath(), QByteArray(300, 'x')));
        // Partial files and the shop's copy are no downloads; strangers in the folder count.
        QCOMPARE(cache.downloadedSize(), 3);
        // Renderings count as downloads, and go with the file they were made of.
        const Renderer renderer(cache.renderingFolder());
        for (const auto &[file, id] :
             { std::pair(shown, u"f_0c"_s), std::pair(other, u"f_0a"_s) }) {
            QVERIFY(writeFile(renderer.renderingPath(id, 0), QByteArray(10, 'x')));
            QVERIFY(writeFile(renderer.folder() + u'/' + id + u".source.json"_s,
                              QJsonDocument(QJsonObject { { u"source"_s, file } }).toJson()));
        }
        QVERIFY(cache.downloadedSize() > 3 + 20);

        cache.removeDownloads([&](const QString &path) { return path == shown; });
        QVERIFY(QFile::exists(renderer.renderingPath(u"f_0c"_s, 0)));
        QVERIFY(!QFile::exists(renderer.renderingPath(u"f_0a"_s, 0)));

        QVERIFY(QFile::exists(shown));
        QVERIFY(QFile::exists(stranger)); // not ours to remove
        QVERIFY(!QFile::exists(other));
        QVERIFY(!QFile::exists(cache.partialPath(mistDark)));
        QVERIFY(!QDir(cache.wallpaperFolder() + u"/meadow"_s).exists());
    }

    // The round trip of the shop's copy shows in the store's restarts (test_shop_library).
    void damagedShopCopyIsNoCopy()
    {
        QTemporaryDir root;
        const QString path = root.filePath(u"shop-cache.json"_s);
        for (const auto &bytes :
             { "{\"catalogue\": {\"packs\": []}}"_ba, "not json"_ba, "{}"_ba }) {
            QVERIFY(writeFile(path, bytes));
            QVERIFY(!Cache::load(path));
        }
        // An update over a damaged copy starts from an empty record.
        QVERIFY(Cache::update(path, [](Cache::Saved &copy) { copy.account = u"x"_s; }));
        QCOMPARE(Cache::load(path)->account, u"x"_s);
    }

    void hostileNames_data()
    {
        QTest::addColumn<QString>("shopName");
        QTest::addColumn<QString>("expected"); // empty: refused
        QTest::newRow("plain") << u"Harbour Mac.zip"_s << u"Harbour Mac.zip"_s;
        QTest::newRow("climbing out") << u"../../x"_s << u"x"_s;
        QTest::newRow("backslashes") << u"..\\..\\evil.zip"_s << u"evil.zip"_s;
        QTest::newRow("dot dot") << u".."_s << QString();
        QTest::newRow("only spaces") << u"   "_s << QString();
    }

    void hostileNames()
    {
        QFETCH(QString, shopName);
        QFETCH(QString, expected);
        QCOMPARE(DownloadsFolder::safeName(shopName),
                 expected.isEmpty() ? std::nullopt : std::optional(expected));
    }

    // Names taken, by files or by links, dangling ones too, get a counter; nothing is written
    // through a link, and moving leaves nothing behind.
    void takenNamesGetACounter()
    {
        QTemporaryDir downloads;
        QTemporaryDir elsewhere;
        const QString source = elsewhere.filePath(u"archive"_s);
        QVERIFY(writeFile(source, "zip"));
        const QString outside = elsewhere.filePath(u"outside.zip"_s);
        QVERIFY(QFile::link(outside, downloads.filePath(u"Aurora (Mac).zip"_s)));
        QVERIFY(QFile::link(outside, downloads.filePath(u"Aurora (Mac) 2.zip"_s)));

        const auto put = [&](const QString &name, DownloadsFolder::Source after) {
            const QString path = DownloadsFolder::put(source, downloads.path(), name, after);
            if (QFileInfo(path).absolutePath() != QDir(downloads.path()).absolutePath())
                qFatal("written outside the folder");
            return QFileInfo(path).fileName();
        };
        const auto keep = DownloadsFolder::Source::Keep;
        QCOMPARE(put(u"Aurora (Mac).zip"_s, keep), u"Aurora (Mac) 3.zip"_s);
        QCOMPARE(put(u"Aurora (Mac).zip"_s, keep), u"Aurora (Mac) 4.zip"_s);
        QVERIFY(!QFileInfo::exists(outside));
        QCOMPARE(put(u"pack.tar.gz"_s, keep), u"pack.tar.gz"_s);
        QCOMPARE(put(u"pack.tar.gz"_s, keep), u"pack.tar 2.gz"_s);

        QCOMPARE(put(u"Aurora (Mac).zip"_s, DownloadsFolder::Source::Remove),
                 u"Aurora (Mac) 5.zip"_s);
        QVERIFY(!QFile::exists(source));
        QVERIFY(!QFileInfo::exists(outside));
        QCOMPARE(readAll(downloads.filePath(u"Aurora (Mac) 5.zip"_s)), "zip");
    }
};

QTEST_GUILESS_MAIN(StorageFilesTest)
#include "test_storage_files.moc"
