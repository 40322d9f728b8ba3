#include "api_client.h"
#include "cancel_token.h"
#include "network_access_manager.h"
#include "network_error.h"
#include "test_support.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using Failure = APIClient::Failure;
using Poll = APIClient::TokenPoll::Outcome;

// The shop's HTTP client against the development shop, and against a stand-in server for the
// replies the shop cannot produce.
class APIClientTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void isShopPage_data();
    void isShopPage();
    void requestsAsSent();
    void statusSentences_data();
    void statusSentences();
    void deviceCodeReplies_data();
    void deviceCodeReplies();
    void tokenPoll_data();
    void tokenPoll();
    void libraryEntityTags();
    void linksAndSignOut();
    void transportErrorsPassThrough();
    void redirects_data();
    void redirects();
    void cancellationAbortsTheRequest();

private:
    [[nodiscard]] APIClient shopClient() { return APIClient(m_manager.get(), m_shop->base()); }
    [[nodiscard]] APIClient standInClient(StandInServer &server)
    {
        return APIClient(m_manager.get(), server.base());
    }

    std::optional<TestShop> m_shop;
    std::unique_ptr<NetworkAccessManager> m_manager;
};

void APIClientTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_shop.emplace();
    QVERIFY(m_shop->isRunning());
    m_manager = std::make_unique<NetworkAccessManager>(m_shop->caPath());
}

void APIClientTest::init()
{
    QVERIFY(m_shop->shop().setFaults({}));
}

void APIClientTest::isShopPage_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<bool>("expected");

    QTest::newRow("the shop's own page") << u"https://shop.quennet.app/activate?code=AB"_s << true;
    QTest::newRow("another port, same host") << u"https://shop.quennet.app:8443/activate"_s << true;
    QTest::newRow("plain http") << u"http://shop.quennet.app/activate"_s << false;
    QTest::newRow("another host") << u"https://example.com/activate"_s << false;
    QTest::newRow("a subdomain") << u"https://evil.shop.quennet.app/activate"_s << false;
    QTest::newRow("a longer name") << u"https://shop.quennet.app.evil.com/activate"_s << false;
    QTest::newRow("the shop as user info") << u"https://shop.quennet.app@evil.com/"_s << false;
    QTest::newRow("a trailing dot") << u"https://shop.quennet.app./activate"_s << false;
    QTest::newRow("no host") << u"https:/activate"_s << false;
    QTest::newRow("another scheme") << u"ftp://shop.quennet.app/activate"_s << false;
}

void APIClientTest::isShopPage()
{
    QFETCH(QString, page);
    QFETCH(bool, expected);
    const APIClient client(m_manager.get(), QUrl(u"https://shop.quennet.app/api/app/v1"_s));
    QCOMPARE(client.isShopPage(QUrl(page)), expected);
}

