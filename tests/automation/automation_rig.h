#pragma once

#include "automation_service.h"
#include "desktop_shuffle_displays.h"
#include "do_not_disturb.h"
#include "focus_filter.h"
#include "intents.h"
#include "set_rig.h"
#include "shop_shuffle_store.h"
#include "shuffle_rig.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <memory>

// Quennet's automation as the program builds it, in-process, over the set rig (the development
// shop with sample pictures, the account signed in, the store, two displays on a desktop that
// shows what it is given): favourites, the shuffle, and the service on the session bus under
// Quennet's name. Tests call it from a connection of their own, as another program would.
class AutomationRig {
public:
    // How far the program has come: the service on the bus before the program hands it its
    // objects, the store before its first load, or all the way.
    enum class Stage { Unattached, StoreNotStarted, Started };

    explicit AutomationRig(Stage stage = Stage::Started);
    ~AutomationRig();

    [[nodiscard]] bool isReady() const { return m_ready; }

    // A call on the client's connection, answered while the test's event loop runs.
    QDBusMessage call(const QString &method, const QVariantList &arguments = {},
                      const QString &interface = AutomationService::automationInterface);
    QDBusMessage session(const QString &method)
    {
        return call(method, {}, AutomationService::sessionInterface);
    }
    [[nodiscard]] QVariant sessionProperty(const QString &name);
    // Starts a call and leaves it running.
    QDBusPendingCall start(const QString &method, const QVariantList &arguments = {},
                           const QString &interface = AutomationService::automationInterface);

    // What a display shows as the desktop tells it (0: the main one), and the key recorded for
    // the main one.
    [[nodiscard]] QString picture(int display = 0);
    [[nodiscard]] QString mainKey();

    ContentShop &shop() { return m_set.shop(); }
    FakeDesktop &desktop() { return m_set.desktop(); }
    Shop &store() { return m_set.store(); }
    WallpaperRequests &requests() { return m_set.requests(); }
    Displays &displays() { return m_set.displays(); }
    Favourites &favourites() { return *m_favourites; }
    Shuffle &shuffle() { return m_stack->shuffle; }
    Defaults &defaults() { return m_set.storeRig().defaults(); }
    FocusFilter &focusFilter() { return *m_focusFilter; }
    [[nodiscard]] QString defaultsPath() { return m_set.storeRig().defaultsPath(); }

private:
    SetRig m_set;
    std::shared_ptr<Clock> m_clock = std::make_shared<Clock>();
    std::unique_ptr<Favourites> m_favourites;
    SleepWatcher m_sleep;
    std::unique_ptr<ShopShuffleStore> m_shuffleStore;
    std::unique_ptr<DesktopShuffleDisplays> m_shuffleDisplays;
    std::unique_ptr<ShuffleStack> m_stack;
    NoDoNotDisturb m_doNotDisturb;
    std::unique_ptr<FocusFilter> m_focusFilter;
    std::unique_ptr<Intents> m_intents;
    AutomationService m_service;
    QDBusConnection m_client { QString() };
    bool m_ready = false;
};
