#include "account.h"
#include "cancel_token.h"
#include "keychain.h"
#include "network_access_manager.h"
#include "test_support.h"

#include <QCoroNetworkReply>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = Account::Status;

namespace
{
const auto unreachable = u"Couldn't reach the shop. Check your connection and try again."_s;
const auto expired = u"That code expired."_s;
const auto denied = u"Sign-in was cancelled in the browser."_s;
const auto didntWork = u"That code didn't work. Start again."_s;

QJsonObject statusFault(const char *endpoint, int status, const QString &error = {}, int times = 1)
{
    QJsonObject fault { { u"endpoint"_s, QLatin1StringView(endpoint) },
                        { u"status"_s, status },
                        { u"times"_s, times } };
    if (!error.isEmpty())
        fault.insert(u"error"_s, error);
    return { { u"statuses"_s, QJsonArray { fault } } };
}

QList<std::chrono::milliseconds> seconds(std::initializer_list<int> values)
{
    QList<std::chrono::milliseconds> result;
    for (const int value : values)
        result.append(std::chrono::seconds(value));
    return result;
}
} // namespace

// Sign-in, session and sign-out against the development shop, with time on a test clock that
// moves the shop's clock along. Runs with the secret service and again with the private file.
class AccountTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void signInThroughTheApprovalPage();
    void signInEndings_data();
    void signInEndings();
    void noDeviceCode();
    void pollIntervals_data();
    void pollIntervals();
    void defaultIntervalAndDeadline();
    void verificationPage_data();
    void verificationPage();
    void replacedAttemptChangesNothing();
    void cancelling();
    void offlineSignOutsRevokedAtNextLaunch();
    void pendingListParsing();
    void forcedSignOut();

private:
    void startShop(DevShop::Options options);
    // An account over a fresh keychain folder, talking to base.
    std::unique_ptr<Account> makeAccount(std::function<QUrl()> base);
    std::unique_ptr<Account> makeAccount()
    {
        return makeAccount([this] { return m_shop->base(); });
    }
    [[nodiscard]] std::optional<QString> stored(QLatin1StringView item);
    void store(const QString &value, QLatin1StringView item);
    // What a person does on the page the account opened: check the code and decide.
    void decideInPage(const QUrl &page, const QString &userCode, const QString &action);
    [[nodiscard]] QUrl deadBase() const;

    // One certificate authority for every shop of the run.
    QTemporaryDir m_shopState;
    std::optional<TestShop> m_shop;
    std::unique_ptr<NetworkAccessManager> m_manager;
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Keychain> m_keychain;
    std::shared_ptr<TestClock> m_clock;
    QList<QUrl> m_opened;
    int m_signOuts = 0;
};

void AccountTest::init()
{
    QStandardPaths::setTestModeEnabled(true);
    if (qEnvironmentVariableIsEmpty("QUENNET_SESSION"))
        QSKIP("runs only inside tests/run-in-session");
    startShop({ .pollInterval = 0 });
    m_folder.emplace();
    m_keychain = std::make_unique<Keychain>(m_folder->path());
    finish(m_keychain->remove(Keychain::sessionToken));
    finish(m_keychain->remove(Keychain::pendingRevocation));
    m_clock = std::make_shared<TestClock>();
    m_clock->setOnSleep([this](std::chrono::milliseconds slept) {
        m_shop->shop().advanceClock(std::chrono::duration_cast<std::chrono::seconds>(slept));
    });
    m_opened.clear();
    m_signOuts = 0;
}

void AccountTest::cleanup()
{
    // Cancelled tasks end once their aborted replies finish; a manager destroyed first would
    // take the replies along and leave the tasks waiting for ever.
    if (m_manager)
        QTRY_VERIFY(m_manager->findChildren<QNetworkReply *>().isEmpty());
}

void AccountTest::startShop(DevShop::Options options)
{
    cleanup();
    // Connections kept alive would hold the old shop's threads until they time out.
    m_manager.reset();
    m_shop.emplace(options, m_shopState.path());
    QVERIFY(m_shop->isRunning());
    m_manager = std::make_unique<NetworkAccessManager>(m_shop->caPath());
}

