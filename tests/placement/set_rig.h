#pragma once

#include "displays.h"
#include "fake_desktop.h"
#include "reconciler.h"
#include "store_rig.h"
#include "wallpaper_requests.h"
#include "wallpaper_setter.h"

#include <QTemporaryDir>
#include <memory>

// The road of a set request as the program builds it, over the store rig: the fake desktop's two
// displays, the setter and its renderings, the requests and the reconciler.
class SetRig {
public:
    // folder: the application folder, when not a temporary one of the rig's own.
    explicit SetRig(QList<ContentPack> packs, QString folder = {});

    [[nodiscard]] bool start() { return m_store->start(); }
    [[nodiscard]] StoreRig &storeRig() { return *m_store; }
    [[nodiscard]] Shop &store() { return m_store->store(); }
    [[nodiscard]] ContentShop &shop() { return m_store->shop(); }
    [[nodiscard]] WallpaperRequests &requests() { return *m_requests; }
    [[nodiscard]] Reconciler &reconciler() { return *m_reconciler; }
    [[nodiscard]] FakeDesktop &desktop() { return m_desktop; }
    [[nodiscard]] Displays &displays() { return *m_displays; }
    [[nodiscard]] WallpaperSetter &setter() { return *m_setter; }
    [[nodiscard]] QStringList ids() const { return m_displays->ids(); }
    // The local file the display shows, by what its rendering was made from; empty for none.
    [[nodiscard]] QString shownFile(const QString &displayId) const;
    [[nodiscard]] QString localPath(const QString &pack, const QString &colourway,
                                    Edition edition) const;
    [[nodiscard]] QCoro::Task<QStringList> set(const QString &colourway, Edition edition,
                                               const QStringList &displayIds);

private:
    QTemporaryDir m_folder;
    QString m_root;
    std::shared_ptr<Clock> m_clock;
    FakeDesktop m_desktop;
    std::unique_ptr<Displays> m_displays;
    std::unique_ptr<WallpaperSetter> m_setter;
    std::unique_ptr<StoreRig> m_store;
    std::unique_ptr<WallpaperRequests> m_requests;
    std::unique_ptr<Reconciler> m_reconciler;
};

// A file of the development shop's sample content, as real HEIC bytes.
[[nodiscard]] ContentFile sampleFile(const QString &pack, const QString &colourway,
                                     const QString &edition);
