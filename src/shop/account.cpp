#include "account.h"

#include "async_mutex.h"
#include "cancel_token.h"
#include "clock.h"
#include "computer_name.h"
#include "error.h"
#include "keychain.h"
#include "logging.h"

#include <QCoreApplication>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// Bounds that keep the arithmetic and Qt's timers in range whatever the shop sends.
constexpr qint64 longestExpiry = 10LL * 365 * 24 * 3600;
constexpr std::chrono::seconds longestInterval = 24h;

Account::State failed(QString message)
{
    return { .status = Account::Status::Failed, .message = std::move(message) };
}

// When to poll for the token: every interval the shop asked for, 5 s longer after each slow-down,
// until the code expires. The deadline keeps running through suspend.
class PollPace {
public:
    PollPace(const APIClient::DeviceCode &code, std::shared_ptr<Clock> clock)
        : m_clock(std::move(clock))
        , m_interval(code.interval ? std::max(1s, std::chrono::seconds(*code.interval)) : 5s)
        , m_deadline(m_clock->sinceBoot()
                     + std::chrono::seconds(std::min(code.expiresIn, longestExpiry)))
    {
    }

    [[nodiscard]] bool isExpired() const { return m_clock->sinceBoot() >= m_deadline; }
    void slowDown() { m_interval += 5s; }
    // False when cancelled.
    [[nodiscard]] QCoro::Task<bool> wait(std::shared_ptr<CancelToken> cancel) const
    {
        return m_clock->sleep(std::move(cancel), std::min(m_interval, longestInterval));
    }

private:
    std::shared_ptr<Clock> m_clock;
    std::chrono::seconds m_interval;
    std::chrono::nanoseconds m_deadline;
};

QStringList pendingTokens(const std::optional<QString> &stored)
{
    return stored ? stored->split(u'\n', Qt::SkipEmptyParts) : QStringList();
}
} // namespace

QString Account::SignOutFailure::description() const
{
    return QCoreApplication::translate("Account",
                                       "Couldn't sign out: the desktop's secret store is locked or "
                                       "refused access. Unlock it and try again.");
}

Account::Account(std::function<APIClient()> api, Keychain *keychain, QObject *parent)
    : QObject(parent)
    , m_api(std::move(api))
    , m_keychain(keychain)
    , m_clock(std::make_shared<Clock>())
    , m_keychainMutex(std::make_shared<AsyncMutex>())
{
}

Account::~Account()
{
    stopPolling();
}

void Account::setPageOpener(std::function<void(const QUrl &)> open)
{
    m_openPage = std::move(open);
}

void Account::setClock(std::shared_ptr<Clock> clock)
{
    m_clock = std::move(clock);
}

void Account::setOnSignOut(std::function<void()> onSignOut)
{
    m_onSignOut = std::move(onSignOut);
}

QString Account::userCode() const
{
    return m_state.code ? m_state.code->userCode : QString();
}

QUrl Account::verificationURI() const
{
    // Only the shop's own page is passed on: anything else would be a lure shown as ours.
    if (!m_state.code || !m_api().isShopPage(m_state.code->verificationURI))
        return {};
    return m_state.code->verificationURI;
}

void Account::setEmail(const std::optional<QString> &email)
{
    if (m_email == email)
        return;
    m_email = email;
    Q_EMIT emailChanged();
}

void Account::setState(State state)
{
    if (m_state == state)
        return;
    m_state = std::move(state);
    Q_EMIT stateChanged();
}

void Account::stopPolling()
{
    if (m_pollCancel)
        m_pollCancel->cancel();
    m_pollCancel.reset();
    m_polling.reset();
}

void Account::endSession()
{
    m_generation = QUuid::createUuid();
    Q_EMIT generationChanged();
    setEmail(std::nullopt);
    setState({});
    if (m_onSignOut)
        m_onSignOut();
}

QCoro::Task<> Account::load()
{
    return load(this, m_attempt);
}

QCoro::Task<> Account::load(QPointer<Account> self, QUuid attempt)
{
    try {
        const auto token = co_await self->m_keychain->read(Keychain::sessionToken);
        // A sign-in started meanwhile decides the state itself.
        if (token && self && self->m_attempt == attempt && self->status() == Status::SignedOut)
            self->setState({ .status = Status::SignedIn });
    } catch (const Keychain::Failure &failure) {
        // The session may well be there: say so rather than read as signed out.
        qCWarning(lcAccount) << "Couldn't read the session:" << failure.description();
        if (self && self->m_attempt == attempt && self->status() == Status::SignedOut)
            self->setState(failed(failure.description()));
    } catch (const std::exception &error) {
        qCWarning(lcAccount) << "Couldn't read the session:" << describe(error);
    }
    if (self && !self->m_loaded) {
        self->m_loaded = true;
        Q_EMIT self->stateChanged();
    }
}

