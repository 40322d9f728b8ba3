#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>

class Account;
class NoticePresenter;
class Shop;

// What the views ask of the session: signing in and out, and checking the shop for new files.
// A failure to sign out is worded on the notice line.
class SessionActions : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool signedIn READ isSignedIn NOTIFY signedInChanged)

public:
    SessionActions(Account *account, Shop *shop, NoticePresenter *notice,
                   QObject *parent = nullptr);

    [[nodiscard]] bool isSignedIn() const;

    Q_INVOKABLE void signIn();
    Q_INVOKABLE void openBrowserAgain();
    Q_INVOKABLE void cancelSignIn();
    Q_INVOKABLE void signOut();
    Q_INVOKABLE void checkForNewFiles();

Q_SIGNALS:
    void signedInChanged();

private:
    static QCoro::Task<> signOut(QPointer<SessionActions> self);

    QPointer<Account> m_account;
    QPointer<Shop> m_shop;
    NoticePresenter *m_notice;
};
