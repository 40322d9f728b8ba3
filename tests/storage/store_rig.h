#pragma once

#include "account.h"
#include "defaults.h"
#include "download_thread.h"
#include "keychain.h"
#include "network_access_manager.h"
#include "shop.h"
#include "shop_content.h"
#include "test_clock.h"

#include <QTemporaryDir>
#include <memory>

// The store with everything it works with, over a development shop with made-to-measure
// content, signed in as the shop's account.
class StoreRig {
public:
    // folder: the application folder, when not a temporary one of the rig's own. shown: the
    // displays the keep rule asks; none shows nothing.
    explicit StoreRig(QList<ContentPack> packs, bool signedIn = true, QString folder = {},
                      ShownFiles *shown = nullptr);
    ~StoreRig();

    [[nodiscard]] bool isReady() const { return m_ready; }
    // Starts the store and waits for its first refresh; true when it ended Ready.
    [[nodiscard]] bool start();
    [[nodiscard]] ContentShop &shop() { return m_shop; }
    [[nodiscard]] Shop &store() { return *m_store; }
    [[nodiscard]] Account &account() { return *m_account; }
    [[nodiscard]] Keychain &keychain() { return *m_keychain; }
    [[nodiscard]] Defaults &defaults() { return *m_defaults; }
    [[nodiscard]] TestClock &clock() { return *m_clock; }
    [[nodiscard]] DownloadThread &downloads() { return *m_thread; }
    // Two levels below a folder of its own, so that nothing can land above it unseen.
    [[nodiscard]] QString downloadsFolder() const
    {
        return m_downloads.path() + QStringLiteral("/home/Downloads");
    }
    [[nodiscard]] QString downloadsRoot() const { return m_downloads.path(); }
    [[nodiscard]] QString defaultsPath() const
    {
        return m_config.filePath(QStringLiteral("defaults.ini"));
    }
    [[nodiscard]] APIClient api() const;

    // A new store over the same folders, as after a restart of the application.
    void restartStore();
    // The owned file of a colourway in an edition, as the store knows it.
    [[nodiscard]] WallpaperFile file(const QString &pack, const QString &colourway,
                                     Edition edition) const;

private:
    ContentShop m_shop;
    QTemporaryDir m_folder;
    QString m_root;
    QTemporaryDir m_downloads;
    QTemporaryDir m_config;
    std::unique_ptr<NetworkAccessManager> m_manager;
    std::unique_ptr<DownloadThread> m_thread;
    std::unique_ptr<Keychain> m_keychain;
    std::unique_ptr<Account> m_account;
    std::unique_ptr<Defaults> m_defaults;
    std::shared_ptr<TestClock> m_clock;
    ShownFiles *m_shown;
    std::unique_ptr<Shop> m_store;
    bool m_ready = false;
};
