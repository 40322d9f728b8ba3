#include "cancel_token.h"
#include "download_cache.h"
#include "download_thread.h"
#include "file_fetcher.h"
#include "network_error.h"
#include "shop_content.h"
#include "test_files.h"
#include "test_support.h"

#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 MiB = 1024 * 1024;
const QString mismatch = u"The download didn't match the shop's copy. Try again."_s;

// A fetch of the large file over what an earlier attempt left.
struct Fetch {
    QByteArray faults = "{}";
    QByteArray partial; // "stale": not the file's bytes; "resumable"; "whole"
    QByteArray validator;
    QString target; // the file as the caller gives it: "upper", "shorter"
    QString failure; // empty: the file arrives
    int requests = 1;
    int ranges = 1;
};
} // namespace

// The file fetcher against the development shop's fault switches, and a stand-in server for the
// partial responses the shop does not make.
class TestFileFetcher : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
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

    void init()
    {
        QVERIFY(m_shop->setFaults("{}"));
        m_dir.emplace();
    }

    void fetches_data()
    {
        QTest::addColumn<Fetch>("row");

        // Prepending stale bytes would show as a mismatch.
        const QByteArray stale = "stale";
        QTest::newRow("range ignored") << Fetch { R"({"ignoreRange": true})", stale, "\"stale\"" };
        QTest::newRow("no validator") << Fetch { "{}", stale, {}, {}, {}, 1, 0 };

        const auto status = [](int code, int times) {
            return QJsonDocument(statusFault("files", code, nullptr, times)).toJson();
        };
        const auto redirect = [](const char *to) -> QByteArray {
            return "{\"redirect\": {\"to\": \"" + QByteArray(to) + "\", \"times\": 1}}";
        };
        const auto replied = [](int code) { return u"The shop replied %1."_s.arg(code); };
        const QByteArray resumable = "resumable";
        const QByteArray validator = "\"whatever\"";
        const QString expired = u"The download link had expired."_s;
        QTest::newRow("416 once") << Fetch { status(416, 1), resumable, validator, {}, {}, 2 };
        QTest::newRow("416 twice")
            << Fetch { status(416, 2), resumable, validator, {}, replied(416), 2 };
        QTest::newRow("403") << Fetch { status(403, 1), resumable, validator, {}, expired };
        QTest::newRow("500") << Fetch { status(500, 1), resumable, validator, {}, replied(500) };
        QTest::newRow("redirect, same host")
            << Fetch { redirect("same-host"), resumable, validator, {}, {}, 2, 2 };
        QTest::newRow("redirect, other host")
            << Fetch { redirect("other-host"), resumable, validator, {}, replied(302) };

        QTest::newRow("already whole") << Fetch { "{}", "whole", "\"v\"", {}, {}, 0, 0 };
        QTest::newRow("the shop's digest in capitals")
            << Fetch { .target = u"upper"_s, .ranges = 0 };
        const QByteArray altered = R"({"alterBytes": "same-etag"})";
        QTest::newRow("bytes altered")
            << Fetch { .faults = altered, .failure = mismatch, .ranges = 0 };
        // One byte long: the shop's own digest, but more than was listed.
        QTest::newRow("one byte long")
            << Fetch { .target = u"shorter"_s, .failure = mismatch, .ranges = 0 };
    }

    void fetches()
    {
        QFETCH(Fetch, row);
        const QByteArray bytes = m_shop->bytes(m_large.id);
        auto file = target(m_large);
        if (row.target == "upper"_L1)
            file.sha256 = m_large.sha256.toUpper();
        file.size -= row.target == "shorter"_L1 ? 1 : 0;
        const QByteArray kept = row.partial == "whole" ? bytes : bytes.left(1000);
        if (!row.partial.isEmpty())
            leavePartial(file, row.partial == "stale" ? QByteArray(1000, 'x') : kept,
                         row.validator);
        // An older copy at the destination is replaced, not kept beside the new one.
        QVERIFY(writeFile(file.destination, "old"));
        const int requestsBefore = m_shop->fileRequests(m_large.id);
        const qsizetype rangesBefore = m_shop->ranges(m_large.id).size();
        QVERIFY(m_shop->setFaults(row.faults.constData()));

        const auto outcome = fetch(m_shop->publicUrl(m_large.id), file);
        QCOMPARE(failureText(outcome), row.failure.isEmpty() ? u"no failure"_s : row.failure);
        QCOMPARE(readAll(file.destination), row.failure.isEmpty() ? bytes : "old"_ba);
        QCOMPARE(QDir(QFileInfo(file.destination).path()).entryList(QDir::Files).size(), 1);
        QCOMPARE(m_shop->fileRequests(m_large.id) - requestsBefore, row.requests);
        QCOMPARE(m_shop->ranges(m_large.id).size() - rangesBefore, row.ranges);
        // Bytes that are not the file's are not kept to resume from; an arrived file needs none.
        if (row.failure.isEmpty() || row.failure == mismatch)
            QVERIFY(!QFile::exists(DownloadCache::validatorPath(file.partial)));
        if (row.failure == mismatch)
            QVERIFY(!QFile::exists(file.partial));
    }

    void partialResponses_data()
    {
        QTest::addColumn<QByteArray>("contentRange"); // empty: none sent
        QTest::addColumn<qint64>("from"); // where the body starts in the file
        QTest::newRow("the whole file at offset 0") << "bytes 0-199999/200000"_ba << 0LL;
        QTest::newRow("no Content-Range, whole file") << QByteArray() << 0LL;
        QTest::newRow("the asked offset, total unknown") << "bytes 1000-199999/*"_ba << 1000LL;
        // Of no use: the file is asked for again, whole, and comes as a 200.
        QTest::newRow("elsewhere") << "bytes 500-199999/200000"_ba << 500LL;
    }

    void partialResponses()
    {
        QFETCH(QByteArray, contentRange);
        QFETCH(qint64, from);
        const QByteArray bytes = m_shop->bytes(m_small.id);
        StandInServer server;
        StandInServer::Reply reply { .status = 206,
                                     .body = bytes.mid(from),
                                     .headers = { { "ETag", "\"v\"" } } };
        if (!contentRange.isEmpty())
            reply.headers.append({ "Content-Range", contentRange });
        server.enqueue(reply);
        const bool elsewhere = from != 0 && from != 1000;
        if (elsewhere)
            server.enqueue({ .status = 200, .body = bytes, .headers = { { "ETag", "\"v\"" } } });
        const auto file = target(m_small);
        leavePartial(file, bytes.left(1000), "\"v\"");

        const auto outcome = fetch(server.base().resolved(QUrl(u"/file"_s)), file);
        QCOMPARE(server.requests().size(), elsewhere ? 2 : 1);
        const auto &request = server.requests()[0];
        QCOMPARE(request.header("Range"), "bytes=1000-"_ba);
        QCOMPARE(request.header("If-Range"), "\"v\""_ba);
        QCOMPARE(request.header("Accept-Encoding"), "identity"_ba);
        QCOMPARE(server.requests().last().header("Range").has_value(), !elsewhere);
        QVERIFY2(outcome.value, qPrintable(failureText(outcome)));
        QCOMPARE(readAll(file.destination), bytes);
    }

    void progressOnTheMainThread()
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

    void cancellationKeepsThePartialFile()
    {
        QVERIFY(m_shop->setFaults("{\"bytesPerSecond\": 4000000}"));
        const auto file = target(m_large);
        const auto cancel = std::make_shared<CancelToken>();
        bool started = false;
        const FileFetcher::Progress progress = [&](double) { started = true; };
        auto task = FileFetcher(m_thread.get())
                        .fetch(m_shop->publicUrl(m_large.id), file, progress, cancel);
        QTRY_VERIFY(started);
        cancel->cancel();
        const auto outcome = finish(std::move(task));
        QCOMPARE(outcome.failure<NetworkError>()->code(), QNetworkReply::OperationCanceledError);
        QVERIFY(QFileInfo(file.partial).size() >= MiB);
        QVERIFY(QFile::exists(DownloadCache::validatorPath(file.partial)));
    }

