#include "app_delegate.h"

#include "account.h"
#include "application_folder.h"
#include "art_cache.h"
#include "automation_service.h"
#include "clock.h"
#include "colour_scheme.h"
#include "defaults.h"
#include "desktop_application.h"
#include "desktop_backends.h"
#include "desktop_notifications.h"
#include "desktop_palette.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "do_not_disturb_watchers.h"
#include "download_thread.h"
#include "event_sounds.h"
#include "favourites.h"
#include "feedback_sounds.h"
#include "focus_filter.h"
#include "focus_wallpaper.h"
#include "following.h"
#include "greeting.h"
#include "heic_module.h"
#include "helper_process.h"
#include "intents.h"
#include "kde_colours.h"
#include "keychain.h"
#include "library_status.h"
#include "logging.h"
#include "login_item.h"
#include "network_access_manager.h"
#include "notice_presenter.h"
#include "reconciler.h"
#include "session_actions.h"
#include "shop.h"
#include "shop_shuffle_store.h"
#include "shuffle.h"
#include "shuffle_view.h"
#include "sleep_watcher.h"
#include "spaces_helper.h"
#include "status_item_controller.h"
#include "tray_glyph.h"
#include "views.h"
#include "wallpaper_actions.h"
#include "wallpaper_requests.h"
#include "wallpaper_setter.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWindow>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
bool onPlasma()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP")
        .split(u':', Qt::SkipEmptyParts)
        .contains(u"KDE"_s, Qt::CaseInsensitive);
}
} // namespace

AppDelegate::AppDelegate(Options options, QObject *parent)
    : QObject(parent)
    , m_options(std::move(options))
    , m_defaults(std::make_unique<Defaults>())
{
    // On the bus before main() takes the bus name, so that a call that starts Quennet finds the
    // object; it answers "Still starting" until start() hands it the rest.
    m_automation = new AutomationService(this);
    new DesktopApplication(m_automation,
                           { .openMain = [this] { openMain(); },
                             .openSettings = [this] { openSettings(); },
                             .shuffleNow =
                                 [this] {
                                     if (m_shuffleView)
                                         m_shuffleView->shuffleNow();
                                 } });
    m_automation->registerOn(QDBusConnection::sessionBus());
    m_views = new ViewEngine(
        m_options.viewsIdle, m_options.makeViews, [this] { return viewShown(); },
        [this] { releaseViews(); }, this);
}

AppDelegate::~AppDelegate()
{
    // Windows go before the engine that made them, and the panel with its controller. A window
    // that hides as it goes tells no one: half destroyed, it cannot be asked whether it shows.
    for (QWindow *window : windows()) {
        window->disconnect(m_views);
        delete window;
    }
    delete m_statusItem;
}