std::unique_ptr<Account> AccountTest::makeAccount(std::function<QUrl()> base)
{
    auto account = std::make_unique<Account>(
        [this, base] { return APIClient(m_manager.get(), base()); }, m_keychain.get());
    account->setClock(m_clock);
    account->setPageOpener([this](const QUrl &page) { m_opened.append(page); });
    account->setOnSignOut([this] { ++m_signOuts; });
    finish(account->load());
    return account;
}

std::optional<QString> AccountTest::stored(QLatin1StringView item)
{
    return *finish(m_keychain->read(item)).value;
}

void AccountTest::store(const QString &value, QLatin1StringView item)
{
    QVERIFY(*finish(m_keychain->save(value, item)).value);
}

QUrl AccountTest::deadBase() const
{
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    QUrl base = m_shop->base();
    base.setPort(closed.serverPort());
    return base;
}

void AccountTest::decideInPage(const QUrl &page, const QString &userCode, const QString &action)
{
    const auto request = [this](QNetworkRequest request,
                                QByteArray body) -> QCoro::Task<QByteArray> {
        std::unique_ptr<QNetworkReply> reply(body.isNull() ? m_manager->get(request)
                                                           : m_manager->post(request, body));
        co_await reply.get();
        co_return reply->readAll();
    };
    const auto form = finish(request(QNetworkRequest(page), {})).value.value();
    QVERIFY(form.contains(QByteArray("value=\"" + userCode.toUtf8() + '"')));

    QUrlQuery decision;
    decision.addQueryItem(u"user_code"_s, userCode);
    decision.addQueryItem(u"action"_s, action);
    QNetworkRequest post(page.resolved(QUrl(u"/activate"_s)));
    post.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded"_ba);
    const auto result = finish(request(post, decision.toString(QUrl::FullyEncoded).toUtf8())).value;
    QVERIFY(result->contains("id=\"result\""));
}

void AccountTest::signInThroughTheApprovalPage()
{
    auto account = makeAccount();
    QCOMPARE(account->status(), Status::SignedOut);
    const auto firstGeneration = account->generation();

    account->signIn();
    QCOMPARE(account->status(), Status::Requesting);
    QTRY_COMPARE(account->status(), Status::Waiting);
    QCOMPARE(m_opened.size(), 1);
    QCOMPARE(m_opened.first(), account->state().code->verificationURIComplete.value());
    decideInPage(m_opened.first(), account->userCode(), u"approve"_s);

    QTRY_COMPARE(account->status(), Status::SignedIn);
    QVERIFY(account->generation() != firstGeneration);
    const auto token = stored(Keychain::sessionToken);
    QVERIFY(token);
    recordToken(*token);

    // A restart: signed in from the keychain alone.
    account = makeAccount();
    QCOMPARE(account->status(), Status::SignedIn);
    const auto signedInGeneration = account->generation();

    finish(account->signOut());
    QCOMPARE(account->status(), Status::SignedOut);
    QVERIFY(account->generation() != signedInGeneration);
    QCOMPARE(m_signOuts, 1);
    QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
    QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
    const APIClient client(m_manager.get(), m_shop->base());
    QCOMPARE(finish(client.library(*token, std::nullopt)).failure<APIClient::Failure>(),
             APIClient::Failure::signedOut());
}

void AccountTest::signInEndings_data()
{
    QTest::addColumn<QJsonObject>("faults"); // set once the code is shown
    QTest::addColumn<QString>("action"); // then: "deny" on the approval page, or "approve"
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("logged");

    QTest::newRow("denied in the browser") << QJsonObject() << u"deny"_s << denied << QString();
    QTest::newRow("expired_token") << statusFault("device/token", 400, u"expired_token"_s)
                                   << QString() << expired << QString();
    QTest::newRow("an unknown error") << statusFault("device/token", 400, u"invalid_grant"_s)
                                      << QString() << didntWork << QString();
    // Only logged; but the code is spent, so the next poll fails.
    QTest::newRow("a token reply that doesn't decode")
        << QJsonObject { { u"malformed"_s, QJsonArray { u"device/token"_s } } } << u"approve"_s
        << didntWork
        << u"Polling failed, trying again: The shop sent something the app didn't understand."_s;
}