private:
    [[nodiscard]] FileFetcher::Target target(const ContentFile &file) const
    {
        return { .destination = m_dir->filePath(u"Quennet/test/"_s + file.id + u".heic"_s),
                 .partial = m_dir->filePath(u"Partial/"_s + file.id + u".partial"_s),
                 .size = file.bytes,
                 .sha256 = file.sha256 };
    }

    Result<bool> fetch(const QUrl &source, const FileFetcher::Target &target,
                       FileFetcher::Progress progress = {})
    {
        return finish(FileFetcher(m_thread.get()).fetch(source, target, std::move(progress), {}));
    }

    // Bytes and a validator left by an earlier, interrupted attempt.
    void leavePartial(const FileFetcher::Target &target, const QByteArray &bytes,
                      const QByteArray &validator)
    {
        QVERIFY(writeFile(target.partial, bytes));
        if (!validator.isEmpty())
            QVERIFY(writeFile(DownloadCache::validatorPath(target.partial), validator));
    }

    std::optional<ContentShop> m_shop;
    std::unique_ptr<DownloadThread> m_thread;
    std::optional<QTemporaryDir> m_dir;
    ContentFile m_small; // well below one write block
    ContentFile m_large; // several blocks, not a whole number of them
};

QTEST_GUILESS_MAIN(TestFileFetcher)
#include "test_file_fetcher.moc"
