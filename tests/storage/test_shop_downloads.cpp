#include "archive_saver.h"
#include "network_error.h"
#include "reconciler.h"
#include "store_rig.h"
#include "test_support.h"
#include "transfers.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr qint64 MiB = 1024 * 1024;

ContentPack aurora(const QString &macArchive = u"Aurora (Mac).zip"_s)
{
    return { .slug = u"aurora"_s,
             .files = { { u"emerald"_s, u"light"_s, 300'000 },
                        { u"emerald"_s, u"dark"_s, 300'000 },
                        { u"violet"_s, u"appearance"_s, 3 * MiB } },
             .archives = { { u"mac"_s, macArchive, 40'000 },
                           { u"ipad"_s, u"Aurora (iPad).zip"_s, 30'000 } } };
}

QList<ContentPack> samplePacks()
{
    return { aurora(),
             { .slug = u"glacier"_s, .released = false },
             { .slug = u"dunes"_s,
               .archives = { { .device = u"mac"_s,
                               .filename = u"Dunes (Mac).zip"_s,
                               .bytes = 20'000,
                               .listsDigest = false } } } };
}
} // namespace

// The store's downloads and requests to set: shared transfers, retries, links, notices, the
// Downloads folder, generations, history, updates and removal, against the development shop.
class TestShopDownloads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void requestsShareOneTransfer();
    void retries_data();
    void retries();
    void cachedLinks_data();
    void cachedLinks();
    void vanishedToken();
    void desktopFilesToDownloads_data();
    void desktopFilesToDownloads();
    void whatIsRefused();
    void overtakenRequests();
    void goingBack();
    void replacedFilesAreUpdated_data();
    void replacedFilesAreUpdated();
    void removeDownloadsKeepsWhatIsShown();
    void damagedFilesAreMadeAgain();
    void changedShopFiles();
};

void TestShopDownloads::requestsShareOneTransfer()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto file = rig.file(u"aurora"_s, u"violet"_s, Edition::Automatic);
    QList<Notice> notices;
    connect(&rig.store(), &Shop::messageChanged, this, [&] {
        if (const auto message = rig.store().message())
            notices.append(*message);
    });

    auto first = rig.store().localFile(file);
    auto second = rig.store().localFile(file);
    QVERIFY(!rig.store().canRemoveDownloads());
    const auto one = finish(std::move(first));
    const auto two = finish(std::move(second));
    QVERIFY2(one.value && two.value, qPrintable(failureText(one)));
    QCOMPARE(*one.value, *two.value);
    QCOMPARE(readAll(*one.value), rig.shop().bytes(file.id));
    QCOMPARE(rig.shop().fileRequests(file.id), 1);
    QCOMPARE(rig.shop().requests(u"downloads"_s), 1);
    QVERIFY(rig.store().downloaded().contains(DownloadCache::fileKey(file)));

    QVERIFY(!notices.isEmpty());
    for (const auto &notice : std::as_const(notices)) {
        QCOMPARE(notice.kind(), Notice::Kind::Downloading);
        QCOMPARE(notice.count(), 1);
    }
    QVERIFY(!rig.store().message());
    QVERIFY(rig.store().canRemoveDownloads());
}

void TestShopDownloads::retries_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<bool>("arrives");

    QTest::newRow("403, then a new link")
        << "{\"statuses\": [{\"endpoint\": \"files\", \"status\": 403, \"times\": 1}]}"_ba << true;
    QTest::newRow("cut once") << "{\"cut\": {\"afterBytes\": 100000, \"times\": 1}}"_ba << true;
    QTest::newRow("cut twice") << "{\"cut\": {\"afterBytes\": 100000, \"times\": 2}}"_ba << false;
}

// One retry with a new link, and only one.
void TestShopDownloads::retries()
{
    QFETCH(QByteArray, faults);
    QFETCH(bool, arrives);
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto file = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    QVERIFY(rig.shop().setFaults(faults.constData()));

    const auto outcome = finish(rig.store().localFile(file));
    QCOMPARE(rig.shop().fileRequests(file.id), 2);
    QCOMPARE(rig.shop().requests(u"downloads"_s), 2);
    if (arrives) {
        QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
        QCOMPARE(readAll(*outcome.value), rig.shop().bytes(file.id));
        return;
    }
    const QString text = rig.store().message().value_or(Notice::saved({})).message();
    QVERIFY2(text.startsWith(u"Couldn't download EMERALD. "_s), qPrintable(text));
    QVERIFY(!QFile::exists(rig.store().cache().localPath(file)));
}

void TestShopDownloads::cachedLinks_data()
{
    QTest::addColumn<int>("secondsLeft");
    QTest::addColumn<int>("newLinks");

    QTest::newRow("59 s left: a new link") << 59 << 1;
    QTest::newRow("61 s left: reused") << 61 << 0;
}

void TestShopDownloads::cachedLinks()
{
    QFETCH(int, secondsLeft);
    QFETCH(int, newLinks);
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto file = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    QVERIFY(finish(rig.store().localFile(file)).value);
    const auto link = rig.store().transfers()->link(DownloadCache::fileKey(file));
    QVERIFY(link && link->expiresAt);

    QVERIFY(QFile::remove(rig.store().cache().localPath(file)));
    rig.clock().setNow(link->expiresAt->addSecs(-secondsLeft));
    const int before = rig.shop().requests(u"downloads"_s);
    QVERIFY(finish(rig.store().localFile(file)).value);
    QCOMPARE(rig.shop().requests(u"downloads"_s) - before, newLinks);
}

void TestShopDownloads::vanishedToken()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    finish(rig.keychain().remove(QString(Keychain::sessionToken)));

    const auto outcome =
        finish(rig.store().localFile(rig.file(u"aurora"_s, u"emerald"_s, Edition::Dark)));
    QCOMPARE(failureText(outcome), u"You've been signed out."_s);
    QTRY_COMPARE(rig.account().status(), Account::Status::SignedOut);
    QCOMPARE(rig.shop().requests(u"downloads"_s), 0);
}

void TestShopDownloads::desktopFilesToDownloads_data()
{
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("saved");

    QTest::newRow("the shop's name")
        << u"Aurora (Mac).zip"_s << QStringList() << u"Aurora (Mac).zip"_s;
    QTest::newRow("climbing out") << u"../../x"_s << QStringList() << u"x"_s;
    QTest::newRow("parent") << u".."_s << QStringList() << u"Quennet.zip"_s;
    QTest::newRow("taken twice") << u"Quennet.zip"_s
                                 << QStringList { u"Quennet.zip"_s, u"Quennet 2.zip"_s }
                                 << u"Quennet 3.zip"_s;
}

void TestShopDownloads::desktopFilesToDownloads()
{
    QFETCH(QString, filename);
    QFETCH(QStringList, existing);
    QFETCH(QString, saved);
    StoreRig rig({ aurora(filename) });
    QVERIFY(rig.start());
    QDir().mkpath(rig.downloadsFolder());
    const QDir downloads(rig.downloadsFolder());
    for (const QString &name : std::as_const(existing)) {
        QFile file(downloads.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    finish(rig.store().saveDesktopFiles(u"aurora"_s));
    const QString path = downloads.filePath(saved);
    QCOMPARE(rig.store().message(), std::optional(Notice::saved(QUrl::fromLocalFile(path))));
    const auto archive = rig.shop().packs()[0].archives[0];
    QCOMPARE(readAll(path), rig.shop().bytes(archive.id));
    // Nothing else appeared, here or above.
    QStringList everywhere;
    QDirIterator files(rig.downloadsRoot(), QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        everywhere.append(QFileInfo(files.next()).path());
    QCOMPARE(everywhere, QStringList(existing.size() + 1, rig.downloadsFolder()));
}

void TestShopDownloads::whatIsRefused()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto ids = QStringList { u"A"_s };
    QCOMPARE(
        failureText(finish(rig.store().setWallpaper(u"harbour"_s, u"sea"_s, Edition::Light, ids))),
        u"That wallpaper isn't in your packs."_s);
    QCOMPARE(
        failureText(finish(rig.store().setWallpaper(u"glacier"_s, u"ice"_s, Edition::Light, ids))),
        u"It isn't available to set yet."_s);
    // The nearest edition there is.
    QCOMPARE(rig.store().editionFor(u"aurora"_s, u"violet"_s, Edition::TimeOfDay),
             Edition::Automatic);
    QCOMPARE(rig.store().editionFor(u"aurora"_s, u"emerald"_s, Edition::Automatic), Edition::Light);
    QCOMPARE(rig.target().sets, 0);
    // Nothing unchecked lands in Downloads.
    finish(rig.store().saveDesktopFiles(u"dunes"_s));
    QCOMPARE(rig.store().message(),
             std::optional(Notice::failed(u"Couldn't save dunes to Downloads. The shop sent this "
                                          "archive without a checksum, so it wasn't saved. Try "
                                          "again later."_s)));
    QVERIFY(QDir(rig.downloadsFolder()).isEmpty());
}

void TestShopDownloads::overtakenRequests()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    // The older request waits for a slow transfer of the large file.
    QVERIFY(rig.shop().setFaults("{\"bytesPerSecond\": 6000000}"));
    auto older =
        rig.store().setWallpaper(u"aurora"_s, u"violet"_s, Edition::Automatic, { u"A"_s, u"B"_s });
    QTRY_VERIFY(!rig.store().progress().isEmpty());
    QVERIFY(rig.shop().setFaults("{}"));
    const auto newer =
        finish(rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Light, { u"A"_s }));
    QVERIFY2(newer.value, qPrintable(failureText(newer)));

    const auto outcome = finish(std::move(older));
    QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
    const auto &cache = rig.store().cache();
    QCOMPARE(rig.target().shown.value(u"A"_s),
             cache.localPath(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light)));
    QCOMPARE(rig.target().shown.value(u"B"_s),
             cache.localPath(rig.file(u"aurora"_s, u"violet"_s, Edition::Automatic)));

    // Overtaken on every display it asked for.
    QVERIFY(rig.shop().setFaults("{\"bytesPerSecond\": 6000000}"));
    auto oldest = rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Dark, { u"B"_s });
    QTRY_VERIFY(!rig.store().progress().isEmpty());
    QVERIFY(rig.shop().setFaults("{}"));
    QVERIFY(finish(rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Light, { u"B"_s }))
                .value);
    QCOMPARE(failureText(finish(std::move(oldest))),
             u"Another wallpaper was set while this one downloaded."_s);
    QCOMPARE(rig.target().shown.value(u"B"_s), rig.target().shown.value(u"A"_s));
}

