#include "account.h"
#include "keychain.h"
#include "network_access_manager.h"
#include "test_support.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = Account::Status;
using Failure = APIClient::Failure;

namespace {
const auto notConfirmed = "Sign-out not confirmed yet; will retry at the next launch";
using Sleeps = QList<std::chrono::milliseconds>;
} // namespace

// Sign-in, session and sign-out against the development shop, on a test clock that moves the
// shop's clock along. Runs with the secret service and again with the private file.
class AccountTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
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
        m_clock->onSleep = [this](std::chrono::milliseconds slept) {
            m_shop->shop().advanceClock(std::chrono::duration_cast<std::chrono::seconds>(slept));
        };
        m_opened.clear();
        m_signOuts = 0;
    }

    void cleanup()
    {
        // Cancelled tasks end once their aborted replies finish; a manager destroyed first would
        // take the replies along and leave the tasks waiting for ever.
        if (m_manager)
            QTRY_VERIFY(m_manager->findChildren<QNetworkReply *>().isEmpty());
    }

    void signInThroughTheApprovalPage()
    {
        auto account = makeAccount();
        QCOMPARE(account->status(), Status::SignedOut);
        const auto signedOutGeneration = account->generation();
        account->signIn();
        QTRY_COMPARE(account->status(), Status::Waiting);
        QCOMPARE(m_opened, QList { account->state().code->verificationURIComplete.value() });
        QVERIFY(m_shop->shop().approve(account->userCode()));
        QTRY_COMPARE(account->status(), Status::SignedIn);
        QVERIFY(account->generation() != signedOutGeneration);
        const auto token = stored(Keychain::sessionToken).value();
        recordToken(token);

        // A restart: signed in from the keychain alone.
        account = makeAccount();
        QCOMPARE(account->status(), Status::SignedIn);
        // Its packs go with the session (test_shop_library).
        finish(account->signOut());
        QCOMPARE(account->status(), Status::SignedOut);
        QCOMPARE(m_signOuts, 1);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
        QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
        const APIClient client(m_manager.get(), m_shop->baseUrl());
        QCOMPARE(finish(client.library(token, std::nullopt)).failure<Failure>(),
                 Failure::signedOut());
    }

    void signInEndings_data()
    {
        QTest::addColumn<bool>("fromTheStart"); // else from when the code shows
        QTest::addColumn<QJsonObject>("faults");
        QTest::addColumn<bool>("approve"); // then
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("logged");

        QTest::newRow("no device code")
            << true << statusFault("device/code", 503, "maintenance") << false
            << u"Couldn't reach the shop. Check your connection and try again."_s
            << u"Sign-in failed: The shop replied 503 (maintenance)."_s;
        QTest::newRow("denied in the browser")
            << false << statusFault("device/token", 400, "access_denied") << false
            << u"Sign-in was cancelled in the browser."_s << QString();
        // Only logged; but that spent the code, so the next poll fails as an unknown error does.
        QTest::newRow("a token reply that doesn't decode")
            << false << QJsonObject { { u"malformed"_s, QJsonArray { u"device/token"_s } } } << true
            << u"That code didn't work. Start again."_s
            << u"Polling failed, trying again: The shop sent something the app didn't understand."_s;
    }

    void signInEndings()
    {
        QFETCH(bool, fromTheStart);
        QFETCH(QJsonObject, faults);
        QFETCH(bool, approve);
        QFETCH(QString, message);
        QFETCH(QString, logged);

        auto account = makeAccount();
        if (!logged.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, qPrintable(logged));
        QVERIFY(!fromTheStart || m_shop->shop().setFaults(faults));
        account->signIn();
        if (!fromTheStart) {
            QTRY_COMPARE(account->status(), Status::Waiting);
            // The event loop does not run between these two: no poll comes in between.
            QVERIFY(m_shop->shop().setFaults(faults));
            QVERIFY(!approve || m_shop->shop().approve(account->userCode()));
        }
        QTRY_COMPARE(account->status(), Status::Failed);
        QCOMPARE(account->message(), message);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
    }

    void pollIntervals_data()
    {
        QTest::addColumn<int>("interval");
        QTest::addColumn<QJsonObject>("faults");
        QTest::addColumn<Sleeps>("sleeps");

        QTest::newRow("two slow-downs on 5")
            << 5 << statusFault("device/token", 400, "slow_down", 2)
            << Sleeps { 5s, 10s, 15s, 15s };
        QTest::newRow("429 on 0, which is every second")
            << 0 << statusFault("device/token", 429) << Sleeps { 1s, 6s, 6s };
    }

    void pollIntervals()
    {
        QFETCH(int, interval);
        QFETCH(QJsonObject, faults);
        QFETCH(Sleeps, sleeps);

        startShop({ .pollInterval = interval });
        QVERIFY(m_shop->shop().setFaults(faults));
        auto account = makeAccount();
        account->signIn();
        QTRY_VERIFY(m_clock->sleeps().size() >= sleeps.size());
        account->cancelSignIn();
        QCOMPARE(m_clock->sleeps().mid(0, sleeps.size()), sleeps);
    }

    void defaultIntervalAndDeadline()
    {
        // Unlike the shop, the stand-in sends no interval, a page elsewhere, a null complete page
        // and a field no build knows, then "pending".
        StandInServer server(m_shopState.path());
        const QJsonObject code { { u"device_code"_s, u"dc"_s },
                                 { u"user_code"_s, u"WXYZ"_s },
                                 { u"verification_uri"_s, u"https://shop.example/activate"_s },
                                 { u"verification_uri_complete"_s, QJsonValue::Null },
                                 { u"expires_in"_s, 12 },
                                 { u"unknown"_s, u"ignored"_s } };
        server.enqueue({ .body = QJsonDocument(code).toJson() });
        for (int i = 0; i < 3; ++i)
            server.enqueue({ .status = 400, .body = R"({"error": "authorization_pending"})" });
        QTest::ignoreMessage(QtWarningMsg, "Ignored a verification page that isn't the shop's");
        auto account = makeAccount([&] { return server.base(); });
        QStringList codes;
        QList<QUrl> pages;
        connect(account.get(), &Account::stateChanged, this, [&] {
            codes.append(account->userCode());
            pages.append(account->verificationURI());
        });
        account->signIn();
        QTRY_COMPARE(account->status(), Status::Failed);
        QCOMPARE(account->message(), u"That code expired."_s);
        QCOMPARE(m_opened, QList<QUrl>());
        // Nor is it passed on to be shown.
        QVERIFY(codes.contains(u"WXYZ"_s));
        QCOMPARE(pages, QList<QUrl>(pages.size()));
        // Polls at 5, 10 and 15 s; the next round finds the 12 s deadline passed.
        QCOMPARE(m_clock->sleeps(), (Sleeps { 5s, 5s, 5s }));
        QCOMPARE(server.requests().size(), 4);
    }

    void replacedAttemptChangesNothing()
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
        const auto sleeps = m_clock->sleeps().size();
        QTRY_VERIFY(m_clock->sleeps().size() > sleeps + 3);
        QCOMPARE(account->state().code, second);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);

        // Nobody took the first code's token: the replaced attempt stopped polling.
        const APIClient client(m_manager.get(), m_shop->baseUrl());
        const auto leftOver = finish(client.pollToken(first.deviceCode)).value.value();
        QCOMPARE(leftOver.outcome, APIClient::TokenPoll::Outcome::Token);
        recordToken(leftOver.token);
        account->cancelSignIn();
    }

    void offlineSignOutsRevokedAtNextLaunch()
    {
        const auto first = m_shop->issueToken();
        const auto second = m_shop->issueToken();
        QUrl base = withClosedPort(m_shop->baseUrl());
        for (const auto &token : { first, second }) {
            store(token, Keychain::sessionToken);
            const auto account = makeAccount([&] { return base; });
            QTest::ignoreMessage(QtInfoMsg, notConfirmed);
            finish(account->signOut());
            QCOMPARE(account->status(), Status::SignedOut);
        }
        QCOMPARE(stored(Keychain::pendingRevocation), first + u'\n' + second);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);

        // The next launch, with the shop back: the first revocation fails, the second still
        // goes, and only the first stays. Blank lines, as an edited item may have, are skipped.
        store(first + u"\n\n"_s + second + u"\n"_s, Keychain::pendingRevocation);
        base = m_shop->baseUrl();
        QVERIFY(m_shop->shop().setFaults(statusFault("sign-out", 503)));
        QTest::ignoreMessage(QtInfoMsg, notConfirmed);
        finish(makeAccount([&] { return base; })->revokePending());
        QCOMPARE(m_shop->requests(u"sign-out"_s), 2);
        QCOMPARE(stored(Keychain::pendingRevocation), first);
        finish(makeAccount([&] { return base; })->revokePending());
        QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
        const APIClient client(m_manager.get(), base);
        for (const auto &token : { first, second })
            QCOMPARE(finish(client.library(token, std::nullopt)).failure<Failure>(),
                     Failure::signedOut());
    }

    void sessionKeptOrDropped()
    {
        // Cancelling keeps a session that exists.
        store(m_shop->issueToken(), Keychain::sessionToken);
        auto account = makeAccount();
        QSignalSpy endedByShop(account.get(), &Account::endedByShop);
        account->setEmail(u"someone@example.com"_s);
        account->cancelSignIn();
        QCOMPARE(account->status(), Status::SignedIn);

        // The shop refused the token: forgotten, and not queued for revocation.
        finish(account->signedOutByShop());
        QCOMPARE(account->status(), Status::SignedOut);
        QCOMPARE(account->email(), QString());
        QCOMPARE(m_signOuts, 1);
        QCOMPARE(stored(Keychain::sessionToken), std::nullopt);
        QCOMPARE(stored(Keychain::pendingRevocation), std::nullopt);
        QCOMPARE(endedByShop.size(), 1);

        // Without a stored token, nothing happens, even mid sign-in.
        account->signIn();
        QTRY_COMPARE(account->status(), Status::Waiting);
        finish(account->signedOutByShop());
        QCOMPARE(account->status(), Status::Waiting);
        QCOMPARE(m_signOuts, 1);
        account->cancelSignIn();
        QCOMPARE(m_shop->requests(u"sign-out"_s), 0);
        QCOMPARE(endedByShop.size(), 1);
    }

    // Last: it leaves the secret store locked.
    void lockedStoreKeepsTheSession()
    {
        if (qEnvironmentVariable("QUENNET_SESSION") != "keyring"_L1)
            QSKIP("needs a secret store");
        const auto token = m_shop->issueToken();
        store(token, Keychain::sessionToken);
        auto account = makeAccount();
        QCOMPARE(account->status(), Status::SignedIn);

        // Locked, and no display to ask for the password on.
        QVERIFY(lockSecretStore());

        // A sign-out that cannot take the token says so, and leaves the session to try again.
        const auto signedOut = finish(account->signOut());
        QVERIFY(signedOut.failure<Account::SignOutFailure>());
        QCOMPARE(account->status(), Status::SignedIn);
        QCOMPARE(m_signOuts, 0);
        QCOMPARE(m_shop->requests(u"sign-out"_s), 0);

        // After a restart the store still refuses: a failure, not signed out.
        account = makeAccount();
        QCOMPARE(account->status(), Status::Failed);
        QCOMPARE(account->message(), Keychain::Failure().description());
        QCOMPARE(m_shop->requests(u"sign-out"_s), 0);
    }