void Account::signIn()
{
    stopPolling();
    m_attempt = QUuid::createUuid();
    setState({ .status = Status::Requesting });
    m_pollCancel = std::make_shared<CancelToken>();
    const Attempt attempt { this, m_attempt, m_pollCancel };
    m_polling = poll(attempt);
}

bool Account::Attempt::isCurrent() const
{
    return account && !cancel->isCancelled() && account->m_attempt == id;
}

QCoro::Task<> Account::poll(Attempt attempt)
{
    try {
        const auto code = co_await requestCode(attempt);
        if (!code || !attempt.isCurrent())
            co_return;
        QPointer<Account> self = attempt.account;
        self->setState({ .status = Status::Waiting, .code = code });
        self->openVerificationPage();

        PollPace pace(*code, self->m_clock);
        while (!pace.isExpired()) {
            const bool waited = co_await pace.wait(attempt.cancel);
            if (!waited || !attempt.isCurrent())
                co_return;
            const auto outcome = co_await requestToken(attempt, code->deviceCode);
            if (!attempt.isCurrent())
                co_return;
            if (!outcome)
                continue;

            using Outcome = APIClient::TokenPoll::Outcome;
            switch (outcome->outcome) {
            case Outcome::Pending:
                continue;
            case Outcome::SlowDown:
                pace.slowDown();
                continue;
            case Outcome::Denied:
                self->setState(failed(tr("Sign-in was cancelled in the browser.")));
                co_return;
            case Outcome::Expired:
                self->setState(failed(tr("That code expired.")));
                co_return;
            case Outcome::Unknown:
                self->setState(failed(tr("That code didn't work. Start again.")));
                co_return;
            case Outcome::Token:
                co_await adopt(attempt, outcome->token);
                co_return;
            }
        }
        self->setState(failed(tr("That code expired.")));
    } catch (const std::exception &e) {
        qCWarning(lcAccount) << "Sign-in stopped:" << describe(e);
    }
}

QCoro::Task<std::optional<APIClient::DeviceCode>> Account::requestCode(Attempt attempt)
{
    QString error;
    bool notHTTPS = false;
    try {
        const QPointer<Account> self = attempt.account;
        const auto code =
            co_await self->m_api().requestDeviceCode(computerName(), attempt.cancel.get());
        co_return code;
    } catch (const APIClient::Failure &e) {
        error = e.description();
        notHTTPS = e.kind() == APIClient::Failure::Kind::NotHTTPS;
    } catch (const std::exception &e) {
        error = describe(e);
    }
    if (!attempt.isCurrent())
        co_return std::nullopt;
    qCWarning(lcAccount, "Sign-in failed: %s", qUtf8Printable(error));
    // Trying again won't help that one.
    attempt.account->setState(failed(
        notHTTPS ? error : tr("Couldn't reach the shop. Check your connection and try again.")));
    co_return std::nullopt;
}

QCoro::Task<std::optional<APIClient::TokenPoll>> Account::requestToken(Attempt attempt,
                                                                       QString deviceCode)
{
    try {
        const QPointer<Account> self = attempt.account;
        const auto outcome = co_await self->m_api().pollToken(deviceCode, attempt.cancel.get());
        co_return outcome;
    } catch (const std::exception &e) {
        if (attempt.isCurrent())
            qCWarning(lcAccount, "Polling failed, trying again: %s", qUtf8Printable(describe(e)));
    }
    co_return std::nullopt;
}

QCoro::Task<> Account::adopt(Attempt attempt, QString token)
{
    QPointer<Account> self = attempt.account;
    bool saved = false;
    {
        const auto lock = co_await AsyncMutex::lock(self->m_keychainMutex);
        if (!self)
            co_return;
        saved = co_await self->m_keychain->save(token, Keychain::sessionToken);
    }
    if (!self)
        co_return;
    if (!attempt.isCurrent()) {
        // Cancelled while saving: the token must not outlive this attempt.
        if (saved) {
            co_await retireSessionToken(self);
            if (self)
                co_await self->revokePending();
        }
        co_return;
    }
    if (!saved) {
        self->setState(failed(tr("Couldn't save your sign-in on this computer. Try again.")));
        co_return;
    }
    self->m_generation = QUuid::createUuid();
    Q_EMIT self->generationChanged();
    self->setState({ .status = Status::SignedIn });
}