void AppDelegate::start()
{
    // The tray icon first, since it is all a start at login shows. Nothing answers it before
    // start() returns, so the rest is in place by its first click. The views are made with the
    // first of them.
    m_scheme = new ColourScheme(QDBusConnection::sessionBus(), this);
    const QVariantMap roots { { u"app"_s, QVariant::fromValue(this) } };
    m_statusItem = new StatusItemController(
        { .openMain = [this] { openMain(); },
          .openSettings = [this] { openSettings(); },
          .quit = [this] { quit(); } },
        trayIcon(), [this] { return m_views->views(); }, roots);
    connect(m_statusItem, &StatusItemController::shownChanged, m_views, &ViewEngine::viewChanged);
    connect(m_scheme, &ColourScheme::changed, m_statusItem,
            [this] { m_statusItem->setIcon(trayIcon()); });

    // The session: its keychain, the shop's network manager and the account over them.
    m_keychain = new Keychain(applicationFolder(), this);
    const QUrl base = m_defaults->shopBaseURL();
    m_network = new NetworkAccessManager(m_defaults->shopCertificates(), base, this);
    QPointer<NetworkAccessManager> network = m_network;
    m_account = new Account([network, base] { return APIClient(network, base); }, m_keychain, this);
    m_account->setPageOpener([](const QUrl &page) { QDesktopServices::openUrl(page); });

    startPlacement();
    startStore();
    startShuffle();
    startFocusFilter();
    startAutomation();

    m_loginItem = new LoginItem(m_options.program, {}, this);
    startViews();
    startGreetingAndSounds();

    startNotifications();

    // A self-test only loads the views: nothing reaches the shop, the desktop or the helper.
    if (m_options.selfTest)
        return;
    if (!m_options.atLogin) {
        openMain();
    } else if (m_options.sayIfNoTray) {
        // Hosts start with the session too: they get a few seconds to appear.
        QTimer::singleShot(std::chrono::seconds(10), this, &AppDelegate::sayIfNoTray);
    }

    restoreSession(this);
    m_shop->start();
    m_shuffle->start();
    m_focusWallpaper->start();
    m_following->start();
    m_focusFilter->start();
    // The workspace helper is told on every launch whether it is wanted, after its stale check.
    m_spaces->start(m_displays->useOnAllSpaces());
    connect(m_displays, &Displays::useOnAllSpacesChanged, m_spaces,
            [this] { m_spaces->setWanted(m_displays->useOnAllSpaces()); });
}

void AppDelegate::startPlacement()
{
    const QString folder = applicationFolder();
    m_clock = std::make_shared<Clock>();
    m_heic = std::make_shared<HeicModule>();
    DesktopBackend *backend =
        DesktopBackends::make(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), folder, this);
    m_displays = new Displays(backend, PlacementRecords(folder), m_clock, this);
    m_setter = new WallpaperSetter(m_displays, Renderer(folder + u"/Rendered"_s, m_heic), m_scheme,
                                   m_clock, this);
    m_sleep = new LogindSleepWatcher(QDBusConnection::systemBus(), this);
    m_following = new Following({ .setter = m_setter,
                                  .backend = backend,
                                  .scheme = m_scheme,
                                  .sleep = m_sleep,
                                  .clock = m_clock },
                                this);
    // The workspace helper beside this program; it hears of every new placement.
    m_spaces =
        new SpacesHelper({ .defaults = m_defaults.get(),
                           .process = new HelperProcess(QDBusConnection::sessionBus(),
                                                        HelperBus::pidFilePath(), this),
                           .clock = m_clock,
                           .program = QCoreApplication::applicationDirPath() + u"/quennet-helper"_s,
                           .build = version() },
                         this);
}

void AppDelegate::startStore()
{
    const QUrl base = m_defaults->shopBaseURL();
    m_downloads = new DownloadThread(m_defaults->shopCertificates(), base, this);
    QPointer<NetworkAccessManager> network = m_network;
    m_shop = new Shop(
        { .api = [network, base] { return APIClient(network, base); },
          .account = m_account,
          .keychain = m_keychain,
          .defaults = m_defaults.get(),
          .downloads = m_downloads,
          .shown = m_setter,
          .clock = m_clock,
          .folder = applicationFolder(),
          .downloadsFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) },
        this);
    m_library = new LibraryStatus(m_account, m_shop, this);
    m_requests = new WallpaperRequests({ .shop = m_shop,
                                         .displays = m_displays,
                                         .setter = m_setter,
                                         .spaces = m_spaces,
                                         .clock = m_clock },
                                       this);
    new Reconciler({ .shop = m_shop,
                     .displays = m_displays,
                     .setter = m_setter,
                     .requests = m_requests,
                     .thread = m_downloads },
                   this);
}

