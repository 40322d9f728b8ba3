#include "shop_fixture.h"
#include "test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
QJsonObject faults(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

// One request to an endpoint, as a client would make it.
CurlReply request(ShopFixture &fixture, const QString &endpoint)
{
    const QString bearer = ShopFixture::bearer(fixture.shop().issueToken());
    if (endpoint == "device/code"_L1)
        return fixture.curl().post(fixture.api(endpoint), { { u"client_id"_s, u"mac-app"_s } });
    if (endpoint == "device/token"_L1)
        return fixture.curl().post(
            fixture.api(endpoint),
            { { u"client_id"_s, u"mac-app"_s },
              { u"grant_type"_s, u"urn:ietf:params:oauth:grant-type:device_code"_s } });
    if (endpoint == "sign-out"_L1)
        return fixture.curl().post(fixture.api(endpoint), {}, { bearer });
    if (endpoint == "downloads"_L1)
        return fixture.curl().post(fixture.api(endpoint), { { u"files"_s, QJsonArray() } },
                                   { bearer });
    if (endpoint == "files"_L1)
        return fixture.curl().get(
            fixture.linkTo(u"dunes"_s, sampleFileId(u"dunes"_s, u"rose"_s, u"light"_s)));
    if (endpoint == "art"_L1)
        return fixture.curl().get(fixture.url(u"/art/dunes/rose/light.png"_s));
    return fixture.curl().get(fixture.api(endpoint), { bearer });
}

QByteArray roseLight()
{
    return readAll(u"" QUENNET_DEVSHOP_CONTENT "/files/dunes/rose-light.heic"_s);
}
} // namespace