void TestShopDownloads::goingBack()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto set = [&](Edition edition) {
        return finish(rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, edition, { u"A"_s }))
            .value.has_value();
    };
    QVERIFY(set(Edition::Light));
    QVERIFY(rig.store().history().isEmpty()); // nothing was shown before
    QVERIFY(set(Edition::Dark));
    QCOMPARE(rig.store().history().size(), 1);
    QCOMPARE(rig.store().history()[0].value(u"A"_s).edition, u"light"_s);

    QSignalSpy goingBack(&rig.store(), &Shop::isGoingBackChanged);
    QVERIFY(finish(rig.store().goBack()).value);
    QCOMPARE(goingBack.size(), 2);
    QVERIFY(!rig.store().isGoingBack());
    QVERIFY(rig.store().history().isEmpty());
    QCOMPARE(rig.target().shown.value(u"A"_s),
             rig.store().cache().localPath(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light)));

    // Only the latest changes are kept.
    for (int i = 0; i < 30; ++i)
        QVERIFY(set(i % 2 ? Edition::Light : Edition::Dark));
    QCOMPARE(rig.store().history().size(), 20);
}

void TestShopDownloads::replacedFilesAreUpdated_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<bool>("updated");

    QTest::newRow("new file arrives") << "{}"_ba << true;
    QTest::newRow("new file fails")
        << "{\"statuses\": [{\"endpoint\": \"files\", \"status\": 500}]}"_ba << false;
}