void APIClientTest::requestsAsSent()
{
    StandInServer server;
    for (int i = 0; i < 5; ++i)
        server.enqueue(
            { .status = 204, .headers = { { "Set-Cookie", "session=crumbs; Path=/" } } });
    const auto client = standInClient(server);

    finish(client.signOut(u"token-one"_s));
    finish(client.pollToken(u"device-one"_s));
    finish(client.library(u"token-two"_s, u"W/\"a, b\""_s));
    finish(client.library(u"token-three"_s, std::nullopt));
    finish(client.links(
        u"token-four"_s,
        { { u"pack-a"_s, u"f_0123456789ab"_s }, { u"pack-b"_s, u"f_ba9876543210"_s } }));

    const auto &requests = server.requests();
    QCOMPARE(requests.size(), 5);
    const QList<QByteArray> paths { "/api/app/v1/sign-out", "/api/app/v1/device/token",
                                    "/api/app/v1/library", "/api/app/v1/library",
                                    "/api/app/v1/downloads" };
    const QList<QByteArray> methods { "POST", "POST", "GET", "GET", "POST" };
    const QList<std::optional<QByteArray>> authorizations {
        QByteArray("Bearer token-one"), std::nullopt, QByteArray("Bearer token-two"),
        QByteArray("Bearer token-three"), QByteArray("Bearer token-four")
    };
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const auto &request = requests[i];
        QCOMPARE(request.path, paths[i]);
        QCOMPARE(request.method, methods[i]);
        QCOMPARE(request.header("Accept"), QByteArray("application/json"));
        QCOMPARE(request.header("Content-Type").has_value(), request.method == "POST");
        QCOMPARE(request.header("Authorization"), authorizations[i]);
        QCOMPARE(request.header("User-Agent"), QByteArray("Quennet/" QUENNET_VERSION));
        // Set-Cookie came with every reply; nothing went back.
        QCOMPARE(request.header("Cookie"), std::nullopt);
    }
    QCOMPARE(requests[2].header("If-None-Match"), QByteArray(R"(W/"a, b")"));
    QCOMPARE(requests[3].header("If-None-Match"), std::nullopt);

    QCOMPARE(requests[0].body, QByteArray("{}"));
    const auto poll = QJsonDocument::fromJson(requests[1].body).object();
    QCOMPARE(poll,
             (QJsonObject { { u"grant_type"_s, u"urn:ietf:params:oauth:grant-type:device_code"_s },
                            { u"device_code"_s, u"device-one"_s },
                            { u"client_id"_s, u"mac-app"_s } }));
    const auto links = QJsonDocument::fromJson(requests[4].body).object();
    const QJsonArray files {
        QJsonObject { { u"pack"_s, u"pack-a"_s }, { u"id"_s, u"f_0123456789ab"_s } },
        QJsonObject { { u"pack"_s, u"pack-b"_s }, { u"id"_s, u"f_ba9876543210"_s } }
    };
    QCOMPARE(links, (QJsonObject { { u"files"_s, files } }));
}

void APIClientTest::statusSentences_data()
{
    QTest::addColumn<QString>("endpoint");
    QTest::addColumn<QJsonObject>("faults");
    QTest::addColumn<Failure::Kind>("kind");
    QTest::addColumn<QString>("sentence");

    const auto status = [](const char *endpoint, int code, const QString &error = {}) {
        QJsonObject fault { { u"endpoint"_s, QLatin1StringView(endpoint) }, { u"status"_s, code } };
        if (!error.isEmpty())
            fault.insert(u"error"_s, error);
        return QJsonObject { { u"statuses"_s, QJsonArray { fault } } };
    };
    const auto malformed = [](const char *endpoint) {
        return QJsonObject { { u"malformed"_s, QJsonArray { QLatin1StringView(endpoint) } } };
    };

    QTest::newRow("418 with a detail")
        << u"catalogue"_s << status("catalogue", 418, u"teapot"_s) << Failure::Kind::Status
        << u"The shop replied 418 (teapot)."_s;
    QTest::newRow("418 without JSON") << u"catalogue"_s << status("catalogue", 418)
                                      << Failure::Kind::Status << u"The shop replied 418."_s;
    QTest::newRow("503 maintenance")
        << u"device/code"_s << status("device/code", 503, u"maintenance"_s) << Failure::Kind::Status
        << u"The shop replied 503 (maintenance)."_s;
    QTest::newRow("401 with a body") << u"library"_s << status("library", 401, u"invalid_token"_s)
                                     << Failure::Kind::SignedOut << u"You've been signed out."_s;
    QTest::newRow("401 on sign-out") << u"sign-out"_s << status("sign-out", 401, u"invalid_token"_s)
                                     << Failure::Kind::SignedOut << u"You've been signed out."_s;
    QTest::newRow("429") << u"downloads"_s << status("downloads", 429, u"slow_down"_s)
                         << Failure::Kind::SlowDown
                         << u"The shop is busy. Try again in a minute."_s;
    QTest::newRow("bad catalogue body")
        << u"catalogue"_s << malformed("catalogue") << Failure::Kind::InvalidReply
        << u"The shop sent something the app didn't understand."_s;
    QTest::newRow("bad library body")
        << u"library"_s << malformed("library") << Failure::Kind::InvalidReply
        << u"The shop sent something the app didn't understand."_s;
    QTest::newRow("bad device code")
        << u"device/code"_s << malformed("device/code") << Failure::Kind::InvalidReply
        << u"The shop sent something the app didn't understand."_s;
    QTest::newRow("bad links") << u"downloads"_s << malformed("downloads")
                               << Failure::Kind::InvalidReply
                               << u"The shop sent something the app didn't understand."_s;
}

