#pragma once

#include <QCoroTask>
#include <QPointer>
#include <optional>

class Account;
class Keychain;

// The store's side of the session: the token, read from the keychain before each shop request
// (there is no copy in memory), and what follows when the shop refuses it or it has vanished.
class ShopSession {
public:
    ShopSession(Account *account, Keychain *keychain);

    // None when signed out. A token that vanished while the account still reads as signed in
    // ends the session; a secret store that refuses (Keychain::Failure) ends nothing.
    [[nodiscard]] QCoro::Task<std::optional<QString>> token() const;
    // The shop answered 401 to the stored token.
    void rejected() const;
    // The address the library reply names, for the account settings.
    void setEmail(const QString &email) const;

private:
    QPointer<Account> m_account;
    QPointer<Keychain> m_keychain;
};
