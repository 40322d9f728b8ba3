#include "shop_fixture.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Every fault switch, set as a test would set it, seen from curl.
class TestDevshopFaults : public QObject {
    Q_OBJECT

    // One shop for every case, its faults cleared before each.
    ShopFixture fixture;
    QString link = fixture.sampleLink();

private Q_SLOTS:
    void init() { QVERIFY(fixture.setFaults("{}")); }

    // Each endpoint answers a status fault as often as asked, then as normal; those that answer
    // JSON send it broken on request, with their usual status.
    void endpoints_data()
    {
        QTest::addColumn<QString>("endpoint");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("normal");
        QTest::addColumn<bool>("json");
        QTest::newRow("device/code 503") << u"device/code"_s << 503 << 200 << true;
        QTest::newRow("device/token 429") << u"device/token"_s << 429 << 400 << true;
        QTest::newRow("sign-out 500") << u"sign-out"_s << 500 << 200 << false;
        QTest::newRow("catalogue 502") << u"catalogue"_s << 502 << 200 << true;
        QTest::newRow("library 401") << u"library"_s << 401 << 200 << true;
        QTest::newRow("downloads 403") << u"downloads"_s << 403 << 200 << true;
        QTest::newRow("files 410") << u"files"_s << 410 << 200 << false;
        QTest::newRow("art 504") << u"art"_s << 504 << 200 << false;
    }

    void endpoints()
    {
        QFETCH(QString, endpoint);
        QFETCH(int, status);
        QVERIFY(fixture.setFaults(
            uR"({"statuses": [{"endpoint": "%1", "status": %2, "times": 2, "error": "fault"}]})"_s
                .arg(endpoint)
                .arg(status)
                .toUtf8()));
        for (int i = 0; i < 2; ++i) {
            const CurlReply faulty = fixture.request(endpoint);
            QCOMPARE(faulty.status, status);
            QCOMPARE(faulty.json()[u"error"_s].toString(), u"fault"_s);
        }
        const CurlReply sound = fixture.request(endpoint);
        QTEST(sound.status, "normal");
        QFETCH(bool, json);
        if (!json)
            return;
        QVERIFY(QJsonDocument::fromJson(sound.body).isObject());
        QVERIFY(fixture.setFaults(uR"({"malformed": ["%1"]})"_s.arg(endpoint).toUtf8()));
        const CurlReply broken = fixture.request(endpoint);
        QCOMPARE(broken.status, sound.status);
        QVERIFY(QJsonDocument::fromJson(broken.body).isNull());
    }

    // A transfer cut, with ranges ignored; the whole file once the faults are cleared. Slow
    // transfers are what test_file_fetcher cancels, and the library change what test_shop_library
    // refreshes to.
    void cutTransfers()
    {
        const QByteArray bytes = ShopFixture::sampleBytes();
        QVERIFY(fixture.setFaults(R"({"cut": {"afterBytes": 300}, "ignoreRange": true})"));
        for (const QStringList &headers :
             { QStringList(), QStringList { u"Range: bytes=300-"_s } }) {
            const CurlReply reply = fixture.get(link, headers);
            QCOMPARE(reply.status, 200);
            QCOMPARE(reply.exitCode, 18);
            QCOMPARE(reply.body, bytes.left(300));
            QCOMPARE(reply.header(u"Accept-Ranges"_s), u"none"_s);
        }
        QVERIFY(fixture.setFaults("{}"));
        QCOMPARE(fixture.get(link).body, bytes);
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
        const CurlReply original = fixture.request(u"files"_s);
        QVERIFY(fixture.setFaults(uR"({"alterBytes": "%1"})"_s.arg(alteration).toUtf8()));
        const CurlReply altered = fixture.request(u"files"_s);
        QCOMPARE(altered.body.size(), original.body.size());
        QVERIFY(altered.body != original.body);
        QCOMPARE(altered.header(u"ETag"_s) == original.header(u"ETag"_s), sameTag);

        // A resume under the old tag gets the rest of the new bytes, or the whole new file.
        const CurlReply resumed = fixture.get(
            link, { u"Range: bytes=100-"_s, u"If-Range: "_s + original.header(u"ETag"_s) });
        QCOMPARE(resumed.status, sameTag ? 206 : 200);
        QCOMPARE(resumed.body, sameTag ? altered.body.mid(100) : altered.body);
    }

    // The fault switches over HTTP: a document is taken whole with the secret, or not at all.
    void adminCalls_data()
    {
        QTest::addColumn<QString>("secret"); // "right", or the one sent
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("status");
        const QByteArray fault = R"({"statuses": [{"endpoint": "catalogue", "status": 500}]})";
        QTest::newRow("with the secret") << u"right"_s << fault << 200;
        QTest::newRow("without the secret") << QString() << fault << 403;
        QTest::newRow("a guessed secret") << u"guess"_s << fault << 403;
        // Valid but for its last switch.
        QTest::newRow("a bad switch")
            << u"right"_s << QByteArray(R"({"ignoreRange": true, "cut": {}})") << 400;
    }

    void adminCalls()
    {
        QFETCH(QString, secret);
        QFETCH(QByteArray, document);
        QFETCH(int, status);
        QVERIFY(fixture.setFaults(R"({"statuses": [{"endpoint": "catalogue", "status": 503}]})"));
        if (secret == "right"_L1)
            secret = fixture.shop.adminSecret();
        const CurlReply reply = fixture.get(
            fixture.url(u"/_devshop/faults"_s),
            secret.isEmpty() ? QStringList() : QStringList { u"X-Devshop-Secret: "_s + secret },
            { u"--data-binary"_s, QString::fromUtf8(document) });
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.json()[u"error"_s].toString().isEmpty(), status == 200);
        QCOMPARE(fixture.request(u"catalogue"_s).status, status == 200 ? 500 : 503);
    }
};

QTEST_GUILESS_MAIN(TestDevshopFaults)
#include "test_devshop_faults.moc"