void AccountTest::signInEndings()
{
    QFETCH(QJsonObject, faults);
    QFETCH(QString, action);
    QFETCH(QString, message);
    QFETCH(QString, logged);

    auto account = makeAccount();
    if (!logged.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, qPrintable(logged));
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    QVERIFY(m_shop->shop().setFaults(faults));
    // Before the account polls again: the event loop does not run in between.
    if (action == "approve"_L1)
        QVERIFY(m_shop->shop().approve(account->userCode()));
    if (action == "deny"_L1)
        decideInPage(m_opened.first(), account->userCode(), action);

    QTRY_COMPARE(account->status(), Status::Failed);
    QCOMPARE(account->message(), message);
    QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
}

void AccountTest::noDeviceCode()
{
    auto account = makeAccount();
    QVERIFY(m_shop->shop().setFaults(statusFault("device/code", 503, u"maintenance"_s)));
    QTest::ignoreMessage(QtWarningMsg, "Sign-in failed: The shop replied 503 (maintenance).");
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Failed);
    QCOMPARE(account->message(), unreachable);

    // Any error at all reads the same.
    account = makeAccount([this] { return deadBase(); });
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"^Sign-in failed: Connection refused"_s));
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Failed);
    QCOMPARE(account->message(), unreachable);
}

void AccountTest::pollIntervals_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<QJsonObject>("faults");
    QTest::addColumn<QList<std::chrono::milliseconds>>("sleeps");

    QTest::newRow("0 means every second") << 0 << QJsonObject() << seconds({ 1, 1, 1, 1 });
    QTest::newRow("as the shop says") << 5 << QJsonObject() << seconds({ 5, 5, 5, 5 });
    QTest::newRow("two 429s") << 5 << statusFault("device/token", 429, {}, 2)
                              << seconds({ 5, 10, 15, 15 });
    QTest::newRow("two slow_downs")
        << 5 << statusFault("device/token", 400, u"slow_down"_s, 2) << seconds({ 5, 10, 15, 15 });
    QTest::newRow("slowed from 0")
        << 0 << statusFault("device/token", 429, {}, 1) << seconds({ 1, 6, 6, 6 });
}

void AccountTest::pollIntervals()
{
    QFETCH(int, interval);
    QFETCH(QJsonObject, faults);
    QFETCH(QList<std::chrono::milliseconds>, sleeps);

    startShop({ .pollInterval = interval });
    QVERIFY(m_shop->shop().setFaults(faults));
    auto account = makeAccount();
    account->signIn();
    QTRY_VERIFY(m_clock->sleeps().size() >= sleeps.size());
    account->cancelSignIn();
    QCOMPARE(m_clock->sleeps().mid(0, sleeps.size()), sleeps);
    QCOMPARE(account->status(), Status::SignedOut);
}

void AccountTest::defaultIntervalAndDeadline()
{
    // The shop always sends an interval; the stand-in sends none, then says "pending" for ever.
    StandInServer server;
    const QJsonObject code { { u"device_code"_s, u"dc"_s },
                             { u"user_code"_s, u"WXYZ"_s },
                             { u"verification_uri"_s, u"https://shop.example/activate"_s },
                             { u"expires_in"_s, 12 } };
    server.enqueue({ .body = QJsonDocument(code).toJson() });
    for (int i = 0; i < 3; ++i)
        server.enqueue({ .status = 400, .body = R"({"error": "authorization_pending"})" });
    QTest::ignoreMessage(QtWarningMsg, "Ignored a verification page that isn't the shop's");

    auto account = makeAccount([&] { return server.base(); });
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Failed);
    QCOMPARE(account->message(), expired);
    // Polls at 5, 10 and 15 s; the next round finds the 12 s deadline passed.
    QCOMPARE(m_clock->sleeps(), seconds({ 5, 5, 5 }));
    QCOMPARE(server.requests().size(), 4);

    // A code that has expired on arrival is never polled.
    account.reset();
    startShop({ .codeLifetime = 0 });
    account = makeAccount();
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Failed);
    QCOMPARE(account->message(), expired);
    QCOMPARE(m_clock->sleeps().size(), 3);
    QCOMPARE(m_shop->requests(u"device/token"_s), 0);
}

