#include "automation_rig.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr auto clientName = "automation-test-client"_L1;
}

AutomationRig::AutomationRig(bool startsStore)
    : m_shop(DevShop::Options { .pollInterval = 1 })
{
    if (!m_shop.isRunning())
        return;
    const QString ca = m_shop.shop().caPath();
    m_network = std::make_unique<NetworkAccessManager>(ca, m_shop.base());
    m_downloads = std::make_unique<DownloadThread>(ca, m_shop.base());
    m_keychain = std::make_unique<Keychain>(m_folder.path());
    const auto api = [network = m_network.get(), base = m_shop.base()] {
        return APIClient(network, base);
    };
    m_account = std::make_unique<Account>(api, m_keychain.get());
    const bool saved =
        finish(m_keychain->save(m_shop.issueToken(), QString(Keychain::sessionToken)))
            .value.value_or(false);
    if (!saved)
        return;
    finish(m_account->load());

    m_defaults = std::make_unique<Defaults>(m_folder.filePath(u"defaults.ini"_s));
    m_desktop = std::make_unique<FakeDesktop>();
    m_desktop->shownScreens = { { .connector = u"DP-1"_s, .geometry = QRect(0, 0, 1920, 1080) },
                                { .connector = u"DP-2"_s,
                                  .geometry = QRect(1920, 0, 1920, 1080) } };
    m_displays =
        std::make_unique<Displays>(m_desktop.get(), PlacementRecords(m_folder.path()), m_clock);
    m_setter = std::make_unique<WallpaperSetter>(
        m_displays.get(), Renderer(m_folder.filePath(u"Rendered"_s)), nullptr, m_clock);
    m_store = std::make_unique<Shop>(
        Shop::Services { .api = api,
                         .account = m_account.get(),
                         .keychain = m_keychain.get(),
                         .defaults = m_defaults.get(),
                         .downloads = m_downloads.get(),
                         .shown = m_setter.get(),
                         .clock = m_clock,
                         .folder = m_folder.path(),
                         .downloadsFolder = m_folder.filePath(u"Downloads"_s) });
    m_requests = std::make_unique<WallpaperRequests>(
        WallpaperRequests::Services { .shop = m_store.get(),
                                      .displays = m_displays.get(),
                                      .setter = m_setter.get(),
                                      .clock = m_clock });
    m_favourites = std::make_unique<Favourites>(m_defaults.get());
    m_sleep = std::make_unique<SleepWatcher>();
    m_shuffleStore = std::make_unique<ShopShuffleStore>(m_store.get(), m_requests.get());
    m_shuffleDisplays = std::make_unique<DesktopShuffleDisplays>(m_displays.get(), m_setter.get());
    m_focusWallpaper = std::make_unique<FocusWallpaper>(
        FocusWallpaper::Services { .store = m_shuffleStore.get(),
                                   .displays = m_shuffleDisplays.get(),
                                   .defaults = m_defaults.get(),
                                   .sleep = m_sleep.get(),
                                   .clock = m_clock });
    m_shuffle =
        std::make_unique<Shuffle>(Shuffle::Services { .store = m_shuffleStore.get(),
                                                      .displays = m_shuffleDisplays.get(),
                                                      .favourites = m_favourites.get(),
                                                      .defaults = m_defaults.get(),
                                                      .sleep = m_sleep.get(),
                                                      .turn = m_focusWallpaper.get(),
                                                      .clock = m_clock,
                                                      .random = QRandomGenerator::global() });
    m_shuffle->start();
    m_doNotDisturb = std::make_unique<NoDoNotDisturb>();
    m_focusFilter = std::make_unique<FocusFilter>(m_defaults.get(), m_doNotDisturb.get(),
                                                  m_focusWallpaper.get(), m_shuffleStore.get());
    m_intents = std::make_unique<Intents>(Intents::Services { .shop = m_store.get(),
                                                              .requests = m_requests.get(),
                                                              .displays = m_displays.get(),
                                                              .favourites = m_favourites.get(),
                                                              .shuffle = m_shuffle.get() });

    // As the program does it: the object first, then the name.
    m_service = std::make_unique<AutomationService>();
    auto bus = QDBusConnection::sessionBus();
    if (!m_service->registerOn(bus) || !bus.registerService(AutomationService::serviceName))
        return;
    m_service->attach(m_intents.get(), m_account.get(), m_store.get(), m_focusFilter.get());
    if (startsStore) {
        finish(m_store->start());
        if (m_store->status() != Shop::Status::Ready)
            return;
    }
    m_client = QDBusConnection::connectToBus(QDBusConnection::SessionBus, clientName);
    m_ready = m_client.isConnected();
}

AutomationRig::~AutomationRig()
{
    QDBusConnection::disconnectFromBus(clientName);
    QDBusConnection::sessionBus().unregisterService(AutomationService::serviceName);
    m_service.reset();
    m_focusFilter.reset();
    m_shuffle.reset();
    m_focusWallpaper.reset();
    m_store.reset();
    // The store's tasks hear of its end through queued aborts: let them finish before the
    // network manager and the thread they use go.
    QTest::qWait(50);
}

QDBusPendingCall AutomationRig::start(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(AutomationService::serviceName,
                                                  AutomationService::objectPath,
                                                  AutomationService::automationInterface, method);
    message.setArguments(arguments);
    return m_client.asyncCall(message, 60'000);
}

QDBusMessage AutomationRig::call(const QString &interface, const QString &method,
                                 const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(AutomationService::serviceName,
                                                  AutomationService::objectPath, interface, method);
    message.setArguments(arguments);
    // The service answers on this thread: wait in an event loop, never in a blocking call.
    QDBusPendingCallWatcher watcher(m_client.asyncCall(message, 60'000));
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished())
        loop.exec();
    return watcher.reply();
}

QDBusMessage AutomationRig::automation(const QString &method, const QVariantList &arguments)
{
    return call(AutomationService::automationInterface, method, arguments);
}

QDBusMessage AutomationRig::session(const QString &method)
{
    return call(AutomationService::sessionInterface, method);
}

QVariant AutomationRig::sessionProperty(const QString &name)
{
    const auto reply = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                            { QString(AutomationService::sessionInterface), name });
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QString AutomationRig::mainPicture() const
{
    return m_desktop->shown.value(u"DP-1"_s);
}

QString AutomationRig::mainKey() const
{
    const auto main = m_displays->all().value(0);
    const auto placement = m_displays->placement(main.id);
    return placement && m_displays->showsOwnWallpaper(main)
        ? placement->pack + u'/' + placement->colourway
        : QString();
}