void TestShopDownloads::replacedFilesAreUpdated()
{
    QFETCH(QByteArray, faults);
    QFETCH(bool, updated);
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto old = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    QVERIFY(finish(rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Light,
                                            { u"A"_s, u"B"_s }))
                .value);
    const QString oldPath = rig.store().cache().localPath(old);

    // The shop replaces the file: same colourway and edition, a new id.
    auto packs = rig.shop().packs();
    packs[0].files[0].id.clear();
    QVERIFY(rig.shop().restart(packs));
    QVERIFY(rig.shop().setFaults(faults.constData()));
    auto *reconciler = rig.store().findChild<Reconciler *>();
    QSignalSpy settled(reconciler, &Reconciler::settled);
    if (!updated)
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(
                u"^Couldn't update aurora/emerald-light-f_.*: Couldn't download EMERALD. |The shop replied 500."_s));
    finish(rig.store().refresh());
    QTRY_COMPARE(settled.size(), 1);

    const auto current = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    QVERIFY(current.id != old.id);
    const QString newPath = rig.store().cache().localPath(current);
    const QString shown = updated ? newPath : oldPath;
    QCOMPARE(rig.target().shown.value(u"A"_s), shown);
    QCOMPARE(rig.target().shown.value(u"B"_s), shown);
    QCOMPARE(QFile::exists(oldPath), !updated);
    QCOMPARE(QFile::exists(newPath), updated);
}

void TestShopDownloads::removeDownloadsKeepsWhatIsShown()
{
    StoreRig rig(samplePacks());
    QVERIFY(rig.start());
    const auto light = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    const auto dark = rig.file(u"aurora"_s, u"emerald"_s, Edition::Dark);
    const auto violet = rig.file(u"aurora"_s, u"violet"_s, Edition::Automatic);
    QVERIFY(finish(rig.store().localFile(light)).value);
    QVERIFY(finish(rig.store().localFile(violet)).value);
    QVERIFY(finish(rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Dark, { u"B"_s }))
                .value);
    QCOMPARE(rig.store().downloaded().size(), 3);

    // Not while a download runs.
    QVERIFY(QFile::remove(rig.store().cache().localPath(violet)));
    QVERIFY(rig.shop().setFaults("{\"bytesPerSecond\": 6000000}"));
    auto running = rig.store().localFile(violet);
    QTRY_VERIFY(!rig.store().canRemoveDownloads());
    finish(rig.store().removeDownloads());
    QVERIFY(QFile::exists(rig.store().cache().localPath(light)));
    QVERIFY(finish(std::move(running)).value);

    finish(rig.store().removeDownloads());
    QCOMPARE(rig.store().downloaded(), QSet<QString> { DownloadCache::fileKey(dark) });
    QVERIFY(QFile::exists(rig.store().cache().localPath(dark)));
    QVERIFY(!QFile::exists(rig.store().cache().localPath(light)));
}

