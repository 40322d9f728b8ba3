#include "shop_fixture.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// The approval page's form, sent as the browser sends it.
CurlReply decide(ShopFixture &fixture, const QString &userCode, const QString &action)
{
    return fixture.get(fixture.url(u"/activate"_s), {},
                       { u"--data"_s, u"user_code="_s + userCode + u"&action="_s + action });
}
} // namespace

// The development shop seen from curl: the device-code sign-in as RFC 8628 has it, the page a
// person approves it on and the life of the tokens it gives; and every fault switch, set as a
// test would set it.
class TestDevshop : public QObject {
    Q_OBJECT

    // One shop for most cases, its faults cleared before each.
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

    void approvedCodeGivesOneToken()
    {
        const QJsonObject code = fixture.requestCode(u"Robin's <Laptop>"_s).json();
        const QString userCode = code[u"user_code"_s].toString();
        QVERIFY(QRegularExpression(u"^[B-DF-HJ-NP-TV-XZ]{4}-[B-DF-HJ-NP-TV-XZ]{4}$"_s)
                    .match(userCode)
                    .hasMatch());
        QCOMPARE(code[u"verification_uri"_s].toString(), fixture.url(u"/activate"_s));
        const CurlReply page = fixture.get(code[u"verification_uri_complete"_s].toString());
        QVERIFY(page.body.contains(u"value=\"%1\""_s.arg(userCode).toUtf8()));
        QVERIFY(page.body.contains("Robin's &lt;Laptop&gt;"));

        const QString deviceCode = code[u"device_code"_s].toString();
        QCOMPARE(fixture.poll(deviceCode).json()[u"error"_s].toString(),
                 u"authorization_pending"_s);
        // Codes are typed by people: case and separators do not matter.
        QVERIFY(decide(fixture, userCode.toLower().remove(u'-'), u"approve"_s)
                    .body.contains("Approved"));
        QVERIFY(!fixture.shop.approve(userCode));
        QVERIFY(decide(fixture, u"BBBB-BBBB"_s, u"approve"_s).body.contains("isn't valid"));

        const CurlReply granted = fixture.poll(deviceCode);
        QCOMPARE(granted.status, 200);
        QCOMPARE(granted.json()[u"token_type"_s].toString(), u"Bearer"_s);
        const QString token = granted.json()[u"access_token"_s].toString();
        QCOMPARE(fixture.get(fixture.api(u"library"_s), { ShopFixture::bearer(token) }).status,
                 200);

        // A device code is good for one token only.
        const CurlReply again = fixture.poll(deviceCode);
        QCOMPARE(again.status, 400);
        QCOMPARE(again.json()[u"error"_s].toString(), u"invalid_grant"_s);
    }

    // Denied on the page is test_account's, through the client.
    void pollAnswers_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("error");
        QTest::newRow("polled too soon") << u"poll"_s << u"slow_down"_s;
        QTest::newRow("past expires_in") << u"expire"_s << u"expired_token"_s;
        QTest::newRow("unknown device code") << u"forget"_s << u"invalid_grant"_s;
    }

    void pollAnswers()
    {
        QFETCH(QString, before);
        QFETCH(QString, error);
        ShopFixture fixture({ .pollInterval = 60 });
        const QJsonObject code = fixture.requestCode().json();
        QString deviceCode = code[u"device_code"_s].toString();
        if (before == "poll"_L1)
            fixture.poll(deviceCode);
        if (before == "expire"_L1)
            fixture.shop.advanceClock(900s);
        if (before == "forget"_L1)
            deviceCode = u"not-a-code"_s;

        const CurlReply reply = fixture.poll(deviceCode);
        QCOMPARE(reply.status, 400);
        QCOMPARE(reply.json()[u"error"_s].toString(), error);
    }

    void revokedTokenIsRefusedEverywhere_data()
    {
        QTest::addColumn<QString>("endpoint");
        QTest::newRow("sign-out") << u"sign-out"_s;
        QTest::newRow("library") << u"library"_s;
        QTest::newRow("downloads") << u"downloads"_s;
    }

    void revokedTokenIsRefusedEverywhere()
    {
        QFETCH(QString, endpoint);
        const QString token = fixture.shop.issueToken();
        QCOMPARE(fixture.request(u"sign-out"_s, token).status, 200);

        for (const QString &refused : { token, u"qdt_never-issued"_s, QString() }) {
            const CurlReply reply = fixture.request(endpoint, refused);
            QCOMPARE(reply.status, 401);
            QCOMPARE(reply.header(u"WWW-Authenticate"_s), uR"(Bearer error="invalid_token")"_s);
        }
        // Another session of the same account goes on.
        QCOMPARE(fixture.request(endpoint).status, 200);
    }
};

QTEST_GUILESS_MAIN(TestDevshop)
#include "test_devshop.moc"
