#include "download_cache.h"
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

class DownloadCacheTest : public QObject {
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
        const QString pinned = cache.wallpaperFolder() + u"/harbour/mist-light-f_0b.heic"_s;
        const QString other = cache.wallpaperFolder() + u"/meadow/clover-light-f_0a.heic"_s;
        const QString stranger = cache.wallpaperFolder() + u"/harbour/notes.txt"_s;
        for (const auto &path : { shown, pinned, other, stranger })
            QVERIFY(writeFile(path, QByteArray(1, 'x')));
        QVERIFY(writeFile(cache.partialPath(mistDark), QByteArray(1, 'x')));
        QVERIFY(writeFile(cache.shopCachePath(), QByteArray(300, 'x')));
        // Partial files and the shop's copy are no downloads; strangers in the folder count.
        QCOMPARE(cache.downloadedSize(), 4);
        // Renderings count as downloads, and go with the file they were made of.
        const Renderer renderer(cache.renderingFolder());
        for (const auto &[file, id] :
             { std::pair(shown, u"f_0c"_s), std::pair(other, u"f_0a"_s) }) {
            QVERIFY(writeFile(renderer.renderingPath(id, 0), QByteArray(10, 'x')));
            QVERIFY(writeFile(renderer.folder() + u'/' + id + u".source.json"_s,
                              QJsonDocument(QJsonObject { { u"source"_s, file } }).toJson()));
        }
        QVERIFY(cache.downloadedSize() > 4 + 20);

        cache.removeDownloads([&](const QString &path) { return path == shown || path == pinned; });
        QVERIFY(QFile::exists(renderer.renderingPath(u"f_0c"_s, 0)));
        QVERIFY(!QFile::exists(renderer.renderingPath(u"f_0a"_s, 0)));

        QVERIFY(QFile::exists(shown));
        QVERIFY(QFile::exists(pinned));
        QVERIFY(QFile::exists(stranger)); // not ours to remove
        QVERIFY(!QFile::exists(other));
        QVERIFY(!QFile::exists(cache.partialPath(mistDark)));
        QVERIFY(!QDir(cache.wallpaperFolder() + u"/meadow"_s).exists());
        QCOMPARE(cache.installedFiles().size(), 2);
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
};

QTEST_GUILESS_MAIN(DownloadCacheTest)
#include "test_download_cache.moc"