void APIClientTest::statusSentences()
{
    QFETCH(QString, endpoint);
    QFETCH(QJsonObject, faults);
    QFETCH(Failure::Kind, kind);
    QFETCH(QString, sentence);

    const auto client = shopClient();
    const auto token = m_shop->issueToken();
    const auto library = finish(client.library(token, std::nullopt)).value.value();
    const auto &pack = library->reply.packs.first();
    const APIClient::WantedFile file { pack.slug, pack.colourways.first().files.first().id };
    QVERIFY(m_shop->shop().setFaults(faults));

    std::exception_ptr error;
    if (endpoint == "catalogue"_L1)
        error = finish(client.catalogue()).error;
    else if (endpoint == "library"_L1)
        error = finish(client.library(token, std::nullopt)).error;
    else if (endpoint == "device/code"_L1)
        error = finish(client.requestDeviceCode(u"Computer"_s)).error;
    else if (endpoint == "sign-out"_L1)
        error = finish(client.signOut(token)).error;
    else if (endpoint == "downloads"_L1)
        error = finish(client.links(token, { file })).error;
    const Result<bool> outcome { .error = error };

    const auto failure = outcome.failure<Failure>();
    QVERIFY2(failure, qPrintable(outcome.errorDescription()));
    QCOMPARE(failure->kind(), kind);
    QCOMPARE(failure->description(), sentence);
}

void APIClientTest::deviceCodeReplies_data()
{
    QTest::addColumn<QJsonObject>("reply");
    QTest::addColumn<std::optional<APIClient::DeviceCode>>("expected");

    const QJsonObject full { { u"device_code"_s, u"dc"_s },
                             { u"user_code"_s, u"ABCD-EFGH"_s },
                             { u"verification_uri"_s, u"https://shop.quennet.app/activate"_s },
                             { u"verification_uri_complete"_s,
                               u"https://shop.quennet.app/activate?c=1"_s },
                             { u"expires_in"_s, 900 },
                             { u"interval"_s, 5 },
                             { u"unknown"_s, u"ignored"_s } };
    const APIClient::DeviceCode code {
        .deviceCode = u"dc"_s,
        .userCode = u"ABCD-EFGH"_s,
        .verificationURI = QUrl(u"https://shop.quennet.app/activate"_s),
        .verificationURIComplete = QUrl(u"https://shop.quennet.app/activate?c=1"_s),
        .expiresIn = 900,
        .interval = 5,
    };
    const auto without = [&](std::initializer_list<const char *> keys) {
        auto reply = full;
        for (const auto *key : keys)
            reply.remove(QLatin1StringView(key));
        return reply;
    };
    const auto with = [&](const char *key, const QJsonValue &value) {
        auto reply = full;
        reply.insert(QLatin1StringView(key), value);
        return reply;
    };
    auto minimal = code;
    minimal.verificationURIComplete.reset();
    minimal.interval.reset();

    QTest::newRow("every field") << full << std::optional(code);
    QTest::newRow("no complete URI, no interval")
        << without({ "verification_uri_complete", "interval" }) << std::optional(minimal);
    auto nulls = with("verification_uri_complete", QJsonValue::Null);
    nulls.insert(u"interval"_s, QJsonValue::Null);
    QTest::newRow("nulls for the optional fields") << nulls << std::optional(minimal);
    QTest::newRow("no expiry") << without({ "expires_in" })
                               << std::optional<APIClient::DeviceCode>();
    QTest::newRow("no user code") << without({ "user_code" })
                                  << std::optional<APIClient::DeviceCode>();
    QTest::newRow("expiry as text")
        << with("expires_in", u"900"_s) << std::optional<APIClient::DeviceCode>();
    QTest::newRow("interval as a fraction")
        << with("interval", 2.5) << std::optional<APIClient::DeviceCode>();
    QTest::newRow("not a URL") << with("verification_uri", u"https://[::1"_s)
                               << std::optional<APIClient::DeviceCode>();
}

