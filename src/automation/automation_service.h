#pragma once

#include "wallpaper_entity.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QPointer>
#include <QVariantMap>
#include <optional>

class Account;
class FocusFilter;
class Intents;
class Shop;

// Quennet on the session bus: the object /app/quennet/Quennet with the interfaces
// app.quennet.Quennet.Automation and app.quennet.Quennet.Session (data/dbus/ holds their
// introspection, from which the adaptors are generated). It checks and converts the callers'
// arguments, hands the work to Intents, Account and Shop, and answers each call with its result
// or with an error named app.quennet.Quennet.Error.* whose message is the failure's sentence.
//
// It is put on the bus before the bus name is taken, so that a call which starts Quennet finds
// it; until attach() hands it the objects it works with, every call answers NotReady.
class AutomationService
    : public QObject
    , protected QDBusContext {
    Q_OBJECT
    // Read by the Session adaptor.
    Q_PROPERTY(QString State READ state)
    Q_PROPERTY(QString UserCode READ userCode)
    Q_PROPERTY(QString VerificationURI READ verificationURI)
    Q_PROPERTY(QString Message READ signInMessage)
    Q_PROPERTY(QString LibraryState READ libraryState)

public:
    static constexpr QLatin1StringView serviceName { "app.quennet.Quennet" };
    static constexpr QLatin1StringView objectPath { "/app/quennet/Quennet" };
    static constexpr QLatin1StringView automationInterface { "app.quennet.Quennet.Automation" };
    static constexpr QLatin1StringView sessionInterface { "app.quennet.Quennet.Session" };

    explicit AutomationService(QObject *parent = nullptr);
    ~AutomationService() override;

    // Puts the object on the bus (not the name: the single-instance guard owns that). False when
    // there is no bus or the path is taken.
    bool registerOn(QDBusConnection bus);
    void attach(Intents *intents, Account *account, Shop *shop, FocusFilter *focusFilter);

    // The D-Bus error of a failure: its name and its sentence.
    struct DBusError {
        QString name;
        QString message;
    };
    [[nodiscard]] static DBusError dbusError(std::exception_ptr failure);

    // app.quennet.Quennet.Automation, called by its adaptor.
    void ShuffleWallpaper();
    void SetWallpaper(const QString &wallpaper, const QString &edition);
    QString GetWallpaper(QString &name, QString &packName);
    void SetShuffle(bool isOn, const QString &interval, const QString &source);
    void FavouriteWallpaper();
    QList<WallpaperEntity> FindWallpapers(const QString &text);
    void SetFocusFilter(const QString &wallpaper, const QString &edition);

    // app.quennet.Quennet.Session, called by its adaptor.
    void SignIn();
    void CancelSignIn();
    void SignOut();
    void Refresh();
    [[nodiscard]] QString state() const;
    [[nodiscard]] QString userCode() const;
    [[nodiscard]] QString verificationURI() const;
    [[nodiscard]] QString signInMessage() const;
    [[nodiscard]] QString libraryState() const;

private:
    // Both throw NotReady until attach().
    void requireAttached() const;
    [[nodiscard]] Intents *intents() const;
    // Answers the current call with the failure in flight.
    void fail();
    // Answers the current call when the work ends.
    void answerLater(QCoro::Task<> work);
    static QCoro::Task<> answer(QDBusConnection bus, QDBusMessage call, QCoro::Task<> work);
    static QCoro::Task<> refresh(QPointer<Shop> shop);
    // Announces the Session properties that changed since the last announcement.
    void announceSession();
    [[nodiscard]] QVariantMap sessionProperties() const;

    std::optional<QDBusConnection> m_bus;
    QPointer<Intents> m_intents;
    QPointer<Account> m_account;
    QPointer<Shop> m_shop;
    QPointer<FocusFilter> m_focusFilter;
    QVariantMap m_announced;
};
