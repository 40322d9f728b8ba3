#include "cancel_token.h"
#include "content_range.h"
#include "download_cache.h"
#include "download_thread.h"
#include "file_fetcher.h"
#include "network_error.h"
#include "shop_content.h"
#include "test_support.h"

#include <QStandardPaths>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;
using Failure = FileFetcher::Failure;

namespace {
constexpr qint64 MiB = 1024 * 1024;

// What a fetch left on disk.
struct Leftovers {
    bool destination = false;
    bool partial = false;
    bool validator = false;
};
} // namespace

// The file fetcher against the development shop's fault switches, and a stand-in server for the
// partial responses the shop does not make.
class TestFileFetcher : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void contentRange_data();
    void contentRange();
    void startsOver_data();
    void startsOver();
    void statuses_data();
    void statuses();
    void partialResponses_data();
    void partialResponses();
    void mismatches_data();
    void mismatches();
    void completePartialNeedsNoRequest();
    void progressOnTheMainThread();
    void cancellationKeepsThePartialFile();

private:
    [[nodiscard]] FileFetcher::Target target(const ContentFile &file) const;
    [[nodiscard]] Leftovers leftovers(const FileFetcher::Target &target) const;
    Result<bool> fetch(const QUrl &source, const FileFetcher::Target &target,
                       FileFetcher::Progress progress = {},
                       std::shared_ptr<CancelToken> cancel = {});
    // Bytes and a validator left by an earlier, interrupted attempt.
    void leavePartial(const FileFetcher::Target &target, const QByteArray &bytes,
                      const QByteArray &validator);

    std::optional<ContentShop> m_shop;
    std::unique_ptr<DownloadThread> m_thread;
    std::optional<QTemporaryDir> m_dir;
    ContentFile m_small; // well below one write block
    ContentFile m_large; // several blocks, not a whole number of them
};

void TestFileFetcher::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_shop.emplace(QList<ContentPack> { {
        .slug = u"test"_s,
        .free = true,
        .files = { { u"small"_s, u"light"_s, 200'000 },
                   { u"large"_s, u"dark"_s, 3 * MiB + 12'345 } },
    } });
    QVERIFY(m_shop->isRunning());
    m_small = m_shop->packs()[0].files[0];
    m_large = m_shop->packs()[0].files[1];
    m_thread = std::make_unique<DownloadThread>(m_shop->shop().caPath(), m_shop->baseUrl());
}

void TestFileFetcher::init()
{
    QVERIFY(m_shop->setFaults("{}"));
    m_dir.emplace();
}

FileFetcher::Target TestFileFetcher::target(const ContentFile &file) const
{
    return { .destination = m_dir->filePath(u"Quennet/test/"_s + file.id + u".heic"_s),
             .partial = m_dir->filePath(u"Partial/"_s + file.id + u".partial"_s),
             .size = file.bytes,
             .sha256 = file.sha256 };
}

Leftovers TestFileFetcher::leftovers(const FileFetcher::Target &target) const
{
    return { QFile::exists(target.destination), QFile::exists(target.partial),
             QFile::exists(DownloadCache::validatorPath(target.partial)) };
}

Result<bool> TestFileFetcher::fetch(const QUrl &source, const FileFetcher::Target &target,
                                    FileFetcher::Progress progress,
                                    std::shared_ptr<CancelToken> cancel)
{
    return finish(
        FileFetcher(m_thread.get()).fetch(source, target, std::move(progress), std::move(cancel)));
}

void TestFileFetcher::leavePartial(const FileFetcher::Target &target, const QByteArray &bytes,
                                   const QByteArray &validator)
{
    QDir().mkpath(QFileInfo(target.partial).path());
    QFile partial(target.partial);
    QVERIFY(partial.open(QIODevice::WriteOnly));
    partial.write(bytes);
    if (validator.isEmpty())
        return;
    QFile etag(DownloadCache::validatorPath(target.partial));
    QVERIFY(etag.open(QIODevice::WriteOnly));
    etag.write(validator);
}

void TestFileFetcher::contentRange_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<qint64>("start"); // -1: none

    QTest::newRow("known total") << "bytes 100-199/200"_ba << 100LL;
    QTest::newRow("unknown total") << "bytes 100-199/*"_ba << 100LL;
    QTest::newRow("first match counts") << "x bytes 5-6/7, bytes 9-9/10"_ba << 5LL;
    QTest::newRow("unsatisfied") << "bytes */200"_ba << -1LL;
    QTest::newRow("no last byte") << "bytes 100-/200"_ba << -1LL;
    QTest::newRow("other unit") << "items 1-2/3"_ba << -1LL;
    QTest::newRow("past 64 bits") << "bytes 99999999999999999999-1/2"_ba << -1LL;
    QTest::newRow("empty") << QByteArray() << -1LL;
}

void TestFileFetcher::contentRange()
{
    QFETCH(QByteArray, header);
    QFETCH(qint64, start);
    QCOMPARE(ContentRange::start(header).value_or(-1), start);
}

void TestFileFetcher::startsOver_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QByteArray>("validator");
    QTest::addColumn<bool>("asksForRange");

    // The stale bytes are not the file's, so prepending them would show as a mismatch.
    QTest::newRow("range ignored") << "{\"ignoreRange\": true}"_ba
                                   << "\"stale\""_ba << true;
    QTest::newRow("validator changed") << "{}"_ba
                                       << "\"changed\""_ba << true;
    QTest::newRow("no validator") << "{}"_ba << QByteArray() << false;
}

