#include "store_rig.h"

#include "test_support.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

StoreRig::StoreRig(QList<ContentPack> packs, bool signedIn, QString folder, ShownFiles *shown)
    // Sign-in polls each second rather than five.
    : m_shop(std::move(packs), DevShop::Options { .pollInterval = 1 })
    , m_root(folder.isEmpty() ? m_folder.path() : std::move(folder))
    , m_clock(std::make_shared<TestClock>(QDateTime::currentDateTimeUtc(), true))
    , m_shown(shown)
{
    if (!m_shop.isRunning())
        return;
    const QString ca = m_shop.shop().caPath();
    m_manager = std::make_unique<NetworkAccessManager>(ca, m_shop.baseUrl());
    m_thread = std::make_unique<DownloadThread>(ca, m_shop.baseUrl());
    m_keychain = std::make_unique<Keychain>(m_root);
    m_account = std::make_unique<Account>([this] { return api(); }, m_keychain.get());
    if (signedIn) {
        const QString token = m_shop.issueToken();
        if (!finish(m_keychain->save(token, QString(Keychain::sessionToken))).value.value_or(false))
            return;
    }
    finish(m_account->load());
    m_defaults = std::make_unique<Defaults>(defaultsPath());
    restartStore();
    m_ready = true;
}

StoreRig::~StoreRig()
{
    // The store's tasks hear of its end through queued aborts: let them finish before the
    // network manager and the thread they use go.
    m_store.reset();
    QTest::qWait(50);
}

bool StoreRig::start()
{
    if (!m_ready)
        return false;
    finish(m_store->start());
    return m_store->status() == Shop::Status::Ready;
}

APIClient StoreRig::api() const
{
    return APIClient(m_manager.get(), m_shop.baseUrl());
}

void StoreRig::restartStore()
{
    m_store.reset();
    m_store = std::make_unique<Shop>(Shop::Services {
        .api = [this] { return api(); },
        .account = m_account.get(),
        .keychain = m_keychain.get(),
        .defaults = m_defaults.get(),
        .downloads = m_thread.get(),
        .shown = m_shown,
        .clock = m_clock,
        .folder = m_root,
        .downloadsFolder = downloadsFolder(),
    });
}

WallpaperFile StoreRig::file(const QString &pack, const QString &colourway, Edition edition) const
{
    return m_store->owned().value(pack).file(colourway, edition).value_or(WallpaperFile {});
}
