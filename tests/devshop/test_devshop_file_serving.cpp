#include "shop_fixture.h"
#include "test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// The bytes of a wallpaper file of the sample content, straight from the folder.
QByteArray contentBytes(const QString &name)
{
    return readAll(u"" QUENNET_DEVSHOP_CONTENT "/files/aurora/"_s + name);
}
} // namespace

// Downloads through signed links: validators, single ranges, If-Range and 416, all answered
// by hand rather than by the server library.
class TestDevshopFileServing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ranges_data()
    {
        // "SIZE" stands for the file's size; a last byte of -1 means the file's last byte.
        QTest::addColumn<QString>("range");
        QTest::addColumn<QString>("ifRange");
        QTest::addColumn<int>("status");
        QTest::addColumn<qint64>("first");
        QTest::addColumn<qint64>("last");
        QTest::newRow("closed") << u"bytes=0-99"_s << u""_s << 206 << 0LL << 99LL;
        QTest::newRow("open") << u"bytes=100-"_s << u""_s << 206 << 100LL << -1LL;
        QTest::newRow("suffix") << u"bytes=-50"_s << u""_s << 206 << -50LL << -1LL;
        QTest::newRow("past the end") << u"bytes=10-99999999"_s << u""_s << 206 << 10LL << -1LL;
        QTest::newRow("starts at the end") << u"bytes=SIZE-"_s << u""_s << 416 << 0LL << 0LL;
        QTest::newRow("empty suffix") << u"bytes=-0"_s << u""_s << 416 << 0LL << 0LL;
        QTest::newRow("If-Range matches") << u"bytes=100-"_s << u"TAG"_s << 206 << 100LL << -1LL;
        QTest::newRow("If-Range differs")
            << u"bytes=100-"_s << uR"("0123")"_s << 200 << 0LL << -1LL;
        QTest::newRow("If-Range weak") << u"bytes=100-"_s << u"W/TAG"_s << 200 << 0LL << -1LL;
        QTest::newRow("If-Range date")
            << u"bytes=100-"_s << u"Sat, 01 Mar 2025 09:30:00 GMT"_s << 200 << 0LL << -1LL;
        QTest::newRow("unsatisfiable, If-Range differs")
            << u"bytes=SIZE-"_s << uR"("0123")"_s << 200 << 0LL << -1LL;
        QTest::newRow("two ranges") << u"bytes=0-9,20-29"_s << u""_s << 200 << 0LL << -1LL;
        QTest::newRow("last before first") << u"bytes=50-10"_s << u""_s << 200 << 0LL << -1LL;
    }

    void ranges()
    {
        QFETCH(QString, range);
        QFETCH(QString, ifRange);
        QFETCH(int, status);
        QFETCH(qint64, first);
        QFETCH(qint64, last);
        ShopFixture fixture;
        const QString link =
            fixture.linkTo(u"aurora"_s, sampleFileId(u"aurora"_s, u"emerald"_s, u"time-of-day"_s));
        const QByteArray bytes = contentBytes(u"emerald-time-of-day.heic"_s);
        const qint64 size = bytes.size();
        QVERIFY(size > 200);
        const QString tag = fixture.curl().get(link).header(u"ETag"_s);
        QVERIFY(tag.startsWith(u'"'));

        QStringList headers;
        if (!range.isEmpty())
            headers << u"Range: "_s + QString(range).replace(u"SIZE"_s, QString::number(size));
        if (!ifRange.isEmpty())
            headers << u"If-Range: "_s + QString(ifRange).replace(u"TAG"_s, tag);
        const CurlReply reply = fixture.curl().get(link, headers);
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.header(u"ETag"_s), tag);
        if (status == 416) {
            QCOMPARE(reply.header(u"Content-Range"_s), u"bytes */%1"_s.arg(size));
            return;
        }
        if (first < 0)
            first += size;
        if (last < 0)
            last += size;
        QCOMPARE(reply.body, bytes.mid(first, last - first + 1));
        QCOMPARE(reply.header(u"Content-Range"_s),
                 status == 206 ? u"bytes %1-%2/%3"_s.arg(first).arg(last).arg(size) : QString());
    }

    void resumesAfterACut()
    {
        ShopFixture fixture;
        const QString link =
            fixture.linkTo(u"aurora"_s, sampleFileId(u"aurora"_s, u"violet"_s, u"appearance"_s));
        const QByteArray bytes = contentBytes(u"violet-appearance.heic"_s);
        QVERIFY(fixture.shop().setFaults(
            QJsonDocument::fromJson(R"({"cut": {"afterBytes": 700, "times": 1}})").object()));

        const CurlReply cut = fixture.curl().get(link);
        QCOMPARE(cut.exitCode, 18); // the body ended before its Content-Length
        QCOMPARE(cut.body, bytes.left(700));
        const CurlReply rest = fixture.curl().get(
            link, { u"Range: bytes=700-"_s, u"If-Range: "_s + cut.header(u"ETag"_s) });
        QCOMPARE(rest.status, 206);
        QCOMPARE(cut.body + rest.body, bytes);
    }

    void artAndPublicFilesHaveValidators()
    {
        ShopFixture fixture;
        const QJsonObject catalogue = fixture.curl().get(fixture.api(u"catalogue"_s)).json();
        const QJsonObject meadow = catalogue[u"packs"_s].toArray()[3].toObject();
        QCOMPARE(meadow[u"slug"_s].toString(), u"meadow"_s);
        for (const QString &url :
             { meadow[u"colourways"_s][0][u"art"_s][u"light"_s].toString(),
               meadow[u"free"_s][u"colourways"_s][0][u"files"_s][0][u"url"_s].toString() }) {
            const CurlReply whole = fixture.curl().get(url);
            QCOMPARE(whole.status, 200);
            const CurlReply tail = fixture.curl().get(
                url, { u"Range: bytes=10-"_s, u"If-Range: "_s + whole.header(u"ETag"_s) });
            QCOMPARE(tail.status, 206);
            QCOMPARE(tail.body, whole.body.mid(10));
        }
    }
};

QTEST_GUILESS_MAIN(TestDevshopFileServing)
#include "test_devshop_file_serving.moc"
