#include "automation_rig.h"
#include "await_task.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString errors = u"app.quennet.Quennet.Error."_s;
const QString notReady = u"NotReady: Still starting. Try again in a moment."_s;

// Empty for a reply that succeeded, so that a comparison with nothing shows the error.
QString failure(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ErrorMessage
        ? reply.errorName() + u": "_s + reply.errorMessage()
        : QString();
}
} // namespace

// Quennet's automation over the session bus, as another program calls it.
class AutomationServiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // What test_quennetctl's script leaves out: setting, getting, shuffling and favouriting, and
    // the saved settings, are checked there through quennetctl.
    void everyMethod()
    {
        AutomationRig rig;
        QVERIFY(rig.isReady());

        // The owned packs in library order: not harbour (not owned), nor glacier (not released).
        const auto found = rig.call(u"FindWallpapers"_s, { QString() }).arguments().value(0);
        QStringList ids;
        for (const auto &entity : qdbus_cast<QList<WallpaperEntity>>(found))
            ids.append(entity.id);
        QCOMPARE(
            ids.join(u' '),
            u"aurora/emerald aurora/violet dunes/amber dunes/rose meadow/clover meadow/spring"_s);

        QCOMPARE(failure(rig.call(u"SetWallpaper"_s, { u"dunes/rose"_s, u"dark"_s })), QString());
        // Favouriting is no toggle, and a favourite keeps its place.
        const QStringList favourites { u"dunes/amber"_s, u"dunes/rose"_s, u"meadow/spring"_s };
        rig.favourites().setKeys(favourites);
        QCOMPARE(failure(rig.call(u"FavouriteWallpaper"_s)), QString());
        QCOMPARE(rig.favourites().keys(), favourites);

        // Empty texts leave the interval and the source.
        QCOMPARE(failure(rig.call(u"SetShuffle"_s, { true, u"hour"_s, u"favourites"_s })),
                 QString());
        rig.call(u"SetShuffle"_s, { false, QString(), u"all"_s });
        QVERIFY(!rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Hour);
        QCOMPARE(rig.shuffle().source(), ShuffleSettings::Source::All);

        QCOMPARE(failure(rig.call(u"SetFocusFilter"_s, { u"aurora/emerald"_s, u"dark"_s })),
                 QString());
        QCOMPARE(rig.defaults().focusFilterWallpaper(), u"aurora/emerald"_s);
        QCOMPARE(rig.defaults().focusFilterEdition(), u"dark"_s);
        QCOMPARE(failure(rig.call(u"SetFocusFilter"_s, { QString(), QString() })), QString());
        QVERIFY(rig.focusFilter().wallpaper().isEmpty());

        QCOMPARE(rig.sessionProperty(u"LibraryState"_s).toString(), u"ready"_s);
        QCOMPARE(failure(rig.session(u"Refresh"_s)), QString());
        QVERIFY(
            rig.shop().setFaults(R"({"statuses": [{"endpoint": "catalogue", "status": 500}]})"));
        QCOMPARE(failure(rig.session(u"Refresh"_s)),
                 errors + u"Failed: Couldn't check for new files. The shop replied 500."_s);
    }

    // Signing in and its signals are test_quennetctl's: here, a second caller and a cancel.
    void signInJoinedAndCancelled()
    {
        AutomationRig rig;
        QVERIFY(rig.isReady());
        QCOMPARE(failure(rig.session(u"SignOut"_s)), QString());
        QCOMPARE(rig.sessionProperty(u"State"_s).toString(), u"signedOut"_s);
        rig.session(u"SignIn"_s);
        QTRY_COMPARE(rig.sessionProperty(u"State"_s).toString(), u"waiting"_s);
        const QString code = rig.sessionProperty(u"UserCode"_s).toString();
        // A second caller joins the sign-in under way rather than starting another.
        rig.session(u"SignIn"_s);
        QCOMPARE(rig.sessionProperty(u"UserCode"_s).toString(), code);
        rig.session(u"CancelSignIn"_s);
        QCOMPARE(rig.sessionProperty(u"State"_s).toString(), u"signedOut"_s);
    }

    // Each leaves the settings, the shuffle and the desktop as they were.
    void refusals_data()
    {
        QTest::addColumn<QString>("before"); // what happens first
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("error"); // name and message

        const auto row = [](const char *name, const QString &before, const QString &method,
                            const QVariantList &arguments, const QString &error) {
            QTest::newRow(name) << before << method << arguments << errors + error;
        };
        const QString noWallpaper =
            u"NoWallpaper: The main display isn't showing one of your wallpapers."_s;
        // A pack not owned and an unknown edition, for a set, are test_quennetctl's.
        row("Do Not Disturb, a pack not owned", {}, u"SetFocusFilter"_s,
            { u"harbour/slate"_s, QString() }, u"NotFound: That wallpaper isn't in your packs."_s);
        row("nothing set", {}, u"GetWallpaper"_s, {}, noWallpaper);
        row("a picture of one's own", u"own picture"_s, u"FavouriteWallpaper"_s, {}, noWallpaper);
        row("shuffle, no favourites", u"favourites"_s, u"ShuffleWallpaper"_s, {},
            u"NothingToShuffle: Add favourites to shuffle from them."_s);
        row("the desktop refuses", u"refusal"_s, u"SetWallpaper"_s,
            { u"aurora/emerald"_s, QString() }, u"Failed: The desktop said no."_s);
        const QString notSaved = u"Failed: Couldn't save your settings. Check that your disk has "
                                 u"room and try again."_s;
        row("FavouriteWallpaper, settings not saved", u"not saved"_s, u"FavouriteWallpaper"_s, {},
            notSaved);
        row("SetShuffle, settings not saved", u"not saved"_s, u"SetShuffle"_s,
            { true, u"hour"_s, QString() }, notSaved);
        row("SetFocusFilter, settings not saved", u"not saved"_s, u"SetFocusFilter"_s,
            { u"aurora/violet"_s, u"dark"_s }, notSaved);

        row("empty key", {}, u"SetWallpaper"_s, { QString(), QString() },
            u"InvalidArgument: Name a wallpaper as pack/colourway."_s);
        // Which keys are malformed is test_wallpaper_query's.
        row("malformed key", {}, u"SetWallpaper"_s, { u"Aurora/Emerald"_s, QString() },
            u"InvalidArgument: \"Aurora/Emerald\" isn't a wallpaper. Name one as pack/colourway."_s);
        row("unknown source", {}, u"SetShuffle"_s, { true, u"hour"_s, u"everything"_s },
            u"InvalidArgument: \"everything\" isn't a shuffle source. Use all or favourites."_s);
    }

    void refusals()
    {
        QFETCH(QString, before);
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);

        AutomationRig rig;
        QVERIFY(rig.isReady());
        if (before == "own picture"_L1 || before == "not saved"_L1)
            QCOMPARE(failure(rig.call(u"SetWallpaper"_s, { u"aurora/emerald"_s, QString() })),
                     QString());
        if (before == "own picture"_L1) {
            rig.desktop().shown.insert(u"A"_s, u"/home/sam/Pictures/cat.png"_s);
            Q_EMIT rig.desktop().picturesChanged();
        } else if (before == "favourites"_L1) {
            rig.shuffle().setSource(ShuffleSettings::Source::Favourites);
        } else if (before == "refusal"_L1) {
            rig.desktop().refusal = u"The desktop said no."_s;
        } else if (before == "not saved"_L1) {
            // A folder where the settings file goes: every save fails, as on a full disk.
            QFile::remove(rig.defaultsPath());
            QVERIFY(QDir().mkpath(rig.defaultsPath()));
        }
        const QString shown = rig.mainKey();
        const auto source = rig.shuffle().source();

        QTEST(failure(rig.call(method, arguments)), "error");
        QCOMPARE(rig.mainKey(), shown);
        QVERIFY(rig.favourites().keys().isEmpty());
        QVERIFY(!rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Day);
        QCOMPARE(rig.shuffle().source(), source);
        QVERIFY(rig.focusFilter().wallpaper().isEmpty());
    }

    // A set on every display that the user overtook on one of them while it downloaded: the newer
    // choice stays there, the other display takes the wallpaper, and the caller hears of it.
    void aSetPartlyOvertaken()
    {
        AutomationRig rig;
        QVERIFY(rig.isReady());
        const auto amber =
            rig.store().owned().value(u"dunes"_s).file(u"amber"_s, Edition::Automatic);
        QVERIFY(amber);
        QVERIFY(finish(rig.store().localFile(*amber)).value);
        QVERIFY(rig.shop().setFaults(R"({"bytesPerSecond": 1000})"));

        QDBusPendingCallWatcher set(
            rig.start(u"SetWallpaper"_s, { u"aurora/violet"_s, u"dark"_s }));
        QTRY_VERIFY(!rig.store().progress().isEmpty());
        const QString main = rig.displays().all().value(0).id;
        QVERIFY(finish(rig.requests().setWallpaper(u"dunes"_s, u"amber"_s, Edition::Automatic,
                                                   { main }))
                    .value);
        QTRY_VERIFY_WITH_TIMEOUT(set.isFinished(), 20'000);
        QCOMPARE(failure(set.reply()),
                 errors + u"Overtaken: Another wallpaper was set while this one downloaded."_s);
        QCOMPARE(rig.mainKey(), u"dunes/amber"_s);
        QVERIFY(!rig.picture(1).isEmpty());
        QVERIFY(rig.picture(1) != rig.picture());
    }

    void notReadyBeforeTheProgramStarts()
    {
        AutomationRig rig(AutomationRig::Stage::Unattached);
        QVERIFY(rig.isReady());
        QCOMPARE(failure(rig.call(u"GetWallpaper"_s)), errors + notReady);
        QCOMPARE(failure(rig.session(u"SignIn"_s)), errors + notReady);
    }

    // Every call waits for the library; quennetctl, as a script runs it, waits for it too.
    void notReadyWhileTheLibraryLoads()
    {
        AutomationRig rig(AutomationRig::Stage::StoreNotStarted);
        QVERIFY(rig.isReady());
        QCOMPARE(rig.sessionProperty(u"LibraryState"_s).toString(), u"loading"_s);
        const QList<std::pair<QString, QVariantList>> calls {
            { u"ShuffleWallpaper"_s, {} },
            { u"SetWallpaper"_s, { u"aurora/emerald"_s, QString() } },
            { u"GetWallpaper"_s, {} },
            { u"FavouriteWallpaper"_s, {} },
            { u"FindWallpapers"_s, { QString() } },
        };
        for (const auto &[method, arguments] : calls)
            QCOMPARE(failure(rig.call(method, arguments)), errors + notReady);
        QVERIFY(rig.desktop().requests.isEmpty());
        QVERIFY(rig.favourites().keys().isEmpty());
        QVERIFY(rig.defaults().shufflePlayed().isEmpty());

        // What the service logs tells that quennetctl's call reached it.
        static QStringList logged;
        static QtMessageHandler previous = nullptr;
        previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
                logged.append(text);
                previous(type, context, text);
            });
        QProcess quennetctl;
        quennetctl.start(QStringLiteral(QUENNETCTL), { u"get"_s });
        QVERIFY(quennetctl.waitForStarted());
        QTRY_VERIFY(
            logged.contains(u"GetWallpaper failed: Still starting. Try again in a moment."_s));
        qInstallMessageHandler(previous);
        QVERIFY(finish(rig.store().start()).value);

        QTRY_COMPARE(quennetctl.state(), QProcess::NotRunning);
        QCOMPARE(quennetctl.readAllStandardError(),
                 "The main display isn't showing one of your wallpapers.\n"_ba);
        QCOMPARE(quennetctl.exitCode(), 1);
    }
};

QTEST_GUILESS_MAIN(AutomationServiceTest)
#include "test_automation_service.moc"
