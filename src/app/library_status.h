#pragma once

#include <QObject>
#include <QPointer>

class Account;
class Shop;

// Which of the windows' states shows instead of the packs, from the session and the store, and
// the store's own sentence when it failed.
class LibraryStatus : public QObject {
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    enum class State {
        Loading, // the secret store or the shop has not answered yet
        SignedOut,
        Ready,
        Unreachable, // nothing to show, and the shop could not be reached
        Failed, // nothing to show, for what the shop answered: message says what
    };
    Q_ENUM(State)

    LibraryStatus(Account *account, Shop *shop, QObject *parent = nullptr);

    [[nodiscard]] State state() const;
    [[nodiscard]] QString message() const;

Q_SIGNALS:
    void changed();

private:
    QPointer<Account> m_account;
    QPointer<Shop> m_shop;
};