void APIClientTest::deviceCodeReplies()
{
    QFETCH(QJsonObject, reply);
    QFETCH(std::optional<APIClient::DeviceCode>, expected);

    StandInServer server;
    server.enqueue({ .body = QJsonDocument(reply).toJson() });
    const auto outcome = finish(standInClient(server).requestDeviceCode(u"Computer"_s));
    if (expected) {
        QVERIFY2(outcome.value, qPrintable(outcome.errorDescription()));
        QCOMPARE(*outcome.value, *expected);
    } else {
        QCOMPARE(outcome.failure<Failure>(), Failure::invalidReply());
    }
    QCOMPARE(QJsonDocument::fromJson(server.requests().value(0).body).object(),
             (QJsonObject { { u"client_id"_s, u"mac-app"_s }, { u"device"_s, u"Computer"_s } }));
}

void APIClientTest::tokenPoll_data()
{
    QTest::addColumn<QJsonObject>("faults");
    QTest::addColumn<bool>("approve");
    QTest::addColumn<std::optional<Poll>>("expected"); // none: invalidReply

    const auto status = [](int code, const QString &error = {}) {
        QJsonObject fault { { u"endpoint"_s, u"device/token"_s },
                            { u"status"_s, code },
                            { u"times"_s, 1 } };
        if (!error.isEmpty())
            fault.insert(u"error"_s, error);
        return QJsonObject { { u"statuses"_s, QJsonArray { fault } } };
    };
    QTest::newRow("waiting") << QJsonObject() << false << std::optional(Poll::Pending);
    QTest::newRow("approved") << QJsonObject() << true << std::optional(Poll::Token);
    QTest::newRow("approved, body without a token")
        << QJsonObject { { u"malformed"_s, QJsonArray { u"device/token"_s } } } << true
        << std::optional<Poll>();
    QTest::newRow("pending in capitals")
        << status(400, u"AUTHORIZATION_PENDING"_s) << false << std::optional(Poll::Unknown);
    QTest::newRow("pending with another status")
        << status(403, u"authorization_pending"_s) << false << std::optional(Poll::Pending);
    QTest::newRow("slow_down") << status(400, u"slow_down"_s) << false
                               << std::optional(Poll::SlowDown);
    QTest::newRow("429 without a body") << status(429) << false << std::optional(Poll::SlowDown);
    QTest::newRow("429 says denied")
        << status(429, u"access_denied"_s) << false << std::optional(Poll::SlowDown);
    QTest::newRow("denied") << status(400, u"access_denied"_s) << false
                            << std::optional(Poll::Denied);
    QTest::newRow("expired") << status(400, u"expired_token"_s) << false
                             << std::optional(Poll::Expired);
    QTest::newRow("another error")
        << status(400, u"invalid_grant"_s) << false << std::optional(Poll::Unknown);
    QTest::newRow("500 without a body") << status(500) << false << std::optional(Poll::Unknown);
}

void APIClientTest::tokenPoll()
{
    QFETCH(QJsonObject, faults);
    QFETCH(bool, approve);
    QFETCH(std::optional<Poll>, expected);

    const auto client = shopClient();
    const auto code = finish(client.requestDeviceCode(u"Computer"_s)).value;
    QVERIFY(code);
    if (approve)
        QVERIFY(m_shop->shop().approve(code->userCode));
    QVERIFY(m_shop->shop().setFaults(faults));

    const auto poll = finish(client.pollToken(code->deviceCode));
    if (!expected) {
        QCOMPARE(poll.failure<Failure>(), Failure::invalidReply());
        return;
    }
    QVERIFY2(poll.value, qPrintable(poll.errorDescription()));
    QCOMPARE(poll.value->outcome, *expected);
    if (*expected != Poll::Token)
        return;
    recordToken(poll.value->token);
    QVERIFY(finish(client.library(poll.value->token, std::nullopt)).value);
}

void APIClientTest::libraryEntityTags()
{
    const auto client = shopClient();
    const auto token = m_shop->issueToken();

    const auto first = finish(client.library(token, std::nullopt)).value.value();
    QVERIFY(first);
    QVERIFY(!first->reply.email.isEmpty());
    QVERIFY(!first->reply.packs.isEmpty());
    QVERIFY(first->etag);

    QCOMPARE(*finish(client.library(token, first->etag)).value, std::nullopt);
    const auto changed = finish(client.library(token, u"\"something else\""_s)).value.value();
    QVERIFY(changed);
    QCOMPARE(changed->reply, first->reply);

    // A 304 is not modified whatever came with it.
    StandInServer server;
    server.enqueue({ .status = 304, .body = "not json at all" });
    QCOMPARE(*finish(standInClient(server).library(token, first->etag)).value, std::nullopt);
}

