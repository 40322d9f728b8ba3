#include "store_rig.h"

#include "cancel_token.h"
#include "test_support.h"

#include <QCoroSignal>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

FakeTarget::FakeTarget(QString folder, QStringList displayIds)
    : m_ids(std::move(displayIds))
    , m_records(std::move(folder))
{
}

QCoro::Task<> FakeTarget::setWallpaper(WallpaperFile wallpaper, QString localPath,
                                       Placement placement, QStringList displayIds)
{
    bool undecodable = false;
    if (renderer && !renderer->render(localPath, wallpaper.id, 0, &undecodable)) {
        if (undecodable)
            throw UnreadableFile();
        throw DecodingError(u"Not rendered"_s);
    }
    auto file = m_records.load();
    for (const QString &id : std::as_const(displayIds)) {
        shown.insert(id, localPath);
        file.placements.insert(id, placement);
    }
    ++sets;
    if (!m_records.save(file))
        qWarning("The placement records could not be written");
    co_return;
}

bool FakeTarget::isShown(const QString &localPath) const
{
    return std::find(shown.cbegin(), shown.cend(), localPath) != shown.cend();
}

StoreRig::StoreRig(QList<ContentPack> packs, bool signedIn, QString folder)
    : m_shop(std::move(packs))
    , m_root(folder.isEmpty() ? m_folder.path() : std::move(folder))
    , m_clock(std::make_shared<TestClock>())
{
    m_clock->holdSleeps = true;
    m_clock->setNow(QDateTime::currentDateTimeUtc());
    if (!m_shop.isRunning())
        return;
    const QString ca = m_shop.shop().caPath();
    m_manager = std::make_unique<NetworkAccessManager>(ca, m_shop.baseUrl());
    m_thread = std::make_unique<DownloadThread>(ca, m_shop.baseUrl());
    m_keychain = std::make_unique<Keychain>(m_root);
    m_account = std::make_unique<Account>([this] { return api(); }, m_keychain.get());
    if (signedIn) {
        const QString token = m_shop.shop().issueToken();
        recordToken(token);
        if (!finish(m_keychain->save(token, QString(Keychain::sessionToken))).value.value_or(false))
            return;
    }
    finish(m_account->load());
    m_defaults = std::make_unique<Defaults>(m_config.filePath(u"defaults.ini"_s));
    m_target = std::make_unique<FakeTarget>(m_root, QStringList { u"A"_s, u"B"_s });
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
        .target = m_target.get(),
        .helper = nullptr,
        .clock = m_clock,
        .folder = m_root,
        .downloadsFolder = downloadsFolder(),
    });
}

WallpaperFile StoreRig::file(const QString &pack, const QString &colourway, Edition edition) const
{
    return m_store->owned().value(pack).file(colourway, edition).value_or(WallpaperFile {});
}
