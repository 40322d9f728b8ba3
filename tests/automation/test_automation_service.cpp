#include "automation_rig.h"
#include "await_task.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString errors = u"app.quennet.Quennet.Error."_s;

// The ids of an a(sss) reply.
QStringList ids(const QDBusMessage &reply)
{
    QStringList ids;
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        WallpaperEntity entity;
        list >> entity;
        ids.append(entity.id);
    }
    list.endArray();
    return ids;
}

// What the service logs, for a test that must know a call reached it.
QStringList logged;
QtMessageHandler previousHandler = nullptr;
void keepMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    logged.append(text);
    previousHandler(type, context, text);
}

QString failure(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ErrorMessage
        ? reply.errorName() + u": "_s + reply.errorMessage()
        : u"no error"_s;
}
} // namespace

// Quennet's automation over the session bus, as another program calls it.
class AutomationServiceTest : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &)
    {
        if (interface == AutomationService::sessionInterface)
            m_announced.append(changed);
    }

private Q_SLOTS:
    void everyMethod()
    {
        AutomationRig rig;
        QVERIFY(rig.isReady());

        // The owned packs in library order: not harbour (not owned), nor glacier (not released).
        const QStringList library { u"aurora/emerald"_s, u"aurora/violet"_s, u"dunes/amber"_s,
                                    u"dunes/rose"_s,     u"meadow/clover"_s, u"meadow/spring"_s };
        QCOMPARE(ids(rig.automation(u"FindWallpapers"_s, { QString() })), library);
        QCOMPARE(ids(rig.automation(u"FindWallpapers"_s, { u"aur  vio"_s })),
                 QStringList { u"aurora/violet"_s });

        auto reply = rig.automation(u"SetWallpaper"_s, { u"dunes/rose"_s, u"dark"_s });
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QCOMPARE(rig.mainKey(), u"dunes/rose"_s);
        QCOMPARE(rig.picture(1), rig.picture());
        QCOMPARE(rig.desktop().requests.size(), 1);

        reply = rig.automation(u"GetWallpaper"_s);
        QCOMPARE(reply.arguments(), (QVariantList { u"dunes/rose"_s, u"ROSE"_s, u"DUNES"_s }));

        reply = rig.automation(u"FavouriteWallpaper"_s);
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QCOMPARE(rig.defaults().favouriteColourways(), QStringList { u"dunes/rose"_s });
        // Favouriting is no toggle, and a favourite keeps its place.
        const QStringList favourites { u"dunes/amber"_s, u"dunes/rose"_s, u"meadow/spring"_s };
        rig.favourites().setKeys(favourites);
        reply = rig.automation(u"FavouriteWallpaper"_s);
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QCOMPARE(rig.favourites().keys(), favourites);

        reply = rig.automation(u"SetShuffle"_s, { true, u"hour"_s, u"favourites"_s });
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QVERIFY(rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Hour);
        QCOMPARE(rig.defaults().shuffleSource(), u"favourites"_s);
        // Empty texts leave the interval and the source.
        rig.automation(u"SetShuffle"_s, { false, QString(), u"all"_s });
        QVERIFY(!rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Hour);
        QCOMPARE(rig.shuffle().source(), ShuffleSettings::Source::All);

        QCOMPARE(rig.automation(u"SetFocusFilter"_s, { u"aurora/emerald"_s, u"dark"_s }).type(),
                 QDBusMessage::ReplyMessage);
        QCOMPARE(rig.defaults().focusFilterWallpaper(), u"aurora/emerald"_s);
        QCOMPARE(rig.defaults().focusFilterEdition(), u"dark"_s);
        QCOMPARE(rig.automation(u"SetFocusFilter"_s, { QString(), QString() }).type(),
                 QDBusMessage::ReplyMessage);
        QVERIFY(rig.defaults().focusFilterWallpaper().isEmpty());

        // The shuffle may draw the wallpaper shown already: what it drew is what shows.
        reply = rig.automation(u"ShuffleWallpaper"_s);
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QCOMPARE(rig.desktop().requests.size(), 2);
        QCOMPARE(rig.defaults().shufflePlayed(), QStringList { rig.mainKey() });

        QCOMPARE(rig.sessionProperty(u"State"_s).toString(), u"signedIn"_s);
        QCOMPARE(rig.sessionProperty(u"LibraryState"_s).toString(), u"ready"_s);
        reply = rig.session(u"Refresh"_s);
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        const QJsonObject broken { { u"endpoint"_s, u"catalogue"_s }, { u"status"_s, 500 } };
        QVERIFY(rig.shop().shop().setFaults({ { u"statuses"_s, QJsonArray { broken } } }));
        reply = rig.session(u"Refresh"_s);
        QCOMPARE(reply.errorName(), errors + u"Failed"_s);
        QCOMPARE(reply.errorMessage(), u"Couldn't check for new files. The shop replied 500."_s);
    }

    void signInAndOut()
    {
        AutomationRig rig;
        QVERIFY(rig.isReady());
        QVERIFY(rig.client().connect(AutomationService::serviceName, AutomationService::objectPath,
                                     u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                                     this,
                                     SLOT(propertiesChanged(QString, QVariantMap, QStringList))));
        m_announced.clear();

        auto reply = rig.session(u"SignOut"_s);
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(failure(reply)));
        QCOMPARE(rig.sessionProperty(u"State"_s).toString(), u"signedOut"_s);
        QTRY_VERIFY(!m_announced.isEmpty());
        QCOMPARE(m_announced.first().value(u"State"_s).toString(), u"signedOut"_s);

        rig.session(u"SignIn"_s);
        QTRY_COMPARE(rig.sessionProperty(u"State"_s).toString(), u"waiting"_s);
        const QString code = rig.sessionProperty(u"UserCode"_s).toString();
        QVERIFY(!code.isEmpty());
        QVERIFY(rig.sessionProperty(u"VerificationURI"_s).toString().startsWith(u"https://"_s));
        // A second caller joins the sign-in under way rather than starting another.
        rig.session(u"SignIn"_s);
        QCOMPARE(rig.sessionProperty(u"UserCode"_s).toString(), code);
        QVERIFY(rig.shop().shop().approve(code));
        QTRY_COMPARE_WITH_TIMEOUT(rig.sessionProperty(u"State"_s).toString(), u"signedIn"_s,
                                  10'000);
        QTRY_VERIFY(
            std::any_of(m_announced.cbegin(), m_announced.cend(), [](const QVariantMap &changed) {
                return changed.value(u"State"_s) == u"signedIn"_s;
            }));

        rig.session(u"SignOut"_s);
        rig.session(u"SignIn"_s);
        rig.session(u"CancelSignIn"_s);
        QCOMPARE(rig.sessionProperty(u"State"_s).toString(), u"signedOut"_s);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("before"); // what happens first
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("message");

        const QString notFound = u"That wallpaper isn't in your packs."_s;
        const QString noWallpaper = u"The main display isn't showing one of your wallpapers."_s;
        QTest::newRow("a pack not owned")
            << QString() << u"SetWallpaper"_s << QVariantList { u"harbour/slate"_s, QString() }
            << u"NotFound"_s << notFound;
        QTest::newRow("Do Not Disturb, a pack not owned")
            << QString() << u"SetFocusFilter"_s << QVariantList { u"harbour/slate"_s, QString() }
            << u"NotFound"_s << notFound;
        QTest::newRow("nothing set")
            << QString() << u"GetWallpaper"_s << QVariantList() << u"NoWallpaper"_s << noWallpaper;
        QTest::newRow("a picture of one's own")
            << u"own picture"_s << u"FavouriteWallpaper"_s << QVariantList() << u"NoWallpaper"_s
            << noWallpaper;
        QTest::newRow("shuffle, no favourites")
            << u"favourites"_s << u"ShuffleWallpaper"_s << QVariantList() << u"NothingToShuffle"_s
            << u"Add favourites to shuffle from them."_s;
        QTest::newRow("the desktop refuses")
            << u"refusal"_s << u"SetWallpaper"_s << QVariantList { u"aurora/emerald"_s, QString() }
            << u"Failed"_s << u"The desktop said no."_s;
        const QString notSaved =
            u"Couldn't save your settings. Check that your disk has room and try again."_s;
        const QList<std::pair<QString, QVariantList>> settings {
            { u"FavouriteWallpaper"_s, {} },
            { u"SetShuffle"_s, { true, u"hour"_s, QString() } },
            { u"SetFocusFilter"_s, { u"aurora/violet"_s, u"dark"_s } },
        };
        for (const auto &[method, arguments] : settings)
            QTest::addRow("%s, settings not saved", qPrintable(method))
                << u"not saved"_s << method << arguments << u"Failed"_s << notSaved;
    }

    void failures()
    {
        QFETCH(QString, before);
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);
        QFETCH(QString, error);
        QFETCH(QString, message);

        AutomationRig rig;
        QVERIFY(rig.isReady());
        if (before == "own picture"_L1) {
            QCOMPARE(rig.automation(u"SetWallpaper"_s, { u"aurora/emerald"_s, QString() }).type(),
                     QDBusMessage::ReplyMessage);
            rig.desktop().shown.insert(u"A"_s, u"/home/sam/Pictures/cat.png"_s);
            Q_EMIT rig.desktop().picturesChanged();
        } else if (before == "favourites"_L1) {
            rig.shuffle().setSource(ShuffleSettings::Source::Favourites);
        } else if (before == "refusal"_L1) {
            rig.desktop().refusal = u"The desktop said no."_s;
        } else if (before == "not saved"_L1) {
            QCOMPARE(rig.automation(u"SetWallpaper"_s, { u"aurora/emerald"_s, QString() }).type(),
                     QDBusMessage::ReplyMessage);
            // A folder where the settings file goes: every save fails, as on a full disk.
            QFile::remove(rig.defaultsPath());
            QVERIFY(QDir().mkpath(rig.defaultsPath()));
        }

        const QDBusMessage reply = rig.automation(method, arguments);
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
        QCOMPARE(reply.errorName(), errors + error);
        QCOMPARE(reply.errorMessage(), message);
        // A failure changes nothing.
        QVERIFY(rig.favourites().keys().isEmpty());
        QVERIFY(!rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Day);
        QVERIFY(rig.focusFilter().wallpaper().isEmpty());
    }

    void badArgumentsChangeNothing_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("message");

        const QString edition = u"isn't an edition. Use automatic, timeOfDay, light or dark."_s;
        QTest::newRow("empty key") << u"SetWallpaper"_s << QVariantList { QString(), QString() }
                                   << u"Name a wallpaper as pack/colourway."_s;
        // Which keys are malformed is test_wallpaper_query's.
        QTest::newRow("malformed key")
            << u"SetWallpaper"_s << QVariantList { u"Aurora/Emerald"_s, QString() }
            << u"\"Aurora/Emerald\" isn't a wallpaper. Name one as pack/colourway."_s;
        QTest::newRow("unknown edition")
            << u"SetWallpaper"_s << QVariantList { u"aurora/emerald"_s, u"sepia"_s }
            << u"\"sepia\" "_s + edition;
        // The shop's own raw values are not the automation's.
        QTest::newRow("shop's edition")
            << u"SetWallpaper"_s << QVariantList { u"aurora/emerald"_s, u"time-of-day"_s }
            << u"\"time-of-day\" "_s + edition;
        QTest::newRow("Do Not Disturb, unknown edition")
            << u"SetFocusFilter"_s << QVariantList { u"aurora/emerald"_s, u"sepia"_s }
            << u"\"sepia\" "_s + edition;
        QTest::newRow("unknown interval")
            << u"SetShuffle"_s << QVariantList { true, u"fortnight"_s, u"favourites"_s }
            << u"\"fortnight\" isn't a shuffle interval. Use hour, sixHours, day or week."_s;
        QTest::newRow("stored interval")
            << u"SetShuffle"_s << QVariantList { true, u"six-hours"_s, QString() }
            << u"\"six-hours\" isn't a shuffle interval. Use hour, sixHours, day or week."_s;
        QTest::newRow("unknown source")
            << u"SetShuffle"_s << QVariantList { true, u"hour"_s, u"everything"_s }
            << u"\"everything\" isn't a shuffle source. Use all or favourites."_s;
    }

    void badArgumentsChangeNothing()
    {
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);
        QFETCH(QString, message);

        AutomationRig rig;
        QVERIFY(rig.isReady());
        const QDBusMessage reply = rig.automation(method, arguments);
        QCOMPARE(reply.errorName(), errors + u"InvalidArgument"_s);
        QCOMPARE(reply.errorMessage(), message);

        QVERIFY(rig.desktop().requests.isEmpty());
        QVERIFY(!rig.shuffle().isOn());
        QCOMPARE(rig.shuffle().interval(), ShuffleSettings::Interval::Day);
        QCOMPARE(rig.shuffle().source(), ShuffleSettings::Source::All);
        QVERIFY(!rig.defaults().shuffleIsOn());
        QVERIFY(rig.defaults().focusFilterWallpaper().isEmpty());
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
        QVERIFY(rig.shop().shop().setFaults(QJsonObject { { u"bytesPerSecond"_s, 1000 } }));

        QDBusPendingCallWatcher set(
            rig.start(u"SetWallpaper"_s, { u"aurora/violet"_s, u"dark"_s }));
        QTRY_VERIFY(!rig.store().progress().isEmpty());
        const QString main = rig.displays().all().value(0).id;
        QVERIFY(finish(rig.requests().setWallpaper(u"dunes"_s, u"amber"_s, Edition::Automatic,
                                                   { main }))
                    .value);
        QCOMPARE(rig.mainKey(), u"dunes/amber"_s);

        QTRY_VERIFY_WITH_TIMEOUT(set.isFinished(), 20'000);
        QCOMPARE(set.error().name(), errors + u"Overtaken"_s);
        QCOMPARE(set.error().message(), u"Another wallpaper was set while this one downloaded."_s);
        QCOMPARE(rig.mainKey(), u"dunes/amber"_s);
        QVERIFY(!rig.picture(1).isEmpty());
        QVERIFY(rig.picture(1) != rig.picture());
    }

    void notReadyBeforeTheProgramStarts()
    {
        // On the bus before the program has made the objects it hands to the service.
        AutomationService service;
        auto bus = QDBusConnection::sessionBus();
        QVERIFY(service.registerOn(bus));
        QVERIFY(bus.registerService(AutomationService::serviceName));
        auto client = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"early-client"_s);
        for (const auto &[interface, method] :
             { std::pair(AutomationService::automationInterface, "GetWallpaper"_L1),
               std::pair(AutomationService::sessionInterface, "SignIn"_L1) }) {
            const auto call = QDBusMessage::createMethodCall(
                AutomationService::serviceName, AutomationService::objectPath, interface, method);
            QDBusPendingCallWatcher reply(client.asyncCall(call));
            QTRY_VERIFY(reply.isFinished());
            QCOMPARE(reply.error().name(), errors + u"NotReady"_s);
        }
        QDBusConnection::disconnectFromBus(u"early-client"_s);
        bus.unregisterService(AutomationService::serviceName);
    }

    // Every call waits for the library; quennetctl, as a script runs it, waits for it too.
    void notReadyWhileTheLibraryLoads()
    {
        AutomationRig rig(false);
        QVERIFY(rig.isReady());
        QCOMPARE(rig.sessionProperty(u"LibraryState"_s).toString(), u"loading"_s);
        const QList<std::pair<QString, QVariantList>> calls {
            { u"ShuffleWallpaper"_s, {} },
            { u"SetWallpaper"_s, { u"aurora/emerald"_s, QString() } },
            { u"GetWallpaper"_s, {} },
            { u"FavouriteWallpaper"_s, {} },
            { u"FindWallpapers"_s, { QString() } },
        };
        for (const auto &[method, arguments] : calls) {
            const QDBusMessage reply = rig.automation(method, arguments);
            QCOMPARE(reply.errorName(), errors + u"NotReady"_s);
            QCOMPARE(reply.errorMessage(), u"Still starting. Try again in a moment."_s);
        }
        QVERIFY(rig.desktop().requests.isEmpty());
        QVERIFY(rig.favourites().keys().isEmpty());
        QVERIFY(rig.defaults().shufflePlayed().isEmpty());

        logged.clear();
        previousHandler = qInstallMessageHandler(keepMessage);
        QProcess quennetctl;
        quennetctl.start(QStringLiteral(QUENNETCTL), { u"get"_s });
        QVERIFY(quennetctl.waitForStarted());
        QTRY_VERIFY(
            logged.contains(u"GetWallpaper failed: Still starting. Try again in a moment."_s));
        qInstallMessageHandler(previousHandler);
        QVERIFY(finish(rig.store().start()).value);

        QTRY_COMPARE(quennetctl.state(), QProcess::NotRunning);
        QCOMPARE(quennetctl.readAllStandardError(),
                 "The main display isn't showing one of your wallpapers.\n"_ba);
        QCOMPARE(quennetctl.exitCode(), 1);
    }

private:
    QList<QVariantMap> m_announced;
};

QTEST_GUILESS_MAIN(AutomationServiceTest)
#include "test_automation_service.moc"