void TestFileFetcher::startsOver()
{
    QFETCH(QByteArray, faults);
    QFETCH(QByteArray, validator);
    QFETCH(bool, asksForRange);
    const auto file = target(m_large);
    leavePartial(file, QByteArray(1000, 'x'), validator);
    const QStringList before = m_shop->ranges(m_large.id);
    QVERIFY(m_shop->setFaults(faults.constData()));

    const auto outcome = fetch(m_shop->publicUrl(m_large.id), file);
    QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
    QCOMPARE(m_shop->ranges(m_large.id).size() - before.size(), asksForRange ? 1 : 0);
    QCOMPARE(readAll(file.destination), m_shop->bytes(m_large.id));
}

void TestFileFetcher::statuses_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QString>("failure"); // empty: the file arrives
    QTest::addColumn<int>("requests");

    const auto status = [](int code, int times) {
        return u"{\"statuses\": [{\"endpoint\": \"files\", \"status\": %1, \"times\": %2}]}"_s
            .arg(code)
            .arg(times)
            .toUtf8();
    };
    QTest::newRow("416 once") << status(416, 1) << QString() << 2;
    QTest::newRow("416 twice") << status(416, 2) << u"The shop replied 416."_s << 2;
    QTest::newRow("403") << status(403, 1) << u"The download link had expired."_s << 1;
    QTest::newRow("410") << status(410, 1) << u"The download link had expired."_s << 1;
    QTest::newRow("500") << status(500, 1) << u"The shop replied 500."_s << 1;
    QTest::newRow("redirect, same host")
        << "{\"redirect\": {\"to\": \"same-host\", \"times\": 1}}"_ba << QString() << 2;
    QTest::newRow("redirect, other host")
        << "{\"redirect\": {\"to\": \"other-host\", \"times\": 1}}"_ba << u"The shop replied 302."_s
        << 1;
}

void TestFileFetcher::statuses()
{
    QFETCH(QByteArray, faults);
    QFETCH(QString, failure);
    QFETCH(int, requests);
    const auto file = target(m_small);
    // A resumable partial file, so that the first request asks for a range.
    leavePartial(file, m_shop->bytes(m_small.id).left(1000), "\"whatever\"");
    const int before = m_shop->fileRequests(m_small.id);
    QVERIFY(m_shop->setFaults(faults.constData()));

    const auto outcome = fetch(m_shop->publicUrl(m_small.id), file);
    if (failure.isEmpty()) {
        QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
        QCOMPARE(readAll(file.destination), m_shop->bytes(m_small.id));
    } else {
        QCOMPARE(outcome.failure<Failure>()->description(), failure);
        QVERIFY(!leftovers(file).destination);
    }
    QCOMPARE(m_shop->fileRequests(m_small.id) - before, requests);
}

void TestFileFetcher::partialResponses_data()
{
    QTest::addColumn<QByteArray>("contentRange"); // empty: none sent
    QTest::addColumn<qint64>("from"); // where the body starts in the file
    QTest::addColumn<bool>("arrives");

    const QByteArray whole = "bytes 0-199999/200000";
    // Taken as the whole file: right when it is one, a mismatch otherwise.
    QTest::newRow("the whole file at offset 0") << whole << 0LL << true;
    QTest::newRow("no Content-Range, whole file") << QByteArray() << 0LL << true;
    QTest::newRow("another offset") << "bytes 500-199999/200000"_ba << 500LL << false;
    QTest::newRow("the asked offset, total unknown") << "bytes 1000-199999/*"_ba << 1000LL << true;
}

