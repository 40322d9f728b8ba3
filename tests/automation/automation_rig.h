#pragma once

#include "account.h"
#include "automation_service.h"
#include "clock.h"
#include "defaults.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "do_not_disturb.h"
#include "download_thread.h"
#include "fake_desktop.h"
#include "favourites.h"
#include "focus_filter.h"
#include "focus_wallpaper.h"
#include "intents.h"
#include "keychain.h"
#include "network_access_manager.h"
#include "shop.h"
#include "shop_shuffle_store.h"
#include "shuffle.h"
#include "sleep_watcher.h"
#include "test_support.h"
#include "wallpaper_requests.h"
#include "wallpaper_setter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTemporaryDir>
#include <memory>

// Quennet's automation as the program builds it, in-process: the development shop with its
// sample content, the account signed in, the store, displays on a desktop of two screens that
// shows what it is given, favourites and the shuffle, and the service on the session bus under
// Quennet's name. Tests call it from a connection of their own, as another program would.
class AutomationRig {
public:
    // startsStore: false leaves the store before its first load.
    explicit AutomationRig(bool startsStore = true);
    ~AutomationRig();

    [[nodiscard]] bool isReady() const { return m_ready; }

    // A call on the client's connection, answered while the test's event loop runs.
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {});
    QDBusMessage automation(const QString &method, const QVariantList &arguments = {});
    QDBusMessage session(const QString &method);
    [[nodiscard]] QVariant sessionProperty(const QString &name);
    // Starts a call and leaves it running.
    QDBusPendingCall start(const QString &method, const QVariantList &arguments = {});
    [[nodiscard]] QDBusConnection client() const { return m_client; }

    // What the main display shows as the desktop tells it, and the key recorded for it.
    [[nodiscard]] QString mainPicture() const;
    [[nodiscard]] QString mainKey() const;

    TestShop &shop() { return m_shop; }
    FakeDesktop &desktop() { return *m_desktop; }
    Shop &store() { return *m_store; }
    WallpaperRequests &requests() { return *m_requests; }
    Displays &displays() { return *m_displays; }
    Favourites &favourites() { return *m_favourites; }
    Shuffle &shuffle() { return *m_shuffle; }
    Defaults &defaults() { return *m_defaults; }
    FocusFilter &focusFilter() { return *m_focusFilter; }
    [[nodiscard]] QString defaultsPath() const
    {
        return m_folder.filePath(QStringLiteral("defaults.ini"));
    }

private:
    TestShop m_shop;
    QTemporaryDir m_folder;
    std::shared_ptr<Clock> m_clock = std::make_shared<Clock>();
    std::unique_ptr<NetworkAccessManager> m_network;
    std::unique_ptr<DownloadThread> m_downloads;
    std::unique_ptr<Keychain> m_keychain;
    std::unique_ptr<Account> m_account;
    std::unique_ptr<Defaults> m_defaults;
    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<Displays> m_displays;
    std::unique_ptr<WallpaperSetter> m_setter;
    std::unique_ptr<Shop> m_store;
    std::unique_ptr<WallpaperRequests> m_requests;
    std::unique_ptr<Favourites> m_favourites;
    std::unique_ptr<SleepWatcher> m_sleep;
    std::unique_ptr<ShopShuffleStore> m_shuffleStore;
    std::unique_ptr<DesktopShuffleDisplays> m_shuffleDisplays;
    std::unique_ptr<FocusWallpaper> m_focusWallpaper;
    std::unique_ptr<Shuffle> m_shuffle;
    std::unique_ptr<NoDoNotDisturb> m_doNotDisturb;
    std::unique_ptr<FocusFilter> m_focusFilter;
    std::unique_ptr<Intents> m_intents;
    std::unique_ptr<AutomationService> m_service;
    QDBusConnection m_client { QString() };
    bool m_ready = false;
};
