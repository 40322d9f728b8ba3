#include "shop_fixture.h"

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

// The device-code sign-in as RFC 8628 has it, the page a person approves it on, and the life of
// the tokens it gives.
class TestDevshopSignIn : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void approvedCodeGivesOneToken()
    {
        ShopFixture fixture;
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
        QTest::newRow("approved, then expired") << u"approve expire"_s << u"expired_token"_s;
        QTest::newRow("unknown device code") << u"forget"_s << u"invalid_grant"_s;
    }

    void pollAnswers()
    {
        QFETCH(QString, before);
        QFETCH(QString, error);
        ShopFixture fixture({ .pollInterval = 60 });
        const QJsonObject code = fixture.requestCode().json();
        QString deviceCode = code[u"device_code"_s].toString();
        const QString userCode = code[u"user_code"_s].toString();
        if (before.contains(u"poll"_s))
            fixture.poll(deviceCode);
        if (before.contains(u"approve"_s))
            QVERIFY(fixture.shop.approve(userCode));
        if (before.contains(u"expire"_s))
            fixture.shop.advanceClock(900s);
        if (before.contains(u"forget"_s))
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
        ShopFixture fixture;
        const QString token = fixture.shop.issueToken();
        QCOMPARE(fixture.request(endpoint).status, 200);
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

QTEST_GUILESS_MAIN(TestDevshopSignIn)
#include "test_devshop_sign_in.moc"