void AppDelegate::startShuffle()
{
    m_favourites = new Favourites(m_defaults.get(), this);
    connect(m_sleep, &SleepWatcher::woke, m_shop, &Shop::systemWoke);
    m_shuffleStore = new ShopShuffleStore(m_shop, m_requests, this);
    auto *displays = new DesktopShuffleDisplays(m_displays, m_setter, this);
    // The shuffle waits while the Do Not Disturb wallpaper holds the displays.
    m_focusWallpaper = new FocusWallpaper({ .store = m_shuffleStore,
                                            .displays = displays,
                                            .defaults = m_defaults.get(),
                                            .sleep = m_sleep,
                                            .clock = m_clock },
                                          this);
    m_shuffle = new Shuffle({ .store = m_shuffleStore,
                              .displays = displays,
                              .favourites = m_favourites,
                              .defaults = m_defaults.get(),
                              .sleep = m_sleep,
                              .turn = m_focusWallpaper,
                              .clock = m_clock,
                              .random = QRandomGenerator::system() },
                            this);
}

void AppDelegate::startFocusFilter()
{
    // Do Not Disturb, as the desktop keeps it, puts the chosen wallpaper on.
    DoNotDisturb *watcher =
        DoNotDisturbWatchers::make(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), this);
    m_focusFilter =
        new FocusFilter(m_defaults.get(), watcher, m_focusWallpaper, m_shuffleStore, this);
}

void AppDelegate::startViews()
{
    m_notice = new NoticePresenter(this);
    m_session = new SessionActions(m_account, m_shop, m_notice, this);
    connect(m_shop, &Shop::messageChanged, m_notice,
            [this] { m_notice->setNotice(m_shop->message()); });
    connect(m_notice, &NoticePresenter::dismissed, m_shop, &Shop::dismissMessage);
    m_actions = new WallpaperActions({ .shop = m_shop,
                                       .requests = m_requests,
                                       .displays = m_displays,
                                       .favourites = m_favourites,
                                       .notice = m_notice },
                                     this);
    m_shuffleView = new ShuffleView(m_shuffle, m_notice, this);
    connect(m_focusFilter, &FocusFilter::notSaved, m_notice,
            [this] { m_notice->showFailure(Defaults::NotSaved().description()); });
    m_art = new ArtCache(m_network, m_defaults->shopBaseURL(), m_heic, this);
    // Plasma's own colours, light or dark; other desktops leave the palette to Qt and Quennet.
    new DesktopPalette(m_scheme,
                       onPlasma() ? [] { return KdeColours::palette(KdeColours::files()); }
                                  : DesktopPalette::DesktopColours(),
                       this);
    const auto followScheme = [this] {
        m_art->setDark(m_scheme->isDark());
        Q_EMIT darkChanged();
    };
    connect(m_scheme, &ColourScheme::changed, this, followScheme);
    followScheme();
}

void AppDelegate::startNotifications()
{
    // What happened while no window was open would otherwise go unseen: the panel and the main
    // window say it themselves.
    m_notifications = new DesktopNotifications(
        QDBusConnection::sessionBus(), DesktopNotifications::channelHere(),
        [this] { return m_statusItem->isShown() || (m_main && m_main->isVisible()); }, this);
    connect(m_shuffle, &Shuffle::scheduledShuffleFailed, m_notifications,
            [this](const QString &reason) {
                m_notifications->notify({ .topic = u"shuffle"_s,
                                          .title = tr("Shuffle couldn't change your wallpaper"),
                                          .body = reason,
                                          .actionLabel = tr("Shuffle Settings"),
                                          .action = [this] { openSettings(u"general"_s); } });
            });
    connect(m_focusWallpaper, &FocusWallpaper::focusWallpaperFailed, m_notifications,
            [this](const QString &reason) {
                m_notifications->notify({ .topic = u"focus"_s,
                                          .title = tr("Couldn't set the Do Not Disturb wallpaper"),
                                          .body = reason,
                                          .actionLabel = tr("Settings"),
                                          .action = [this] { openSettings(u"general"_s); } });
            });
    connect(m_account, &Account::endedByShop, m_notifications, [this] {
        m_notifications->notify({ .topic = u"session"_s,
                                  .title = tr("You've been signed out"),
                                  .body = tr("Sign in again to use your packs."),
                                  .actionLabel = tr("Sign In"),
                                  .action = [this] { openMain(); } });
    });
}

