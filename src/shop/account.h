#pragma once

#include "api_client.h"

#include <QObject>
#include <QUuid>
#include <functional>
#include <memory>

class AsyncMutex;
class CancelToken;
class Clock;
class Keychain;

// Whether this computer is signed in to the shop. Runs the device-code sign-in (the user
// approves this computer in the browser while the account polls), keeps the token in the
// keychain so that the session survives restarts, and signs out, revoking the token at the shop
// and retrying that at later launches until the shop confirms it. Lives on the main thread.
class Account : public QObject {
    Q_OBJECT
    Q_PROPERTY(Status status READ status NOTIFY stateChanged)
    Q_PROPERTY(QString userCode READ userCode NOTIFY stateChanged)
    Q_PROPERTY(QUrl verificationURI READ verificationURI NOTIFY stateChanged)
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)
    Q_PROPERTY(QString email READ email NOTIFY emailChanged)
    Q_PROPERTY(QUuid generation READ generation NOTIFY generationChanged)

public:
    enum class Status { SignedOut, Requesting, Waiting, Failed, SignedIn };
    Q_ENUM(Status)

    // A sign-out that the secret store refused.
    class SignOutFailure : public Error {
    public:
        [[nodiscard]] QString description() const override;
    };

    // The status with its payload: the code being waited for, or the sentence of a failure.
    struct State {
        Status status = Status::SignedOut;
        std::optional<APIClient::DeviceCode> code;
        QString message;

        bool operator==(const State &) const = default;
    };

    // api is asked for a client each time a request is made. The keychain outlives the account.
    Account(std::function<APIClient()> api, Keychain *keychain, QObject *parent = nullptr);
    ~Account() override;

    // How the verification page reaches the user's browser; nothing is opened without one.
    void setPageOpener(std::function<void(const QUrl &)> open);
    void setClock(std::shared_ptr<Clock> clock);
    // Called after every sign-out, asked for or forced by the shop.
    void setOnSignOut(std::function<void()> onSignOut);

    [[nodiscard]] const State &state() const { return m_state; }
    [[nodiscard]] Status status() const { return m_state.status; }
    [[nodiscard]] QString userCode() const;
    // Empty unless the page is the shop's own.
    [[nodiscard]] QUrl verificationURI() const;
    [[nodiscard]] QString message() const { return m_state.message; }
    // Empty when not known.
    [[nodiscard]] QString email() const { return m_email.value_or(QString()); }
    void setEmail(const std::optional<QString> &email);
    // Replaced whenever a session starts or ends, so observers can tell one from the next.
    [[nodiscard]] QUuid generation() const { return m_generation; }

    // Signed in when the keychain holds a session token; no request checks it. Until this is
    // done the account reads as signed out but not known; failed when the secret store refuses.
    QCoro::Task<> load();
    // Whether the state says what the user did: the stored session has been read, or the user
    // has started to sign in since. Before that, a view shows neither signed in nor out.
    [[nodiscard]] bool isKnown() const { return m_loaded || m_state.status != Status::SignedOut; }

    void signIn();
    // The page of the code being waited for, when it is the shop's.
    void openVerificationPage();
    void cancelSignIn();
    // Forgets the session here and revokes its token at the shop. Throws SignOutFailure, still
    // signed in, when the secret store refuses to give up the token for revocation, and
    // Keychain::Failure, signed out, when only removing the revoked token failed.
    QCoro::Task<> signOut();
    // The shop refused the stored token: forget it without revoking it.
    QCoro::Task<> signedOutByShop();
    // Sends the revocations of earlier sign-outs that the shop has not confirmed yet.
    QCoro::Task<> revokePending();

Q_SIGNALS:
    void stateChanged();
    void emailChanged();
    void generationChanged();
    // The shop refused the session, so the user was signed out without asking.
    void endedByShop();

private:
    // One sign-in: the one the user waits for while no newer one started and it isn't cancelled.
    struct Attempt {
        QPointer<Account> account;
        QUuid id;
        std::shared_ptr<CancelToken> cancel;

        [[nodiscard]] bool isCurrent() const;
    };

    static QCoro::Task<> load(QPointer<Account> self, QUuid attempt);
    // The device-code sign-in: the code, then polls for the token until it comes or the code
    // expires.
    static QCoro::Task<> poll(Attempt attempt);
    // None when the shop couldn't give one: the state then says so.
    static QCoro::Task<std::optional<APIClient::DeviceCode>> requestCode(Attempt attempt);
    // None when the poll failed on the way: the next one tries again.
    static QCoro::Task<std::optional<APIClient::TokenPoll>> requestToken(Attempt attempt,
                                                                         QString deviceCode);
    // Stores the token and signs in; one that comes too late is revoked.
    static QCoro::Task<> adopt(Attempt attempt, QString token);
    static QCoro::Task<> signOut(QPointer<Account> self);
    static QCoro::Task<> signedOutByShop(QPointer<Account> self);
    static QCoro::Task<> revokePending(QPointer<Account> self);

    struct Retired {
        std::optional<QString> token;
        bool kept = false; // queued, but the store refused to remove it
    };
    // Moves the stored session token to the pending list. Throws Keychain::Failure, changing
    // nothing, when it cannot be read or queued.
    static QCoro::Task<Retired> retireSessionToken(QPointer<Account> self);

    void setState(State state);
    void stopPolling();
    void endSession();

    std::function<APIClient()> m_api;
    Keychain *m_keychain;
    std::function<void(const QUrl &)> m_openPage;
    std::function<void()> m_onSignOut;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<AsyncMutex> m_keychainMutex;

    State m_state;
    bool m_loaded = false;
    std::optional<QString> m_email;
    QUuid m_attempt = QUuid::createUuid();
    QUuid m_generation = QUuid::createUuid();
    std::shared_ptr<CancelToken> m_pollCancel;
    std::optional<QCoro::Task<>> m_polling;
};
