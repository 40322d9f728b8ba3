#include "library_status.h"

#include "account.h"
#include "shop.h"

LibraryStatus::LibraryStatus(Account *account, Shop *shop, QObject *parent)
    : QObject(parent)
    , m_account(account)
    , m_shop(shop)
{
    connect(account, &Account::stateChanged, this, &LibraryStatus::changed);
    connect(shop, &Shop::stateChanged, this, &LibraryStatus::changed);
}

LibraryStatus::State LibraryStatus::state() const
{
    // Until the secret store answers, a sign-in sheet would only flash.
    if (!m_account || !m_shop || !m_account->isKnown())
        return State::Loading;
    if (m_account->status() != Account::Status::SignedIn)
        return State::SignedOut;
    switch (m_shop->status()) {
    case Shop::Status::Ready:
        return State::Ready;
    case Shop::Status::Failed:
        // A shop that answered wrongly is not a connection to check: its own sentence says why.
        return m_shop->isUnreachable() ? State::Unreachable : State::Failed;
    case Shop::Status::Loading:
        break;
    }
    return State::Loading;
}

QString LibraryStatus::message() const
{
    return state() == State::Failed ? m_shop->stateMessage() : QString();
}
