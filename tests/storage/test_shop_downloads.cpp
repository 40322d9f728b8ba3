#include "store_rig.h"
#include "test_files.h"
#include "test_support.h"
#include "transfers.h"

#include <QDirIterator>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

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
} // namespace

// The store's downloads: shared transfers, retries, links, notices, the Downloads folder and
// files the shop replaced, against the development shop.
class TestShopDownloads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    // Requests share one transfer, and its link while it has more than a minute left; without a
    // token there is no new link.
    void requestsShareOneTransferAndItsLink()
    {
        StoreRig rig({ aurora() });
        QVERIFY(rig.start());
        const auto file = rig.file(u"aurora"_s, u"violet"_s, Edition::Automatic);
        QList<Notice> notices;
        connect(&rig.store(), &Shop::messageChanged, this, [&] {
            if (const auto message = rig.store().message())
                notices.append(*message);
        });

        auto first = rig.store().localFile(file);
        auto second = rig.store().localFile(file);
        const auto one = finish(std::move(first));
        const auto two = finish(std::move(second));
        QVERIFY2(one.value && two.value, qPrintable(failureText(one)));
        QCOMPARE(*one.value, *two.value);
        QCOMPARE(readAll(*one.value), rig.shop().bytes(file.id));
        QCOMPARE(rig.shop().fileRequests(file.id), 1);
        QCOMPARE(rig.shop().requests(u"downloads"_s), 1);
        // One download shown, never two.
        QVERIFY(!notices.isEmpty());
        for (const auto &notice : std::as_const(notices))
            QVERIFY(notice.kind() == Notice::Kind::Downloading && notice.count() == 1);
        QVERIFY(!rig.store().message());

        const auto link = rig.store().transfers()->link(DownloadCache::fileKey(file));
        QVERIFY(link && link->expiresAt);
        for (const int secondsLeft : { 61, 59 }) {
            QVERIFY(QFile::remove(rig.store().cache().localPath(file)));
            rig.clock().setNow(link->expiresAt->addSecs(-secondsLeft));
            QVERIFY(finish(rig.store().localFile(file)).value);
            QCOMPARE(rig.shop().requests(u"downloads"_s), secondsLeft > 60 ? 1 : 2);
        }

        finish(rig.keychain().remove(QString(Keychain::sessionToken)));
        const auto outcome =
            finish(rig.store().localFile(rig.file(u"aurora"_s, u"emerald"_s, Edition::Dark)));
        QCOMPARE(failureText(outcome), u"You've been signed out."_s);
        QTRY_COMPARE(rig.account().status(), Account::Status::SignedOut);
        QCOMPARE(rig.shop().requests(u"downloads"_s), 2);
    }

    void retries_data()
    {
        QTest::addColumn<QByteArray>("faults");
        QTest::addColumn<bool>("arrives");

        QTest::newRow("403, then a new link")
            << "{\"statuses\": [{\"endpoint\": \"files\", \"status\": 403, \"times\": 1}]}"_ba
            << true;
        QTest::newRow("cut once") << "{\"cut\": {\"afterBytes\": 100000, \"times\": 1}}"_ba << true;
        QTest::newRow("cut twice")
            << "{\"cut\": {\"afterBytes\": 100000, \"times\": 2}}"_ba << false;
    }

    // One retry with a new link, and only one.
    void retries()
    {
        QFETCH(QByteArray, faults);
        QFETCH(bool, arrives);
        StoreRig rig({ aurora() });
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

    void desktopFilesToDownloads_data()
    {
        QTest::addColumn<QString>("filename");
        QTest::addColumn<QStringList>("existing");
        QTest::addColumn<QString>("saved");

        QTest::newRow("the shop's name")
            << u"Aurora (Mac).zip"_s << QStringList() << u"Aurora (Mac).zip"_s;
        // The names themselves are test_downloads_folder's; the store's own name when none is left.
        QTest::newRow("parent, taken")
            << u".."_s << QStringList { u"Quennet.zip"_s } << u"Quennet 2.zip"_s;
    }

    void desktopFilesToDownloads()
    {
        QFETCH(QString, filename);
        QFETCH(QStringList, existing);
        QFETCH(QString, saved);
        const ContentArchive noDigest { .device = u"mac"_s,
                                        .filename = u"Dunes (Mac).zip"_s,
                                        .bytes = 20'000,
                                        .listsDigest = false };
        StoreRig rig({ aurora(filename), { .slug = u"dunes"_s, .archives = { noDigest } } });
        QVERIFY(rig.start());
        // Nothing unchecked lands in Downloads.
        finish(rig.store().saveDesktopFiles(u"dunes"_s));
        QCOMPARE(
            rig.store().message(),
            std::optional(Notice::failed(u"Couldn't save dunes to Downloads. The shop sent this "
                                         "archive without a checksum, so it wasn't saved. Try "
                                         "again later."_s)));
        const QDir downloads(rig.downloadsFolder());
        for (const QString &name : std::as_const(existing))
            QVERIFY(writeFile(downloads.filePath(name), {}));

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

    void changedShopFiles()
    {
        StoreRig rig({ aurora() });
        QVERIFY(rig.start());
        const auto emerald = rig.file(u"aurora"_s, u"emerald"_s, Edition::Light);
        const int checks = rig.shop().requests(u"library"_s);

        // Replaced under the same id: the library is asked once, and the new bytes arrive.
        QVERIFY(rig.shop().setFaults(
            QByteArray("{\"changeFile\": \"" + emerald.id.toLatin1() + "\"}").constData()));
        QCOMPARE(failureText(finish(rig.store().localFile(emerald))), u"no failure"_s);
        QCOMPARE(rig.shop().requests(u"library"_s), checks + 1);
        QCOMPARE(rig.shop().fileRequests(emerald.id), 2);
        QByteArray changed = rig.shop().bytes(emerald.id);
        for (char &byte : changed)
            byte = char(~byte);
        QCOMPARE(readAll(rig.store().cache().localPath(emerald)), changed);
        QVERIFY(rig.file(u"aurora"_s, u"emerald"_s, Edition::Light).sha256 != emerald.sha256);
        QVERIFY(!rig.store().message());

        // Bytes unlike even the refreshed library: one look, no second download, the usual
        // sentence.
        const auto dark = rig.file(u"aurora"_s, u"emerald"_s, Edition::Dark);
        QVERIFY(rig.shop().setFaults("{\"alterBytes\": \"same-etag\"}"));
        QCOMPARE(failureText(finish(rig.store().localFile(dark))),
                 u"The download didn't match the shop's copy. Try again."_s);
        QCOMPARE(rig.shop().requests(u"library"_s), checks + 2);
        QCOMPARE(rig.shop().fileRequests(dark.id), 1);
        QVERIFY(!QFile::exists(rig.store().cache().localPath(dark)));
    }
};

QTEST_GUILESS_MAIN(TestShopDownloads)
#include "test_shop_downloads.moc"