void APIClientTest::linksAndSignOut()
{
    const auto client = shopClient();
    const auto token = m_shop->issueToken();
    const auto library = finish(client.library(token, std::nullopt)).value.value();
    const auto &pack = library->reply.packs.first();
    const auto &file = pack.colourways.first().files.first();

    const auto links = finish(client.links(token, { { pack.slug, file.id } })).value;
    QVERIFY(links);
    QCOMPARE(links->size(), 1);
    QCOMPARE(links->first().pack, pack.slug);
    QCOMPARE(links->first().id, file.id);
    QVERIFY(links->first().url.isValid());
    QVERIFY(links->first().expiresAt);

    QVERIFY(finish(client.signOut(token)).value);
    QCOMPARE(finish(client.library(token, std::nullopt)).failure<Failure>(), Failure::signedOut());
}

void APIClientTest::transportErrorsPassThrough()
{
    // Refused: a port that was free a moment ago.
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    QUrl base = m_shop->base();
    base.setPort(closed.serverPort());
    closed.close();
    const auto refused = finish(APIClient(m_manager.get(), base).catalogue());
    QCOMPARE(refused.failure<NetworkError>()->code(), QNetworkReply::ConnectionRefusedError);

    // The shop's own authority is trusted only through "shopCertificates".
    NetworkAccessManager untrusting(std::nullopt);
    const auto untrusted = finish(APIClient(&untrusting, m_shop->base()).catalogue());
    QCOMPARE(untrusted.failure<NetworkError>()->code(), QNetworkReply::SslHandshakeFailedError);
}

void APIClientTest::redirects_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<bool>("followed");

    // SHOP is the development shop's port, HERE the stand-in's.
    QTest::newRow("the shop under another name")
        << u"https://localhost:SHOP/api/app/v1/library"_s << false;
    QTest::newRow("another scheme") << u"https://127.0.0.1:HERE/api/app/v1/library"_s << false;
    QTest::newRow("another port") << u"http://127.0.0.1:SHOP/api/app/v1/library"_s << false;
    QTest::newRow("same origin") << u"/api/app/v1/library?moved=1"_s << true;
}

void APIClientTest::redirects()
{
    QFETCH(QString, location);
    QFETCH(bool, followed);

    StandInServer server;
    const auto target = QString(location)
                            .replace(u"SHOP"_s, QString::number(m_shop->base().port()))
                            .replace(u"HERE"_s, QString::number(server.base().port()));
    server.enqueue({ .status = 302, .headers = { { "Location", target.toUtf8() } } });
    server.enqueue({ .body = R"({"email": "moved@example.com", "packs": []})" });
    const auto token = m_shop->issueToken();
    const int seenByShop = m_shop->requests(u"library"_s);

    const auto outcome = finish(standInClient(server).library(token, std::nullopt));
    QCOMPARE(m_shop->requests(u"library"_s), seenByShop);
    if (!followed) {
        QCOMPARE(outcome.failure<Failure>(), Failure::status(302));
        QCOMPARE(server.requests().size(), 1);
        return;
    }
    QVERIFY2(outcome.value, qPrintable(outcome.errorDescription()));
    QCOMPARE((*outcome.value)->reply.email, u"moved@example.com"_s);
    QCOMPARE(server.requests().size(), 2);
    QCOMPARE(server.requests()[1].path, QByteArray("/api/app/v1/library?moved=1"));
    QCOMPARE(server.requests()[1].header("Authorization"), QByteArray("Bearer " + token.toUtf8()));
}

void APIClientTest::cancellationAbortsTheRequest()
{
    StandInServer server;
    server.enqueue({ .hold = true });
    CancelToken cancel;
    auto task = standInClient(server).catalogue(&cancel);
    QTRY_COMPARE(server.requests().size(), 1);
    cancel.cancel();
    const auto outcome = finish(std::move(task));
    QCOMPARE(outcome.failure<NetworkError>()->code(), QNetworkReply::OperationCanceledError);
}

QTEST_GUILESS_MAIN(APIClientTest)
#include "test_api_client.moc"