void AppDelegate::startGreetingAndSounds()
{
    QFile changelog(u":/CHANGELOG.md"_s);
    if (!changelog.open(QIODevice::ReadOnly))
        qCWarning(lcApp) << "No changelog in the program";
    m_greeting = new Greeting(m_defaults.get(),
                              { .version = version(),
                                .development = QUENNET_DEVELOPMENT_BUILD,
                                .changelog = QString::fromUtf8(changelog.readAll()) },
                              this);
    m_sounds = new FeedbackSounds(
        m_defaults.get(), std::make_unique<CanberraSoundPlayer>(),
        [] { return EventSounds::desktopPlays(qEnvironmentVariable("XDG_CURRENT_DESKTOP")); },
        this);
    const auto notSaved = [this] { m_notice->showFailure(Defaults::NotSaved().description()); };
    connect(m_greeting, &Greeting::notSaved, m_notice, notSaved);
    connect(m_sounds, &FeedbackSounds::notSaved, m_notice, notSaved);
    connect(m_actions, &WallpaperActions::wallpaperSet, m_sounds,
            [this] { m_sounds->play(FeedbackSounds::Moment::WallpaperSet); });
    connect(m_actions, &WallpaperActions::setFailed, m_sounds,
            [this] { m_sounds->play(FeedbackSounds::Moment::Failed); });
    // Signed in by the user, not a session read back at start.
    connect(m_account, &Account::stateChanged, m_sounds, [this, waiting = false]() mutable {
        const Account::Status status = m_account->status();
        if (waiting && status == Account::Status::SignedIn)
            m_sounds->play(FeedbackSounds::Moment::SignedIn);
        waiting = status == Account::Status::Waiting;
    });
}

void AppDelegate::sayIfNoTray()
{
    // Without a tray host (GNOME without its tray extension) the icon shows nowhere, and a start
    // at login would look like no start at all.
    if (QSystemTrayIcon::isSystemTrayAvailable())
        return;
    qCInfo(lcApp) << "No tray host: saying so";
    m_notifications->notify(
        { .topic = u"tray"_s,
          .title = tr("Quennet is running"),
          .body =
              tr("This desktop has no tray for its icon. Open Quennet from your apps to use it."),
          .actionLabel = tr("Open Quennet"),
          .action = [this] { openMain(); } });
}

QIcon AppDelegate::trayIcon() const
{
    return TrayGlyph::icon(TrayGlyph::ink(TrayGlyph::panelIsDark(onPlasma(), isDark())));
}

bool AppDelegate::isDark() const
{
    return m_scheme && m_scheme->isDark();
}