private:
    void startShop(DevShop::Options options)
    {
        cleanup();
        // Connections kept alive would hold the old shop's threads until they time out.
        m_manager.reset();
        m_shop.emplace(QList<ContentPack>(), options, m_shopState.path());
        QVERIFY(m_shop->isRunning());
        m_manager =
            std::make_unique<NetworkAccessManager>(m_shop->shop().caPath(), m_shop->baseUrl());
    }

    // An account over the test's keychain folder; api() talks to base().
    std::unique_ptr<Account> makeAccount(std::function<QUrl()> base = {})
    {
        if (!base)
            base = [this] { return m_shop->baseUrl(); };
        auto account = std::make_unique<Account>(
            [this, base] { return APIClient(m_manager.get(), base()); }, m_keychain.get());
        account->setClock(m_clock);
        account->setPageOpener([this](const QUrl &page) { m_opened.append(page); });
        account->setOnSignOut([this] { ++m_signOuts; });
        finish(account->load());
        return account;
    }

    [[nodiscard]] std::optional<QString> stored(QLatin1StringView item)
    {
        return *finish(m_keychain->read(item)).value;
    }

    void store(const QString &value, QLatin1StringView item)
    {
        QVERIFY(*finish(m_keychain->save(value, item)).value);
    }

    QTemporaryDir m_shopState; // one certificate authority for every shop of the run
    std::optional<ContentShop> m_shop;
    std::unique_ptr<NetworkAccessManager> m_manager;
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Keychain> m_keychain;
    std::shared_ptr<TestClock> m_clock;
    QList<QUrl> m_opened;
    int m_signOuts = 0;
};

QTEST_GUILESS_MAIN(AccountTest)
#include "test_account.moc"
