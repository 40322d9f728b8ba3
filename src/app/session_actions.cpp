#include "session_actions.h"

#include "account.h"
#include "error.h"
#include "logging.h"
#include "notice_presenter.h"
#include "shop.h"

SessionActions::SessionActions(Account *account, Shop *shop, NoticePresenter *notice,
                               QObject *parent)
    : QObject(parent)
    , m_account(account)
    , m_shop(shop)
    , m_notice(notice)
{
    connect(account, &Account::stateChanged, this, &SessionActions::signedInChanged);
}

bool SessionActions::isSignedIn() const
{
    return m_account && m_account->status() == Account::Status::SignedIn;
}

void SessionActions::signIn()
{
    m_account->signIn();
}

void SessionActions::openBrowserAgain()
{
    m_account->openVerificationPage();
}

void SessionActions::cancelSignIn()
{
    m_account->cancelSignIn();
}

void SessionActions::signOut()
{
    signOut(this);
}

QCoro::Task<> SessionActions::signOut(QPointer<SessionActions> self)
{
    try {
        co_await self->m_account->signOut();
    } catch (const std::exception &error) {
        qCWarning(lcApp) << "Signing out failed:" << describe(error);
        if (self)
            self->m_notice->showFailure(describe(error));
    }
}

void SessionActions::checkForNewFiles()
{
    m_shop->refresh();
}