void AccountTest::verificationPage_data()
{
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QString>("complete");
    QTest::addColumn<QString>("opened");

    // HERE is the stand-in's port: its host is the shop's.
    QTest::newRow("the shop's page") << u"https://127.0.0.1:HERE/activate"_s << QString()
                                     << u"https://127.0.0.1:HERE/activate"_s;
    QTest::newRow("the complete page first")
        << u"https://127.0.0.1:HERE/activate"_s << u"https://127.0.0.1:HERE/activate?code=1"_s
        << u"https://127.0.0.1:HERE/activate?code=1"_s;
    QTest::newRow("another host") << u"https://elsewhere.example/activate"_s << QString()
                                  << QString();
    QTest::newRow("a complete page elsewhere")
        << u"https://127.0.0.1:HERE/activate"_s << u"https://elsewhere.example/activate"_s
        << QString();
    QTest::newRow("plain http") << u"http://127.0.0.1:HERE/activate"_s << QString() << QString();
}

void AccountTest::verificationPage()
{
    QFETCH(QString, uri);
    QFETCH(QString, complete);
    QFETCH(QString, opened);

    StandInServer server;
    const auto here = [&](QString text) {
        return text.replace(u"HERE"_s, QString::number(server.base().port()));
    };
    QJsonObject code { { u"device_code"_s, u"dc"_s },
                       { u"user_code"_s, u"WXYZ"_s },
                       { u"verification_uri"_s, here(uri) },
                       { u"expires_in"_s, 900 } };
    if (!complete.isEmpty())
        code.insert(u"verification_uri_complete"_s, here(complete));
    server.enqueue({ .body = QJsonDocument(code).toJson() });
    server.enqueue({ .hold = true });
    if (opened.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, "Ignored a verification page that isn't the shop's");

    auto account = makeAccount([&] { return server.base(); });
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    QCOMPARE(account->userCode(), u"WXYZ"_s);
    QCOMPARE(m_opened, opened.isEmpty() ? QList<QUrl>() : QList<QUrl> { QUrl(here(opened)) });

    // "Open Browser Again" follows the same rule.
    if (opened.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, "Ignored a verification page that isn't the shop's");
    account->openVerificationPage();
    QCOMPARE(m_opened.size(), opened.isEmpty() ? 0 : 2);
    QCOMPARE(account->status(), Status::Waiting);
    account->cancelSignIn();
}

void AccountTest::replacedAttemptChangesNothing()
{
    auto account = makeAccount();
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    const auto first = *account->state().code;

    // The first code is approved just as the user starts again.
    QVERIFY(m_shop->shop().approve(first.userCode));
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    const auto second = *account->state().code;
    QVERIFY(second.userCode != first.userCode);
    const auto polls = m_clock->sleeps().size();
    QTRY_VERIFY(m_clock->sleeps().size() > polls + 3);

    QCOMPARE(account->state().code, second);
    QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
    // Nobody took the first code's token: the replaced attempt stopped polling.
    const APIClient client(m_manager.get(), m_shop->base());
    const auto leftOver = finish(client.pollToken(first.deviceCode)).value;
    QCOMPARE(leftOver->outcome, APIClient::TokenPoll::Outcome::Token);
    recordToken(leftOver->token);

    QVERIFY(m_shop->shop().approve(second.userCode));
    QTRY_COMPARE(account->status(), Status::SignedIn);
    recordToken(stored(Keychain::sessionToken).value());
}