void TestFileFetcher::partialResponses()
{
    QFETCH(QByteArray, contentRange);
    QFETCH(qint64, from);
    QFETCH(bool, arrives);
    const QByteArray bytes = m_shop->bytes(m_small.id);
    StandInServer server;
    StandInServer::Reply reply { .status = 206,
                                 .body = bytes.mid(from),
                                 .headers = { { "ETag", "\"v\"" } } };
    if (!contentRange.isEmpty())
        reply.headers.append({ "Content-Range", contentRange });
    server.enqueue(reply);
    const auto file = target(m_small);
    leavePartial(file, bytes.left(1000), "\"v\"");

    const auto outcome = fetch(server.base().resolved(QUrl(u"/file"_s)), file);
    QCOMPARE(server.requests().size(), 1);
    const auto &request = server.requests()[0];
    QCOMPARE(request.header("Range"), "bytes=1000-"_ba);
    QCOMPARE(request.header("If-Range"), "\"v\""_ba);
    QCOMPARE(request.header("Accept-Encoding"), "identity"_ba);
    if (arrives) {
        QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
        QCOMPARE(readAll(file.destination), bytes);
    } else {
        QCOMPARE(outcome.failure<Failure>(), std::optional(Failure::mismatch()));
        QVERIFY(!leftovers(file).partial);
    }
}

void TestFileFetcher::mismatches_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<qint64>("sizeChange");
    QTest::addColumn<QString>("digest"); // "shop", "upper" or another digest
    QTest::addColumn<bool>("arrives");

    QTest::newRow("the shop's digest in capitals") << "{}"_ba << 0LL << u"upper"_s << true;
    QTest::newRow("bytes altered")
        << "{\"alterBytes\": \"same-etag\"}"_ba << 0LL << u"shop"_s << false;
    QTest::newRow("one byte short") << "{}"_ba << 1LL << u"shop"_s << false;
    QTest::newRow("one byte long") << "{}"_ba << -1LL << u"shop"_s << false;
    QTest::newRow("another digest") << "{}"_ba << 0LL << QString(64, u'0') << false;
}

void TestFileFetcher::mismatches()
{
    QFETCH(QByteArray, faults);
    QFETCH(qint64, sizeChange);
    QFETCH(QString, digest);
    QFETCH(bool, arrives);
    auto file = target(m_large);
    file.size += sizeChange;
    file.sha256 = digest == "shop"_L1 ? m_large.sha256
        : digest == "upper"_L1        ? m_large.sha256.toUpper()
                                      : digest;
    QVERIFY(m_shop->setFaults(faults.constData()));

    const auto outcome = fetch(m_shop->publicUrl(m_large.id), file);
    if (arrives) {
        QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
        return;
    }
    QCOMPARE(failureText(outcome), u"The download didn't match the shop's copy. Try again."_s);
    const auto left = leftovers(file);
    QVERIFY(!left.destination && !left.partial && !left.validator);
}

void TestFileFetcher::completePartialNeedsNoRequest()
{
    const auto file = target(m_small);
    leavePartial(file, m_shop->bytes(m_small.id), "\"v\"");
    // An older copy at the destination is replaced, not kept beside the new one.
    QDir().mkpath(QFileInfo(file.destination).path());
    QFile old(file.destination);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    const int before = m_shop->fileRequests(m_small.id);

    const auto outcome = fetch(m_shop->publicUrl(m_small.id), file);
    QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
    QCOMPARE(m_shop->fileRequests(m_small.id), before);
    QCOMPARE(readAll(file.destination), m_shop->bytes(m_small.id));
    QCOMPARE(QDir(QFileInfo(file.destination).path()).entryList(QDir::Files).size(), 1);
    QVERIFY(!leftovers(file).validator);
}

void TestFileFetcher::progressOnTheMainThread()
{
    QList<double> fractions;
    bool offMain = false;
    const FileFetcher::Progress progress = [&](double fraction) {
        offMain = offMain || QThread::currentThread() != thread();
        fractions.append(fraction);
    };
    const auto outcome = fetch(m_shop->publicUrl(m_large.id), target(m_large), progress);
    QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
    QVERIFY(!offMain);
    QVERIFY(std::is_sorted(fractions.cbegin(), fractions.cend()));
    QCOMPARE(fractions.last(), 1.0);
    // At most once per 512 KiB written, and the end.
    QVERIFY(fractions.size() <= m_large.bytes / (512 * 1024) + 1);
    QVERIFY(fractions.size() >= 3);
}

void TestFileFetcher::cancellationKeepsThePartialFile()
{
    QVERIFY(m_shop->setFaults("{\"bytesPerSecond\": 4000000}"));
    const auto file = target(m_large);
    const auto cancel = std::make_shared<CancelToken>();
    bool started = false;
    const FileFetcher::Progress progress = [&](double) { started = true; };
    auto task =
        FileFetcher(m_thread.get()).fetch(m_shop->publicUrl(m_large.id), file, progress, cancel);
    QTRY_VERIFY(started);
    cancel->cancel();
    const auto outcome = finish(std::move(task));
    QCOMPARE(outcome.failure<NetworkError>()->code(), QNetworkReply::OperationCanceledError);
    QVERIFY(QFileInfo(file.partial).size() >= MiB);
    QVERIFY(leftovers(file).validator);
}

QTEST_GUILESS_MAIN(TestFileFetcher)
#include "test_file_fetcher.moc"
