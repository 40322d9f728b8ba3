#include "automation_rig.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr auto clientName = "automation-test-client"_L1;

// Pictures of the sample catalogue: two owned packs, a free one, one not owned and one not yet
// released.
QList<ContentPack> samplePacks()
{
    const auto pack = [](const QString &slug, const QStringList &colourways) {
        ContentPack made { .slug = slug };
        for (const QString &colourway : colourways)
            for (const QString &edition : { u"dark"_s, u"appearance"_s })
                made.files.append(sampleFile(slug, colourway, edition));
        return made;
    };
    QList<ContentPack> packs {
        pack(u"aurora"_s, { u"emerald"_s, u"violet"_s }),
        pack(u"dunes"_s, { u"amber"_s, u"rose"_s }),
        pack(u"harbour"_s, { u"slate"_s }),
        pack(u"meadow"_s, { u"spring"_s, u"clover"_s }),
        { .slug = u"glacier"_s, .released = false, .files = { { u"ice"_s, u"dark"_s, 20'000 } } }
    };
    packs[2].owned = false;
    packs[3].free = true;
    return packs;
}
} // namespace

AutomationRig::AutomationRig(Stage stage)
    : m_set(samplePacks())
{
    if (!m_set.storeRig().isReady())
        return;
    m_favourites = std::make_unique<Favourites>(&defaults());
    m_shuffleStore = std::make_unique<ShopShuffleStore>(&store(), &requests());
    m_shuffleDisplays = std::make_unique<DesktopShuffleDisplays>(&displays(), &m_set.setter());
    m_stack = std::make_unique<ShuffleStack>(m_shuffleStore.get(), m_shuffleDisplays.get(),
                                             m_favourites.get(), &defaults(), &m_sleep, m_clock,
                                             QRandomGenerator::global());
    m_focusFilter = std::make_unique<FocusFilter>(&defaults(), &m_doNotDisturb, &m_stack->focus,
                                                  m_shuffleStore.get());
    m_intents = std::make_unique<Intents>(Intents::Services { .shop = &store(),
                                                              .requests = &requests(),
                                                              .displays = &displays(),
                                                              .favourites = m_favourites.get(),
                                                              .shuffle = &m_stack->shuffle });

    // As the program does it: the object first, then the name.
    auto bus = QDBusConnection::sessionBus();
    if (!m_service.registerOn(bus) || !bus.registerService(AutomationService::serviceName))
        return;
    if (stage != Stage::Unattached)
        m_service.attach(m_intents.get(), &m_set.storeRig().account(), &store(),
                         m_focusFilter.get());
    if (stage == Stage::Started && !m_set.start())
        return;
    m_client = QDBusConnection::connectToBus(QDBusConnection::SessionBus, clientName);
    m_ready = m_client.isConnected();
}

AutomationRig::~AutomationRig()
{
    QDBusConnection::disconnectFromBus(clientName);
    QDBusConnection::sessionBus().unregisterService(AutomationService::serviceName);
}

QDBusPendingCall AutomationRig::start(const QString &method, const QVariantList &arguments,
                                      const QString &interface)
{
    auto message = QDBusMessage::createMethodCall(AutomationService::serviceName,
                                                  AutomationService::objectPath, interface, method);
    message.setArguments(arguments);
    return m_client.asyncCall(message, 60'000);
}

QDBusMessage AutomationRig::call(const QString &method, const QVariantList &arguments,
                                 const QString &interface)
{
    // The service answers on this thread: wait in an event loop, never in a blocking call.
    QDBusPendingCallWatcher watcher(start(method, arguments, interface));
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished())
        loop.exec();
    return watcher.reply();
}

QVariant AutomationRig::sessionProperty(const QString &name)
{
    const auto reply = call(u"Get"_s, { QString(AutomationService::sessionInterface), name },
                            u"org.freedesktop.DBus.Properties"_s);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QString AutomationRig::picture(int display)
{
    return desktop().shown.value(display == 0 ? u"A"_s : u"B"_s);
}

QString AutomationRig::mainKey()
{
    const auto main = displays().all().value(0);
    const auto placement = displays().placement(main.id);
    return placement && displays().showsOwnWallpaper(main)
        ? placement->pack + u'/' + placement->colourway
        : QString();
}