void AccountTest::cancelling()
{
    auto account = makeAccount();
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    account->cancelSignIn();
    QCOMPARE(account->status(), Status::SignedOut);
    const auto polls = m_shop->requests(u"device/token"_s);
    QTest::qWait(50);
    QCOMPARE(m_shop->requests(u"device/token"_s), polls);

    // Cancelling keeps a session that exists.
    const auto token = m_shop->issueToken();
    store(token, Keychain::sessionToken);
    account = makeAccount();
    QCOMPARE(account->status(), Status::SignedIn);
    account->cancelSignIn();
    QCOMPARE(account->status(), Status::SignedIn);
    QCOMPARE(stored(Keychain::sessionToken), token);
}

void AccountTest::offlineSignOutsRevokedAtNextLaunch()
{
    const auto first = m_shop->issueToken();
    const auto second = m_shop->issueToken();
    QUrl base = deadBase();
    std::unique_ptr<Account> account;
    for (const auto &token : { first, second }) {
        store(token, Keychain::sessionToken);
        account = makeAccount([&] { return base; });
        QCOMPARE(account->status(), Status::SignedIn);
        QTest::ignoreMessage(QtInfoMsg,
                             "Sign-out not confirmed yet; will retry at the next launch");
        finish(account->signOut());
        QCOMPARE(account->status(), Status::SignedOut);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
    }
    QCOMPARE(m_signOuts, 2);
    QCOMPARE(stored(Keychain::pendingRevocation), first + u'\n' + second);

    // The next launch, with the shop back.
    base = m_shop->base();
    account = makeAccount([&] { return base; });
    finish(account->revokePending());
    QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
    const APIClient client(m_manager.get(), base);
    for (const auto &token : { first, second }) {
        QCOMPARE(finish(client.library(token, std::nullopt)).failure<APIClient::Failure>(),
                 APIClient::Failure::signedOut());
    }
}

void AccountTest::pendingListParsing()
{
    const auto a = m_shop->issueToken();
    const auto b = m_shop->issueToken();
    store(a + u"\n\n"_s + b + u"\n"_s, Keychain::pendingRevocation);
    auto account = makeAccount();

    // The first revocation fails; the second still goes, and only the first stays pending.
    QVERIFY(m_shop->shop().setFaults(statusFault("sign-out", 503)));
    QTest::ignoreMessage(QtInfoMsg, "Sign-out not confirmed yet; will retry at the next launch");
    finish(account->revokePending());
    QCOMPARE(m_shop->requests(u"sign-out"_s), 2);
    QCOMPARE(stored(Keychain::pendingRevocation), a);

    finish(account->revokePending());
    QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
    QCOMPARE(m_shop->requests(u"sign-out"_s), 3);
}

void AccountTest::forcedSignOut()
{
    auto account = makeAccount();
    // Without a stored token, nothing happens, even mid sign-in.
    account->signIn();
    QTRY_COMPARE(account->status(), Status::Waiting);
    finish(account->signedOutByShop());
    QCOMPARE(account->status(), Status::Waiting);
    QCOMPARE(m_signOuts, 0);
    account->cancelSignIn();

    const auto token = m_shop->issueToken();
    store(token, Keychain::sessionToken);
    account = makeAccount();
    account->setEmail(u"someone@example.com"_s);
    const auto generation = account->generation();
    finish(account->signedOutByShop());
    QCOMPARE(account->status(), Status::SignedOut);
    QCOMPARE(account->email(), QString());
    QVERIFY(account->generation() != generation);
    QCOMPARE(m_signOuts, 1);
    QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
    // The shop refused it already: not queued for revocation.
    QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
    QCOMPARE(m_shop->requests(u"sign-out"_s), 0);
}

QTEST_GUILESS_MAIN(AccountTest)
#include "test_account.moc"
