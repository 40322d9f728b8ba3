#include "await_task.h"
#include "plasma_backend.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QJSEngine>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

// Answers like org.kde.PlasmaShell: runs the scripts it is sent against desktops of its own, one
// per screen, with the parts of Plasma's scripting that backends use.
class PlasmaShellStandIn : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.PlasmaShell")

public:
    explicit PlasmaShellStandIn(const QList<QRect> &screens)
    {
        QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
        m_engine.globalObject().setProperty(u"host"_s, m_engine.newQObject(this));
        QString geometries;
        for (const QRect &screen : screens)
            geometries += u"{x:%1,y:%2,width:%3,height:%4},"_s.arg(screen.x()).arg(screen.y()).arg(screen.width()).arg(screen.height());
        // Plasma numbers screens in its own order: here backwards.
        m_engine.evaluate(uR"(
var screens = [%1].reverse();
function screenGeometry(i) { return screens[i]; }
function print(text) { host.print(String(text)); }
function Desktop(screen) { this.screen = screen; this.wallpaperPlugin = "org.kde.color"; this.currentConfigGroup = []; this.config = {}; }
Desktop.prototype.writeConfig = function(key, value) { this.config[this.currentConfigGroup.join("/") + "/" + key] = String(value); };
Desktop.prototype.readConfig = function(key) { var v = this.config[this.currentConfigGroup.join("/") + "/" + key]; return v === undefined ? "" : v; };
var all = screens.map(function(g, i) { return new Desktop(i); });
function desktops() { return all; }
)"_s.arg(geometries));
    }

    // The image a screen's desktop shows, as Plasma keeps it.
    QString image(const QRect &screen)
    {
        return m_engine.evaluate(uR"(
(function() { for (var i = 0; i < all.length; i++) { var g = screens[all[i].screen];
  if (g.x == %1 && g.y == %2) return all[i].wallpaperPlugin + " " + all[i].config["Wallpaper/org.kde.image/General/Image"] + " " + all[i].config["Wallpaper/org.kde.image/General/FillMode"]; } })()
)"_s.arg(screen.x()).arg(screen.y())).toString();
    }

    Q_INVOKABLE void print(const QString &text) { m_output += text; }

public Q_SLOTS:
    QString evaluateScript(const QString &script)
    {
        m_output.clear();
        const QJSValue result = m_engine.evaluate(script);
        // Plasma answers a failed script with a D-Bus error.
        if (result.isError())
            sendErrorReply(QDBusError::Failed, result.toString());
        return m_output;
    }

private:
    QJSEngine m_engine;
    QString m_output;
};

// On a private bus, with two dummy monitors side by side.
class PlasmaBackendTest : public QObject
{
    Q_OBJECT

    QDBusConnection m_shell = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"plasmashell"_s);
    // The shell answers from a thread of its own, as another process would: the backend reads
    // with blocking calls.
    QThread m_thread;
    QObject m_inThread;
    PlasmaShellStandIn *m_standIn = nullptr;

    QString imageOn(const QRect &screen)
    {
        QString image;
        QMetaObject::invokeMethod(&m_inThread, [&] { image = m_standIn->image(screen); }, Qt::BlockingQueuedConnection);
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        PlasmaBackend backend(QDBusConnection::sessionBus());
        QList<QRect> geometries;
        for (const DesktopScreen &screen : backend.screens())
            geometries.append(screen.geometry);
        QCOMPARE(geometries.size(), 2);
        m_inThread.moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(&m_inThread, [&] { m_standIn = new PlasmaShellStandIn(geometries); },
                                  Qt::BlockingQueuedConnection);
        QVERIFY(m_shell.registerObject(u"/PlasmaShell"_s, m_standIn, QDBusConnection::ExportAllSlots));
        QVERIFY(m_shell.registerService(u"org.kde.plasmashell"_s));
    }

    void cleanupTestCase()
    {
        m_shell.unregisterObject(u"/PlasmaShell"_s);
        QMetaObject::invokeMethod(&m_inThread, [&] { delete m_standIn; }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

    void eachScreenItsOwnImage()
    {
        PlasmaBackend backend(QDBusConnection::sessionBus());
        const auto screens = backend.screens();
        QCOMPARE(backend.picture(screens[0]), std::nullopt); // a plain colour
        awaitTask(backend.setPicture({ .path = u"/r/left one.png"_s }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = u"/r/right.png"_s }, { screens[1] }));
        QCOMPARE(imageOn(screens[0].geometry), u"org.kde.image file:///r/left one.png 2"_s);
        QCOMPARE(imageOn(screens[1].geometry), u"org.kde.image file:///r/right.png 2"_s);
        QCOMPARE(backend.picture(screens[0]), u"/r/left one.png"_s);
        QCOMPARE(backend.picture(screens[1]), u"/r/right.png"_s);
    }

    void quotesCannotBreakOutOfTheScript()
    {
        PlasmaBackend backend(QDBusConnection::sessionBus());
        const auto screen = backend.screens().constFirst();
        const QString path = u"/r/it's \"quoted\"\\ \n.png"_s;
        awaitTask(backend.setPicture({ .path = path }, { screen }));
        QCOMPARE(backend.picture(screen), path);
    }

    void withoutPlasmaSettingFails()
    {
        PlasmaBackend backend(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s));
        m_shell.unregisterService(u"org.kde.plasmashell"_s);
        QVERIFY_THROWS_EXCEPTION(DesktopError, awaitTask(backend.setPicture({ .path = u"/x.png"_s }, backend.screens())));
        QVERIFY(m_shell.registerService(u"org.kde.plasmashell"_s));
    }
};

QTEST_MAIN(PlasmaBackendTest)
#include "test_plasma_backend.moc"