// Every fault switch, set as a test would set it, seen from curl.
class TestDevshopFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void statuses_data()
    {
        QTest::addColumn<QString>("endpoint");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("normal");
        QTest::newRow("device/code 503") << u"device/code"_s << 503 << 200;
        QTest::newRow("device/token 429") << u"device/token"_s << 429 << 400;
        QTest::newRow("sign-out 500") << u"sign-out"_s << 500 << 200;
        QTest::newRow("catalogue 502") << u"catalogue"_s << 502 << 200;
        QTest::newRow("library 401") << u"library"_s << 401 << 200;
        QTest::newRow("downloads 403") << u"downloads"_s << 403 << 200;
        QTest::newRow("files 410") << u"files"_s << 410 << 200;
        QTest::newRow("art 504") << u"art"_s << 504 << 200;
    }

    void statuses()
    {
        QFETCH(QString, endpoint);
        QFETCH(int, status);
        QFETCH(int, normal);
        ShopFixture fixture;
        QVERIFY(fixture.shop().setFaults(
            { { u"statuses"_s,
                QJsonArray { QJsonObject { { u"endpoint"_s, endpoint },
                                           { u"status"_s, status },
                                           { u"times"_s, 2 },
                                           { u"error"_s, u"fault"_s } } } } }));
        for (int i = 0; i < 2; ++i) {
            const CurlReply faulty = request(fixture, endpoint);
            QCOMPARE(faulty.status, status);
            QCOMPARE(faulty.json()[u"error"_s].toString(), u"fault"_s);
        }
        QCOMPARE(request(fixture, endpoint).status, normal);
    }

    void malformed_data()
    {
        QTest::addColumn<QString>("endpoint");
        for (const char *endpoint :
             { "device/code", "device/token", "catalogue", "library", "downloads" })
            QTest::newRow(endpoint) << QString::fromLatin1(endpoint);
    }

    void malformed()
    {
        QFETCH(QString, endpoint);
        ShopFixture fixture;
        const CurlReply sound = request(fixture, endpoint);
        QVERIFY(QJsonDocument::fromJson(sound.body).isObject());
        QVERIFY(fixture.shop().setFaults({ { u"malformed"_s, QJsonArray { endpoint } } }));
        const CurlReply broken = request(fixture, endpoint);
        QCOMPARE(broken.status, sound.status);
        QJsonParseError error {};
        QJsonDocument::fromJson(broken.body, &error);
        QVERIFY(error.error != QJsonParseError::NoError);
    }

    void cutAndIgnoreRange()
    {
        ShopFixture fixture;
        const QByteArray bytes = roseLight();
        const QString link =
            fixture.linkTo(u"dunes"_s, sampleFileId(u"dunes"_s, u"rose"_s, u"light"_s));
        QVERIFY(fixture.shop().setFaults(
            faults(R"({"cut": {"afterBytes": 300}, "ignoreRange": true})")));
        for (const QStringList &headers :
             { QStringList(), QStringList { u"Range: bytes=300-"_s } }) {
            const CurlReply reply = fixture.curl().get(link, headers);
            QCOMPARE(reply.status, 200);
            QCOMPARE(reply.exitCode, 18);
            QCOMPARE(reply.body, bytes.left(300));
            QCOMPARE(reply.header(u"Accept-Ranges"_s), u"none"_s);
        }
        QVERIFY(fixture.shop().setFaults({}));
        QCOMPARE(fixture.curl().get(link).body, bytes);
    }

    void redirects_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("host");
        QTest::newRow("same host") << u"same-host"_s << u"127.0.0.1"_s;
        QTest::newRow("other host") << u"other-host"_s << u"localhost"_s;
    }

    void redirects()
    {
        QFETCH(QString, to);
        QFETCH(QString, host);
        ShopFixture fixture;
        const QString link =
            fixture.linkTo(u"dunes"_s, sampleFileId(u"dunes"_s, u"rose"_s, u"light"_s));
        QVERIFY(fixture.shop().setFaults(
            { { u"redirect"_s, QJsonObject { { u"to"_s, to }, { u"times"_s, 2 } } } }));

        const CurlReply redirect = fixture.curl().get(link);
        QCOMPARE(redirect.status, 302);
        const QUrl location(redirect.header(u"Location"_s));
        QCOMPARE(location.host(), host);
        QCOMPARE(location.path(), QUrl(link).path());
        const CurlReply followed = fixture.curl().get(link, {}, { u"--location"_s });
        QCOMPARE(followed.status, 200);
        QCOMPARE(followed.body, roseLight());
        QCOMPARE(fixture.curl().get(link).status, 200);
    }

    void slowTransfer()
    {
        ShopFixture fixture;
        const QString link =
            fixture.linkTo(u"dunes"_s, sampleFileId(u"dunes"_s, u"rose"_s, u"light"_s));
        QVERIFY(fixture.shop().setFaults(faults(R"({"bytesPerSecond": 16})")));
        // Well over a minute at that rate: curl gives up part-way.
        const CurlReply slow = fixture.curl().get(link, {}, { u"--max-time"_s, u"1"_s });
        QCOMPARE(slow.exitCode, 28);
        QVERIFY(slow.body.size() < roseLight().size());
        QVERIFY(fixture.shop().setFaults({}));
        QCOMPARE(fixture.curl().get(link).body, roseLight());
    }

    void alteredBytes_data()
    {
        QTest::addColumn<QString>("alteration");
        QTest::addColumn<bool>("sameTag");
        QTest::newRow("same tag") << u"same-etag"_s << true;
        QTest::newRow("new tag") << u"new-etag"_s << false;
    }

    void alteredBytes()
    {
        QFETCH(QString, alteration);
        QFETCH(bool, sameTag);
        ShopFixture fixture;
        const CurlReply original = request(fixture, u"files"_s);
        QVERIFY(fixture.shop().setFaults({ { u"alterBytes"_s, alteration } }));
        const CurlReply altered = request(fixture, u"files"_s);
        QCOMPARE(altered.body.size(), original.body.size());
        QVERIFY(altered.body != original.body);
        QCOMPARE(altered.header(u"ETag"_s) == original.header(u"ETag"_s), sameTag);

        // A resume under the old tag gets the rest of the new bytes, or the whole new file.
        const CurlReply resumed = fixture.curl().get(
            fixture.linkTo(u"dunes"_s, sampleFileId(u"dunes"_s, u"rose"_s, u"light"_s)),
            { u"Range: bytes=100-"_s, u"If-Range: "_s + original.header(u"ETag"_s) });
        QCOMPARE(resumed.status, sameTag ? 206 : 200);
        QCOMPARE(resumed.body, sameTag ? altered.body.mid(100) : altered.body);
    }

    void changeLibrary()
    {
        ShopFixture fixture;
        const QString bearer = ShopFixture::bearer(fixture.shop().issueToken());
        const CurlReply before = fixture.curl().get(fixture.api(u"library"_s), { bearer });
        QVERIFY(fixture.shop().setFaults(faults(R"({"changeLibrary": true})")));
        const CurlReply after = fixture.curl().get(
            fixture.api(u"library"_s), { bearer, u"If-None-Match: "_s + before.header(u"ETag"_s) });
        QCOMPARE(after.status, 200);
        QVERIFY(after.header(u"ETag"_s) != before.header(u"ETag"_s));
        QVERIFY(after.json()[u"packs"_s][0][u"updatedAt"_s]
                != before.json()[u"packs"_s][0][u"updatedAt"_s]);
        // Setting other faults later leaves the changed library as it is.
        QVERIFY(fixture.shop().setFaults({}));
        QCOMPARE(fixture.curl()
                     .get(fixture.api(u"library"_s),
                          { bearer, u"If-None-Match: "_s + after.header(u"ETag"_s) })
                     .status,
                 304);
    }

    void badDocumentsChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("unknown switch") << QByteArray(R"({"explode": true})");
        QTest::newRow("unknown endpoint")
            << QByteArray(R"({"statuses": [{"endpoint": "shop", "status": 500}]})");
        QTest::newRow("success status")
            << QByteArray(R"({"statuses": [{"endpoint": "library", "status": 200}]})");
        QTest::newRow("zero times")
            << QByteArray(R"({"statuses": [{"endpoint": "library", "status": 500, "times": 0}]})");
        QTest::newRow("redirect nowhere") << QByteArray(R"({"redirect": {"to": "example.com"}})");
        QTest::newRow("cut without size") << QByteArray(R"({"cut": {}})");
        QTest::newRow("alteration") << QByteArray(R"({"alterBytes": true})");
        QTest::newRow("malformed what") << QByteArray(R"({"malformed": ["everything"]})");
        QTest::newRow("oversized file")
            << QByteArray(R"({"oversized": {"endpoint": "files", "bytes": 100}})");
        QTest::newRow("change no file") << QByteArray(R"({"changeFile": "f_0"})");
    }

    void badDocumentsChangeNothing()
    {
        QFETCH(QByteArray, document);
        ShopFixture fixture;
        QVERIFY(fixture.shop().setFaults(
            faults(R"({"statuses": [{"endpoint": "catalogue", "status": 503}]})")));
        const CurlReply refused = fixture.curl().run(
            { u"-H"_s, u"X-Devshop-Secret: "_s + fixture.shop().adminSecret(), u"--data-binary"_s,
              QString::fromUtf8(document), fixture.url(u"/_devshop/faults"_s) });
        QCOMPARE(refused.status, 400);
        QVERIFY(!refused.json()[u"error"_s].toString().isEmpty());
        QCOMPARE(request(fixture, u"catalogue"_s).status, 503);
    }

    void adminCallsNeedTheSecret()
    {
        ShopFixture fixture;
        const QString url = fixture.url(u"/_devshop/faults"_s);
        const QJsonObject document =
            faults(R"({"statuses": [{"endpoint": "catalogue", "status": 500, "times": 1}]})");
        QCOMPARE(fixture.curl().post(url, document).status, 403);
        QCOMPARE(fixture.curl().post(url, document, { u"X-Devshop-Secret: guess"_s }).status, 403);
        QCOMPARE(request(fixture, u"catalogue"_s).status, 200);
        const QString secret = u"X-Devshop-Secret: "_s + fixture.shop().adminSecret();
        QCOMPARE(fixture.curl().post(url, document, { secret }).status, 200);
        QCOMPARE(request(fixture, u"catalogue"_s).status, 500);

        // Stats count every request by path, the refused ones too.
        const QJsonObject counts = fixture.curl()
                                       .get(fixture.url(u"/_devshop/stats"_s), { secret })
                                       .json()[u"requests"_s]
                                       .toObject();
        QCOMPARE(counts[u"/api/app/v1/catalogue"_s].toInt(), 2);
        QVERIFY(!counts.contains(u"/_devshop/faults"_s));
        QCOMPARE(fixture.shop().stats()[u"requests"_s].toObject(), counts);
    }
};

QTEST_GUILESS_MAIN(TestDevshopFaults)
#include "test_devshop_faults.moc"
