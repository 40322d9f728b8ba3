#include "shuffle_rig.h"

#include "cancel_token.h"
#include "desktop_backend.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QCoroSignal>
#include <QSettings>
#include <utility>

using namespace Qt::Literals::StringLiterals;

QCoro::Task<> FakeStore::setWallpaper(ShuffleChoice choice, Edition wanted, QStringList displayIds)
{
    ++attempts;
    if (holds) {
        const auto gate = std::make_shared<CancelToken>();
        m_held.append(gate);
        co_await qCoro(gate.get(), &CancelToken::cancelled);
    }
    if (downloadsFail && !downloaded.contains(choice.key()))
        throw DownloadFailed(u"The network connection was lost."_s);
    sets.append({ choice.key(), wanted, displayIds, clock->now() });
    for (const auto &id : std::as_const(displayIds)) {
        if (shows)
            shows->show(id, choice.key(), wanted);
    }
}

void FakeStore::releaseHeld()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &gate : held) {
        gate->cancel();
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) { }
    }
}

void FakeDisplays::show(const QStringList &ids, const QString &path,
                        std::optional<Placement> placement)
{
    for (auto &screen : m_screens) {
        if (!ids.contains(screen.id))
            continue;
        if (placement)
            screen.placement = placement;
        screen.showsOwnWallpaper = placement.has_value();
        screen.picture = path;
    }
    Q_EMIT changed();
}

void FakeDisplays::show(const QString &id, const QString &key, Edition edition)
{
    const QString path = u"/cache/"_s + key + u".heic"_s;
    show({ id }, path,
         Placement { .pack = key.section(u'/', 0, 0),
                     .colourway = key.section(u'/', 1),
                     .edition = rawValue(edition),
                     .path = path,
                     .setAt = clock->now().toMSecsSinceEpoch() });
}

QCoro::Task<> FakeDisplays::restore(QStringList displayIds, QString path,
                                    std::optional<Placement> placement)
{
    for (const QString &id : std::as_const(displayIds))
        restores.append({ id, path });
    if (refusal)
        throw DesktopError(*refusal);
    show(displayIds, path, placement);
    co_return;
}

QDateTime utc(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate).toUTC();
}

QList<ShuffleChoice> sampleChoices(int count)
{
    Pack sample { .slug = u"p"_s, .name = u"P"_s };
    for (int i = 1; i <= count; ++i)
        sample.colourways.append({ .slug = u"c%1"_s.arg(i), .name = u"C%1"_s.arg(i) });
    QList<ShuffleChoice> choices;
    for (const auto &colourway : sample.colourways)
        choices.append({ sample, colourway });
    return choices;
}

ShuffleStack::ShuffleStack(ShuffleStore *store, ShuffleDisplays *displays, Favourites *favourites,
                           Defaults *defaults, SleepWatcher *sleep,
                           const std::shared_ptr<Clock> &clock, QRandomGenerator *random)
    : focus({ store, displays, defaults, sleep, clock })
    , shuffle({ store, displays, favourites, defaults, sleep, &focus, clock, random })
{
    shuffle.start();
    focus.start();
}

namespace {
QString settingsFile(const QTemporaryDir &folder, const QVariantMap &settings)
{
    const auto path = folder.filePath(u"defaults.ini"_s);
    QSettings file(path, QSettings::IniFormat);
    for (auto it = settings.begin(); it != settings.end(); ++it)
        file.setValue(it.key(), it.value());
    return path;
}
} // namespace

ShuffleRig::ShuffleRig(const QDateTime &now, const QVariantMap &settings, int choices, quint32 seed)
    : defaults(settingsFile(folder, settings))
    , favourites(&defaults)
    , clock(std::make_shared<TestClock>(now, true))
    , random(seed)
{
    store.clock = clock;
    store.shows = &displays;
    displays.clock = clock;
    displays.setScreens({ { .id = u"one"_s, .showsOwnWallpaper = true } });
    store.setChoices(sampleChoices(choices));
}

Shuffle &ShuffleRig::make()
{
    made.reset();
    made = std::make_unique<ShuffleStack>(&store, &displays, &favourites, &defaults, &sleep, clock,
                                          &random);
    return made->shuffle;
}

QStringList ShuffleRig::sets() const
{
    QStringList sets;
    for (const auto &set : store.sets)
        sets.append(u"%1 %2 on %3"_s.arg(set.key, rawValue(set.wanted), set.displayIds.join(u' ')));
    return sets;
}

QStringList ShuffleRig::setKeys() const
{
    QStringList keys;
    for (const auto &set : store.sets)
        keys.append(set.key);
    return keys;
}