void Account::openVerificationPage()
{
    if (m_state.status != Status::Waiting || !m_state.code)
        return;
    const auto &code = *m_state.code;
    const QUrl page = code.verificationURIComplete.value_or(code.verificationURI);
    if (!m_api().isShopPage(page)) {
        qCWarning(lcAccount) << "Ignored a verification page that isn't the shop's";
        return;
    }
    if (m_openPage)
        m_openPage(page);
}

void Account::cancelSignIn()
{
    if (m_state.status == Status::SignedIn)
        return;
    stopPolling();
    m_attempt = QUuid::createUuid();
    setState({});
}

QCoro::Task<> Account::signOut()
{
    m_attempt = QUuid::createUuid();
    stopPolling();
    return signOut(this);
}

QCoro::Task<> Account::signOut(QPointer<Account> self)
{
    Retired retired;
    try {
        retired = co_await retireSessionToken(self);
    } catch (const Keychain::Failure &failure) {
        // Nothing was queued or removed: the session stays, and the user can try again.
        qCWarning(lcAccount) << "Sign-out failed:" << failure.description();
        throw SignOutFailure();
    }
    if (!self)
        co_return;
    self->endSession();
    co_await self->revokePending();
    // Queued for revocation, so the copy left in the store is of no use to anyone.
    if (retired.kept)
        throw Keychain::Failure();
}

QCoro::Task<Account::Retired> Account::retireSessionToken(QPointer<Account> self)
{
    const auto mutex = self->m_keychainMutex;
    const auto lock = co_await AsyncMutex::lock(mutex);
    if (!self)
        co_return {};
    const auto token = co_await self->m_keychain->read(Keychain::sessionToken);
    if (!token || !self)
        co_return {};
    auto pending = pendingTokens(co_await self->m_keychain->read(Keychain::pendingRevocation));
    if (!self)
        throw Keychain::Failure();
    if (!pending.contains(*token))
        pending.append(*token);
    const bool queued =
        co_await self->m_keychain->save(pending.join(u'\n'), Keychain::pendingRevocation);
    // A token that isn't queued stays where it is: removed, it could never be revoked.
    if (!queued || !self)
        throw Keychain::Failure();
    try {
        co_await self->m_keychain->remove(Keychain::sessionToken);
    } catch (const Keychain::Failure &) {
        co_return { .token = token, .kept = true };
    }
    co_return { .token = token };
}

QCoro::Task<> Account::signedOutByShop()
{
    return signedOutByShop(this);
}

QCoro::Task<> Account::signedOutByShop(QPointer<Account> self)
{
    try {
        {
            const auto mutex = self->m_keychainMutex;
            const auto lock = co_await AsyncMutex::lock(mutex);
            if (!self)
                co_return;
            // The shop has refused the token already: it is not queued for revocation.
            const auto token = co_await self->m_keychain->read(Keychain::sessionToken);
            if (!token || !self)
                co_return;
            co_await self->m_keychain->remove(Keychain::sessionToken);
        }
        if (self) {
            self->endSession();
            Q_EMIT self->endedByShop();
        }
    } catch (const std::exception &e) {
        qCWarning(lcAccount) << "Forced sign-out failed:" << describe(e);
    }
}

QCoro::Task<> Account::revokePending()
{
    return revokePending(this);
}

QCoro::Task<> Account::revokePending(QPointer<Account> self)
{
    try {
        const auto mutex = self->m_keychainMutex;
        QStringList tokens;
        {
            const auto lock = co_await AsyncMutex::lock(mutex);
            if (!self)
                co_return;
            tokens = pendingTokens(co_await self->m_keychain->read(Keychain::pendingRevocation));
        }
        if (tokens.isEmpty())
            co_return;

        QStringList confirmed;
        for (const auto &token : std::as_const(tokens)) {
            if (!self)
                co_return;
            try {
                co_await self->m_api().signOut(token);
                confirmed.append(token);
            } catch (const std::exception &e) {
                qCDebug(lcAccount) << "Revocation failed:" << describe(e);
            }
        }

        const auto lock = co_await AsyncMutex::lock(mutex);
        if (!self)
            co_return;
        // Sign-outs may have queued more tokens meanwhile: only the confirmed ones go.
        auto remaining =
            pendingTokens(co_await self->m_keychain->read(Keychain::pendingRevocation));
        if (!self)
            co_return;
        remaining.removeIf([&](const QString &token) { return confirmed.contains(token); });
        if (remaining.isEmpty()) {
            co_await self->m_keychain->remove(Keychain::pendingRevocation);
        } else {
            co_await self->m_keychain->save(remaining.join(u'\n'), Keychain::pendingRevocation);
            qCInfo(lcAccount) << "Sign-out not confirmed yet; will retry at the next launch";
        }
    } catch (const std::exception &e) {
        qCWarning(lcAccount) << "Revocation failed:" << describe(e);
    }
}