void AppDelegate::startAutomation()
{
    auto *intents = new Intents({ .shop = m_shop,
                                  .requests = m_requests,
                                  .displays = m_displays,
                                  .favourites = m_favourites,
                                  .shuffle = m_shuffle },
                                this);
    m_automation->attach(intents, m_account, m_shop, m_focusFilter);
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

QString AppDelegate::version()
{
    return QStringLiteral(QUENNET_VERSION);
}

QVariantList AppDelegate::acknowledgements()
{
    const auto entry = [](const QString &name, const QString &licence, const QString &use) {
        return QVariantMap { { u"name"_s, name }, { u"licence"_s, licence }, { u"use"_s, use } };
    };
    return {
        entry(u"Qt 6"_s, u"LGPL-3.0"_s, tr("windows, views, networking and D-Bus")),
        entry(u"QCoro"_s, u"MIT"_s, tr("coroutines over Qt")),
        entry(u"libsecret"_s, u"LGPL-2.1"_s, tr("the desktop's secret store")),
        entry(u"libheif"_s, u"LGPL-3.0"_s, tr("reading HEIC wallpapers")),
        entry(u"libde265"_s, u"LGPL-3.0"_s, tr("decoding HEVC pictures")),
        entry(u"libplist"_s, u"LGPL-2.1"_s, tr("wallpaper metadata")),
        entry(u"OpenSSL"_s, u"Apache-2.0"_s, tr("checking downloads (SHA-256)")),
        entry(u"GLib"_s, u"LGPL-2.1"_s, tr("desktop settings (GSettings)")),
        entry(u"libcanberra"_s, u"LGPL-2.1"_s, tr("the desktop's event sounds")),
        entry(u"Wayland"_s, u"MIT"_s, tr("the panel on Wayland desktops")),
        entry(u"libxcb"_s, u"MIT"_s, tr("the desktop picture on X11")),
    };
}

void AppDelegate::setSettingsPane(const QString &pane)
{
    if (pane != m_settingsPane) {
        m_settingsPane = pane;
        Q_EMIT settingsPaneChanged();
    }
}

QWindow *AppDelegate::window(QPointer<QWindow> &slot, const QString &view)
{
    if (slot) {
        return slot;
    }
    Views *views = m_views->views();
    slot = views ? views->window(view, { { u"app"_s, QVariant::fromValue(this) } }) : nullptr;
    if (!slot) {
        return nullptr;
    }
    connect(slot, &QWindow::visibleChanged, m_views, &ViewEngine::viewChanged);
    return slot;
}

QList<QWindow *> AppDelegate::windows() const
{
    QList<QWindow *> made;
    for (QWindow *window :
         { m_main.data(), m_settings.data(), m_welcome.data(), m_whatsNew.data() }) {
        if (window)
            made.append(window);
    }
    return made;
}

bool AppDelegate::viewShown() const
{
    return (m_statusItem && m_statusItem->isShown())
        || std::ranges::any_of(windows(), &QWindow::isVisible);
}

void AppDelegate::releaseViews()
{
    // Called from the idle timer, never from a window's own signal: deleting now is safe.
    qDeleteAll(windows());
    m_statusItem->releasePanel();
    m_art->clear();
}

void AppDelegate::present(QPointer<QWindow> &slot, const QString &view)
{
    if (QWindow *shown = window(slot, view)) {
        shown->show();
        shown->raise();
        shown->requestActivate();
    }
}

void AppDelegate::openMain()
{
    const Greeting::Kind due = m_greeting->greet();
    if (due == Greeting::Kind::Welcome) {
        openWelcome();
        return;
    }
    present(m_main, u"MainWindow"_s);
    if (due == Greeting::Kind::WhatsNew)
        openWhatsNew();
}

void AppDelegate::openWelcome()
{
    present(m_welcome, u"WelcomeWindow"_s);
}

void AppDelegate::openChangelog()
{
    m_greeting->showChangelog();
    openWhatsNew();
}

void AppDelegate::openWhatsNew()
{
    present(m_whatsNew, u"WhatsNewWindow"_s);
}

void AppDelegate::openSettings(const QString &pane)
{
    if (!pane.isEmpty()) {
        setSettingsPane(pane);
    }
    present(m_settings, u"SettingsWindow"_s);
}

void AppDelegate::closePanel()
{
    m_statusItem->closePanel();
}

void AppDelegate::quit()
{
    QApplication::quit();
}

bool AppDelegate::selfTest()
{
    bool loaded = m_statusItem->preparePanel();
    for (const auto &[slot, view] :
         { std::pair { &m_main, u"MainWindow"_s }, std::pair { &m_settings, u"SettingsWindow"_s },
           std::pair { &m_welcome, u"WelcomeWindow"_s },
           std::pair { &m_whatsNew, u"WhatsNewWindow"_s } }) {
        loaded = window(*slot, view) && loaded;
    }
    return loaded;
}
