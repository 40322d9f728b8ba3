#include "shop_fixture.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const auto grantType = u"urn:ietf:params:oauth:grant-type:device_code"_s;
} // namespace

// The device-code sign-in as RFC 8628 has it, and the life of the tokens it gives.
class TestDevshopSignIn : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void approvedCodeGivesOneToken()
    {
        ShopFixture fixture;
        const QJsonObject code = fixture.requestCode();
        const QString userCode = code[u"user_code"_s].toString();
        QVERIFY(QRegularExpression(u"^[B-DF-HJ-NP-TV-XZ]{4}-[B-DF-HJ-NP-TV-XZ]{4}$"_s)
                    .match(userCode)
                    .hasMatch());
        QCOMPARE(code[u"verification_uri"_s].toString(), fixture.url(u"/activate"_s));
        QCOMPARE(code[u"verification_uri_complete"_s].toString(),
                 fixture.url(u"/activate?user_code="_s + userCode));

        const QString deviceCode = code[u"device_code"_s].toString();
        QCOMPARE(fixture.poll(deviceCode).json()[u"error"_s].toString(),
                 u"authorization_pending"_s);
        // Codes are typed by people: case and separators do not matter.
        QVERIFY(fixture.shop().approve(userCode.toLower().remove(u'-')));
        QVERIFY(!fixture.shop().approve(userCode));

        const CurlReply granted = fixture.poll(deviceCode);
        QCOMPARE(granted.status, 200);
        QCOMPARE(granted.json()[u"token_type"_s].toString(), u"Bearer"_s);
        const QString token = granted.json()[u"access_token"_s].toString();
        QCOMPARE(
            fixture.curl().get(fixture.api(u"library"_s), { ShopFixture::bearer(token) }).status,
            200);

        // A device code is good for one token only.
        const CurlReply again = fixture.poll(deviceCode);
        QCOMPARE(again.status, 400);
        QCOMPARE(again.json()[u"error"_s].toString(), u"invalid_grant"_s);
    }

    void pollAnswers_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("error");
        QTest::newRow("polled too soon") << u"poll"_s << u"slow_down"_s;
        QTest::newRow("denied on the page") << u"deny"_s << u"access_denied"_s;
        QTest::newRow("past expires_in") << u"expire"_s << u"expired_token"_s;
        QTest::newRow("approved, then expired") << u"approve expire"_s << u"expired_token"_s;
        QTest::newRow("unknown device code") << u"forget"_s << u"invalid_grant"_s;
    }

    void pollAnswers()
    {
        QFETCH(QString, before);
        QFETCH(QString, error);
        ShopFixture fixture({ .pollInterval = 60 });
        const QJsonObject code = fixture.requestCode();
        QString deviceCode = code[u"device_code"_s].toString();
        const QString userCode = code[u"user_code"_s].toString();
        if (before.contains(u"poll"_s))
            fixture.poll(deviceCode);
        if (before.contains(u"deny"_s)) {
            const CurlReply page =
                fixture.curl().run({ u"--data"_s, u"user_code="_s + userCode + u"&action=deny"_s,
                                     fixture.url(u"/activate"_s) });
            QCOMPARE(page.status, 200);
        }
        if (before.contains(u"approve"_s))
            QVERIFY(fixture.shop().approve(userCode));
        if (before.contains(u"expire"_s))
            fixture.shop().advanceClock(900s);
        if (before.contains(u"forget"_s))
            deviceCode = u"not-a-code"_s;

        const CurlReply reply = fixture.poll(deviceCode);
        QCOMPARE(reply.status, 400);
        QCOMPARE(reply.json()[u"error"_s].toString(), error);
    }

    void slowDownRaisesTheInterval()
    {
        // A long interval, so that the real time between two polls does not count.
        ShopFixture fixture({ .pollInterval = 60 });
        const QString deviceCode = fixture.requestCode()[u"device_code"_s].toString();
        const auto answer = [&] { return fixture.poll(deviceCode).json()[u"error"_s].toString(); };
        QCOMPARE(answer(), u"authorization_pending"_s);
        QCOMPARE(answer(), u"slow_down"_s);
        // Each slow_down adds five seconds: 40 is too soon after 65, 70 is not after 70.
        fixture.shop().advanceClock(40s);
        QCOMPARE(answer(), u"slow_down"_s);
        fixture.shop().advanceClock(70s);
        QCOMPARE(answer(), u"authorization_pending"_s);
    }

    void badRequests_data()
    {
        QTest::addColumn<QString>("endpoint");
        QTest::addColumn<QJsonObject>("body");
        QTest::addColumn<QString>("error");
        QTest::newRow("code for another client")
            << u"device/code"_s << QJsonObject { { u"client_id"_s, u"ios-app"_s } }
            << u"invalid_client"_s;
        QTest::newRow("another grant")
            << u"device/token"_s
            << QJsonObject { { u"client_id"_s, u"mac-app"_s }, { u"grant_type"_s, u"password"_s } }
            << u"unsupported_grant_type"_s;
    }

    void badRequests()
    {
        QFETCH(QString, endpoint);
        QFETCH(QJsonObject, body);
        QFETCH(QString, error);
        ShopFixture fixture;
        const CurlReply reply = fixture.curl().post(fixture.api(endpoint), body);
        QCOMPARE(reply.status, 400);
        QCOMPARE(reply.json()[u"error"_s].toString(), error);
    }

    void revokedTokenIsRefusedEverywhere_data()
    {
        QTest::addColumn<QString>("endpoint");
        QTest::addColumn<bool>("post");
        QTest::newRow("sign-out") << u"sign-out"_s << true;
        QTest::newRow("library") << u"library"_s << false;
        QTest::newRow("downloads") << u"downloads"_s << true;
    }

    void revokedTokenIsRefusedEverywhere()
    {
        QFETCH(QString, endpoint);
        QFETCH(bool, post);
        ShopFixture fixture;
        const QString token = fixture.shop().issueToken();
        const auto request = [&](const QString &bearer) {
            const QStringList headers { ShopFixture::bearer(bearer) };
            return post ? fixture.curl().post(fixture.api(endpoint),
                                              { { u"files"_s, QJsonArray() } }, headers)
                        : fixture.curl().get(fixture.api(endpoint), headers);
        };
        QCOMPARE(request(fixture.shop().issueToken()).status, 200);
        QCOMPARE(fixture.curl()
                     .post(fixture.api(u"sign-out"_s), {}, { ShopFixture::bearer(token) })
                     .status,
                 200);

        for (const QString &refused : { token, u"qdt_never-issued"_s, QString() }) {
            const CurlReply reply = request(refused);
            QCOMPARE(reply.status, 401);
            QCOMPARE(reply.header(u"WWW-Authenticate"_s), uR"(Bearer error="invalid_token")"_s);
        }
        // Another session of the same account goes on.
        QCOMPARE(request(fixture.shop().issueToken()).status, 200);
    }

    void tokensSurviveARestart()
    {
        ShopFixture fixture;
        const QString token = fixture.shop().issueToken();
        fixture.shop().stop();
        QVERIFY(fixture.shop().start());
        const CurlReply library =
            fixture.curl().get(fixture.api(u"library"_s), { ShopFixture::bearer(token) });
        QCOMPARE(library.status, 200);
    }
};

QTEST_GUILESS_MAIN(TestDevshopSignIn)
#include "test_devshop_sign_in.moc"
