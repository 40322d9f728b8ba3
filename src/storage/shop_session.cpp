#include "shop_session.h"

#include "account.h"
#include "keychain.h"
#include "logging.h"

namespace {
// Started by the store, awaited by no one: it words its own failures.
QCoro::Task<> endSession(QCoro::Task<> ending)
{
    try {
        co_await std::move(ending);
    } catch (const std::exception &error) {
        qCWarning(lcShop) << "Couldn't end the session:" << error.what();
    }
}
} // namespace

ShopSession::ShopSession(Account *account, Keychain *keychain)
    : m_account(account)
    , m_keychain(keychain)
{
}

QCoro::Task<std::optional<QString>> ShopSession::token() const
{
    const QPointer<Account> account = m_account;
    if (!m_keychain)
        co_return std::nullopt;
    const auto token = co_await m_keychain->read(QString(Keychain::sessionToken));
    if (!token && account && account->status() == Account::Status::SignedIn) {
        qCWarning(lcShop) << "The stored session is gone: signing out";
        endSession(account->signOut());
    }
    co_return token;
}

void ShopSession::rejected() const
{
    if (m_account)
        endSession(m_account->signedOutByShop());
}

void ShopSession::setEmail(const QString &email) const
{
    if (m_account && m_account->status() == Account::Status::SignedIn)
        m_account->setEmail(email);
}
