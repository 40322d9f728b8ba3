#include "shuffle_rig.h"

#include "cancel_token.h"
#include "desktop_backend.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QCoroSignal>
#include <QSettings>
#include <utility>

using namespace Qt::Literals::StringLiterals;

void FakeStore::setChoices(const QList<ShuffleChoice> &choices)
{
    m_choices = choices;
    Q_EMIT choicesChanged();
}

bool FakeStore::isDownloaded(const ShuffleChoice &choice, Edition) const
{
    return downloaded.contains(choice.key());
}

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
    const Set set { choice.key(), wanted, displayIds, now ? now() : QDateTime() };
    sets.append(set);
    if (onSet)
        onSet(set);
    co_return;
}

void FakeStore::releaseHeld()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &gate : held) {
        gate->cancel();
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) { }
    }
}

void FakeDisplays::setScreens(const QList<Screen> &screens)
{
    m_screens = screens;
    Q_EMIT changed();
}

void FakeDisplays::show(const QString &id, const QString &key, Edition edition)
{
    const auto slash = key.indexOf(u'/');
    for (auto &screen : m_screens) {
        if (screen.id != id)
            continue;
        screen.placement = Placement { .pack = key.left(slash),
                                       .colourway = key.mid(slash + 1),
                                       .edition = rawValue(edition),
                                       .path = u"/cache/"_s + key + u".heic"_s,
                                       .setAt = now ? now().toMSecsSinceEpoch() : 0 };
        screen.showsOwnWallpaper = true;
        screen.picture = screen.placement->path;
    }
    Q_EMIT changed();
}

void FakeDisplays::showPicture(const QString &id, const QString &path)
{
    for (auto &screen : m_screens) {
        if (screen.id == id) {
            screen.showsOwnWallpaper = false;
            screen.picture = path;
        }
    }
    Q_EMIT changed();
}

QCoro::Task<> FakeDisplays::restore(QStringList displayIds, QString path,
                                    std::optional<Placement> placement)
{
    for (const QString &id : std::as_const(displayIds))
        restores.append({ id, path });
    if (refusal)
        throw DesktopError(*refusal);
    for (auto &screen : m_screens) {
        if (!displayIds.contains(screen.id))
            continue;
        if (placement)
            screen.placement = placement;
        screen.showsOwnWallpaper = placement.has_value();
        screen.picture = path;
    }
    Q_EMIT changed();
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
    store.now = [clock = clock] { return clock->now(); };
    displays.now = [clock = clock] { return clock->now(); };
    store.onSet = [this](const FakeStore::Set &set) {
        for (const auto &id : set.displayIds)
            displays.show(id, set.key, set.wanted);
    };
    displays.setScreens({ { .id = u"one"_s, .showsOwnWallpaper = true } });
    store.setChoices(sampleChoices(choices));
}

Shuffle &ShuffleRig::make()
{
    shuffle.reset();
    focus.reset();
    focus = std::make_unique<FocusWallpaper>(FocusWallpaper::Services { .store = &store,
                                                                        .displays = &displays,
                                                                        .defaults = &defaults,
                                                                        .sleep = &sleep,
                                                                        .clock = clock });
    shuffle = std::make_unique<Shuffle>(Shuffle::Services { .store = &store,
                                                            .displays = &displays,
                                                            .favourites = &favourites,
                                                            .defaults = &defaults,
                                                            .sleep = &sleep,
                                                            .turn = focus.get(),
                                                            .clock = clock,
                                                            .random = &random });
    shuffle->start();
    focus->start();
    return *shuffle;
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