void TestShopDownloads::damagedFilesAreMadeAgain()
{
    // A real picture, and random bytes true to their digest that decode to nothing.
    StoreRig rig({ { .slug = u"aurora"_s,
                     .files = { { .colourway = u"emerald"_s,
                                  .edition = u"light"_s,
                                  .copyOf = u"" QUENNET_DEVSHOP_CONTENT
                                            "/files/aurora/emerald-light.heic"_s },
                                { u"violet"_s, u"dark"_s, 20'000 } } } });
    QVERIFY(rig.start());
    rig.target().renderer.emplace(rig.store().cache().renderingFolder());
    const auto emerald = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    const QString local = rig.store().cache().localPath(emerald);
    const QString rendering = rig.target().renderer->renderingPath(emerald.id, 0);
    const auto set = [&rig](const QString &colourway, Edition edition) {
        return failureText(
            finish(rig.store().setWallpaper(u"aurora"_s, colourway, edition, { u"A"_s })));
    };
    QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
    const QByteArray picture = readAll(rendering);
    QVERIFY(!picture.isEmpty());

    // A rendering cut short is made again from the file on disk.
    QVERIFY(QFile::resize(rendering, picture.size() / 2));
    QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
    QCOMPARE(readAll(rendering), picture);
    QCOMPARE(rig.shop().fileRequests(emerald.id), 1);

    // A downloaded file that no longer decodes is downloaded again.
    QFile junk(local);
    QVERIFY(junk.open(QIODevice::WriteOnly | QIODevice::Truncate) && junk.write("junk") == 4);
    junk.close();
    QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
    QCOMPARE(rig.shop().fileRequests(emerald.id), 2);
    QCOMPARE(readAll(local), rig.shop().bytes(emerald.id));
    QCOMPARE(readAll(rendering), picture);

    // Once: a file that does not decode when fetched again fails the set as before.
    const auto violet = rig.file(u"aurora"_s, u"violet"_s, Edition::Dark);
    QCOMPARE(set(u"violet"_s, Edition::Dark),
             u"This wallpaper could not be prepared for your desktop."_s);
    QCOMPARE(rig.shop().fileRequests(violet.id), 2);
    QCOMPARE(rig.target().shown.value(u"A"_s), local);
}

void TestShopDownloads::changedShopFiles()
{
    StoreRig rig({ aurora() });
    QVERIFY(rig.start());
    const auto emerald = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
    const int checks = rig.shop().requests(u"library"_s);

    // Replaced under the same id: the library is asked once, and the new bytes arrive.
    QVERIFY(rig.shop().setFaults(
        QByteArray("{\"changeFile\": \"" + emerald.id.toLatin1() + "\"}").constData()));
    QCOMPARE(failureText(finish(
                 rig.store().setWallpaper(u"aurora"_s, u"emerald"_s, Edition::Light, { u"A"_s }))),
             u"no failure"_s);
    QCOMPARE(rig.shop().requests(u"library"_s), checks + 1);
    QCOMPARE(rig.shop().fileRequests(emerald.id), 2);
    QByteArray changed = rig.shop().bytes(emerald.id);
    for (char &byte : changed)
        byte = char(~byte);
    QCOMPARE(readAll(rig.store().cache().localPath(emerald)), changed);
    QVERIFY(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light).sha256 != emerald.sha256);
    QVERIFY(!rig.store().message());

    // Bytes unlike even the refreshed library: one look, no second download, the usual sentence.
    const auto dark = rig.file(u"aurora"_s, u"emerald"_s, Edition::Dark);
    QVERIFY(rig.shop().setFaults("{\"alterBytes\": \"same-etag\"}"));
    QCOMPARE(failureText(finish(rig.store().localFile(dark))),
             u"The download didn't match the shop's copy. Try again."_s);
    QCOMPARE(rig.shop().requests(u"library"_s), checks + 2);
    QCOMPARE(rig.shop().fileRequests(dark.id), 1);
    QVERIFY(!QFile::exists(rig.store().cache().localPath(dark)));
}

QTEST_GUILESS_MAIN(TestShopDownloads)
#include "test_shop_downloads.moc"
