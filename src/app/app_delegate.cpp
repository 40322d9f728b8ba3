#include "app_delegate.h"

#include "account.h"
#include "application_folder.h"
#include "defaults.h"
#include "keychain.h"
#include "login_item.h"
#include "network_access_manager.h"
#include "notice_presenter.h"
#include "status_item_controller.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

using namespace Qt::Literals::StringLiterals;

Q_LOGGING_CATEGORY(lcApp, "app.quennet.Quennet.App")

namespace {
// The one process-wide slot: weak, so nothing keeps the delegate alive through it.
QPointer<AppDelegate> runningDelegate;
} // namespace

AppDelegate::AppDelegate(Options options, QObject *parent)
    : QObject(parent)
    , m_options(std::move(options))
    , m_defaults(std::make_unique<Defaults>())
{
    runningDelegate = this;
}

AppDelegate::~AppDelegate()
{
    // Windows go before the engine that made them, and the panel with its controller.
    delete m_main;
    delete m_settings;
    delete m_statusItem;
}

AppDelegate *AppDelegate::current()
{
    return runningDelegate;
}

void AppDelegate::start()
{
    // The session: its keychain, the shop's network manager and the account over them.
    m_keychain = new Keychain(applicationFolder(), this);
    m_network = new NetworkAccessManager(m_defaults->shopCertificates(), this);
    const QUrl base = m_defaults->shopBaseURL();
    QPointer<NetworkAccessManager> network = m_network;
    m_account = new Account([network, base] { return APIClient(network, base); }, m_keychain,
                            this);
    m_account->setPageOpener([](const QUrl &page) { QDesktopServices::openUrl(page); });
    connect(m_account, &Account::stateChanged, this, &AppDelegate::accountChanged);
    restoreSession(this);

    m_loginItem = new LoginItem(m_options.program, {}, this);
    m_notice = new NoticePresenter(this);

    // One engine for every view; each view is made the first time it shows.
    m_engine = new QQmlEngine(this);
    const QVariantMap roots{{u"app"_s, QVariant::fromValue(this)}};
    m_statusItem = new StatusItemController(
        {.openMain = [this] { openMain(); },
         .openSettings = [this] { openSettings(); },
         .quit = [this] { quit(); }},
        m_engine, roots);

    if (!m_options.atLogin) {
        openMain();
    }
}

QCoro::Task<> AppDelegate::restoreSession(QPointer<AppDelegate> self)
{
    try {
        co_await self->m_account->load();
        if (!self) {
            co_return;
        }
        co_await self->m_account->revokePending();
    } catch (const std::exception &error) {
        qCWarning(lcApp) << "Restoring the session failed:" << error.what();
    }
}

void AppDelegate::accountChanged()
{
    const bool signedIn = isSignedIn();
    if (signedIn && !m_wasSignedIn) {
        // A new session: the library is worth fetching at once.
        checkForNewFiles();
    }
    m_wasSignedIn = signedIn;
    Q_EMIT libraryStateChanged();
}

bool AppDelegate::isSignedIn() const
{
    return m_account && m_account->status() == Account::Status::SignedIn;
}

QString AppDelegate::libraryState() const
{
    if (!isSignedIn()) {
        return u"signedOut"_s;
    }
    return u"loading"_s;
}

QString AppDelegate::version()
{
    return QStringLiteral(QUENNET_VERSION);
}

QVariantList AppDelegate::acknowledgements()
{
    const auto entry = [](const QString &name, const QString &licence, const QString &use) {
        return QVariantMap{{u"name"_s, name}, {u"licence"_s, licence}, {u"use"_s, use}};
    };
    return {
        entry(u"Qt 6"_s, u"LGPL-3.0"_s, u"windows, views, networking and D-Bus"_s),
        entry(u"QCoro"_s, u"MIT"_s, u"coroutines over Qt"_s),
        entry(u"QtKeychain"_s, u"BSD-3-Clause"_s, u"the desktop's secret store"_s),
        entry(u"libheif"_s, u"LGPL-3.0"_s, u"reading HEIC wallpapers"_s),
        entry(u"libde265"_s, u"LGPL-3.0"_s, u"decoding HEVC pictures"_s),
        entry(u"libplist"_s, u"LGPL-2.1"_s, u"wallpaper metadata"_s),
        entry(u"OpenSSL"_s, u"Apache-2.0"_s, u"checking downloads (SHA-256)"_s),
        entry(u"GLib"_s, u"LGPL-2.1"_s, u"desktop settings (GSettings)"_s),
    };
}

void AppDelegate::setSettingsPane(const QString &pane)
{
    if (pane != m_settingsPane) {
        m_settingsPane = pane;
        Q_EMIT settingsPaneChanged();
    }
}

QQuickWindow *AppDelegate::window(QPointer<QQuickWindow> &slot, const QString &view)
{
    if (slot) {
        return slot;
    }
    QQmlComponent component(m_engine, QUrl(u"qrc:/qt/qml/Quennet/qml/"_s + view + u".qml"_s));
    QObject *made = component.createWithInitialProperties({{u"app"_s, QVariant::fromValue(this)}});
    slot = qobject_cast<QQuickWindow *>(made);
    if (!slot) {
        qCCritical(lcApp).noquote() << "Couldn't load" << view << component.errorString();
        delete made;
    }
    return slot;
}

void AppDelegate::openMain()
{
    if (QQuickWindow *main = window(m_main, u"MainWindow"_s)) {
        main->show();
        main->raise();
        main->requestActivate();
    }
}

void AppDelegate::openSettings(const QString &pane)
{
    if (!pane.isEmpty()) {
        setSettingsPane(pane);
    }
    if (QQuickWindow *settings = window(m_settings, u"SettingsWindow"_s)) {
        settings->show();
        settings->raise();
        settings->requestActivate();
    }
}

void AppDelegate::closePanel()
{
    m_statusItem->closePanel();
}

void AppDelegate::checkForNewFiles()
{
    // The library store refreshes here once it is part of the application.
}

void AppDelegate::signIn()
{
    m_account->signIn();
}

void AppDelegate::openBrowserAgain()
{
    m_account->openVerificationPage();
}

void AppDelegate::cancelSignIn()
{
    m_account->cancelSignIn();
}

void AppDelegate::signOut()
{
    signOut(this);
}

QCoro::Task<> AppDelegate::signOut(QPointer<AppDelegate> self)
{
    try {
        co_await self->m_account->signOut();
    } catch (const std::exception &error) {
        qCWarning(lcApp) << "Signing out failed:" << error.what();
    }
}

void AppDelegate::quit()
{
    QApplication::quit();
}

bool AppDelegate::selfTest()
{
    bool loaded = m_statusItem->preparePanel();
    for (const auto &[slot, view] : {std::pair{&m_main, u"MainWindow"_s},
                                     std::pair{&m_settings, u"SettingsWindow"_s}}) {
        loaded = window(*slot, view) && loaded;
    }
    return loaded;
}
