#include "api_client.h"
#include "cancel_token.h"
#include "computer_name.h"
#include "defaults.h"
#include "network_access_manager.h"
#include "network_error.h"
#include "test_support.h"

#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Failure = APIClient::Failure;

// The shop's HTTP client against the development shop, and against a stand-in server for the
// replies the shop cannot produce.
class APIClientTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        m_shop.emplace();
        QVERIFY(m_shop->isRunning());
        m_manager =
            std::make_unique<NetworkAccessManager>(m_shop->shop().caPath(), m_shop->baseUrl());
    }

    void init() { QVERIFY(m_shop->shop().setFaults({})); }

    void isShopPage_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<bool>("expected");

        QTest::newRow("the shop's page") << u"https://shop.quennet.app/activate?c=AB"_s << true;
        QTest::newRow("another port") << u"https://shop.quennet.app:8443/activate"_s << false;
        QTest::newRow("plain http") << u"http://shop.quennet.app/activate"_s << false;
        QTest::newRow("another host") << u"https://example.com/activate"_s << false;
        QTest::newRow("a longer name") << u"https://shop.quennet.app.evil.com/"_s << false;
        QTest::newRow("the shop as user info") << u"https://shop.quennet.app@evil.com/"_s << false;
    }

    void isShopPage()
    {
        QFETCH(QString, page);
        QTEST(client(Defaults::productionShopURL()).isShopPage(QUrl(page)), "expected");
    }

    // What goes over the wire, and replies the shop never sends: a link in clear text would hand
    // the file's right to anyone on the way; a token follows a redirect only on the same scheme,
    // host and port; a reply never comes.
    void standInReplies()
    {
        StandInServer server(m_shop->stateDir());
        for (int i = 0; i < 4; ++i)
            server.enqueue(
                { .status = 204, .headers = { { "Set-Cookie", "session=crumbs; Path=/" } } });
        const auto standIn = client(server.base());
        finish(standIn.signOut(u"token-one"_s));
        finish(standIn.pollToken(u"device-one"_s));
        finish(standIn.library(u"token-two"_s, std::nullopt));
        finish(standIn.links(u"token-three"_s, { { u"pack-a"_s, u"f_0123456789ab"_s } }));

        const auto &sent = server.requests();
        QCOMPARE(sent.size(), 4);
        for (const auto &request : sent)
            QCOMPARE(request.header("Cookie"), std::nullopt); // each reply set one
        QCOMPARE(sent[0].header("Authorization"), "Bearer token-one");
        QCOMPARE(sent[1].header("Authorization"), std::nullopt);
        server.enqueue({ .body = "{\"links\": [{\"pack\": \"aurora\", \"id\": \"f_0123456789ab\", "
                                 "\"url\": \"http://127.0.0.1:9/f\"}]}" });
        QVERIFY(finish(standIn.links(u"token"_s, { { u"aurora"_s, u"f_0123456789ab"_s } }))
                    .failure<Failure>());

        // The shop under its other name is another host.
        auto elsewhere = m_shop->baseUrl().resolved(QUrl(u"library"_s));
        elsewhere.setHost(u"localhost"_s);
        server.enqueue({ .status = 302, .headers = { { "Location", elsewhere.toEncoded() } } });
        QCOMPARE(finish(standIn.library(u"token"_s, std::nullopt)).failure<Failure>(),
                 Failure::status(302));
        server.enqueue(
            { .status = 307, .headers = { { "Location", "/api/app/v1/library?moved=1" } } });
        server.enqueue({ .body = R"({"email": "moved@example.com", "packs": []})" });
        const auto moved = finish(standIn.library(u"token"_s, std::nullopt)).value.value();
        QCOMPARE(moved->reply.email, u"moved@example.com"_s);
        QVERIFY(sent.last().head.startsWith("GET /api/app/v1/library?moved=1 "));
        QCOMPARE(sent.last().header("Authorization"), "Bearer token");

        // Cancelling aborts a request that is waiting for its reply.
        server.enqueue({ .hold = true });
        CancelToken cancel;
        auto task = standIn.catalogue(&cancel);
        QTRY_VERIFY(sent.last().head.startsWith("GET /api/app/v1/catalogue "));
        cancel.cancel();
        // Else the reply would stay until the manager's transfer time-out ends it the same way.
        QTRY_VERIFY(m_manager->findChildren<QNetworkReply *>().isEmpty());
        const auto aborted = finish(std::move(task)).failure<NetworkError>();
        QCOMPARE(aborted->code(), QNetworkReply::OperationCanceledError);
    }

    // Other statuses and bodies show in the store's and the account's messages.
    void busyShop()
    {
        QVERIFY(m_shop->shop().setFaults(statusFault("catalogue", 429, "slow_down")));
        const auto failure = finish(client(m_shop->baseUrl()).catalogue()).failure<Failure>();
        QCOMPARE(failure->description(), u"The shop is busy. Try again in a minute."_s);
    }

    void transportAndTrust()
    {
        // The shop's authority is trusted only through "shopCertificates", and only for the shop's
        // host: the same server under its other name is another site.
        NetworkAccessManager untrusting(std::nullopt, m_shop->baseUrl());
        const auto untrusted =
            finish(APIClient(&untrusting, m_shop->baseUrl()).catalogue()).failure<NetworkError>();
        QCOMPARE(untrusted->code(), QNetworkReply::SslHandshakeFailedError);
        auto otherName = m_shop->baseUrl();
        otherName.setHost(u"localhost"_s);
        const auto elsewhere = finish(client(otherName).catalogue()).failure<NetworkError>();
        QCOMPARE(elsewhere->code(), QNetworkReply::SslHandshakeFailedError);
        NetworkAccessManager forOtherName(m_shop->shop().caPath(), otherName);
        QVERIFY(finish(APIClient(&forOtherName, otherName).catalogue()).value);

        // Nothing at all goes to a shop whose address isn't HTTPS, least of all a token.
        StandInServer plain;
        plain.enqueue({ .status = 204 });
        QCOMPARE(finish(client(plain.base()).signOut(u"token"_s)).failure<Failure>(),
                 Failure::notHTTPS());
        QCOMPARE(finish(client(plain.base()).requestDeviceCode(u"Computer"_s)).failure<Failure>(),
                 Failure::notHTTPS());
        QVERIFY(plain.requests().isEmpty());
    }

    // The pretty host name as systemd writes /etc/machine-info, sent as the device's name.
    void prettyHostName_data()
    {
        QTest::addColumn<QByteArray>("machineInfo");
        QTest::addColumn<QString>("name");

        QTest::newRow("bare") << QByteArray("CHASSIS=laptop\nPRETTY_HOSTNAME=Studio\n")
                              << u"Studio"_s;
        QTest::newRow("double quotes, escapes")
            << QByteArray(R"(PRETTY_HOSTNAME="Zoë’s \"Big\" One")") << u"Zoë’s \"Big\" One"_s;
        QTest::newRow("single quotes") << QByteArray("PRETTY_HOSTNAME='a\\b'") << u"a\\b"_s;
        QTest::newRow("a longer key") << QByteArray("NOT_PRETTY_HOSTNAME=x") << QString();
        QTest::newRow("blank") << QByteArray("PRETTY_HOSTNAME=\"  \"") << QString();
    }

    void prettyHostName()
    {
        QFETCH(QByteArray, machineInfo);
        QTEST(::prettyHostName(machineInfo), "name");
    }

private:
    [[nodiscard]] APIClient client(const QUrl &base) const { return { m_manager.get(), base }; }

    std::optional<ContentShop> m_shop;
    std::unique_ptr<NetworkAccessManager> m_manager;
};

QTEST_GUILESS_MAIN(APIClientTest)
#include "test_api_client.moc"
