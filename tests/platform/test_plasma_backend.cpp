#include "await_task.h"
#include "bus_stand_in.h"
#include "plasma_backend.h"

#include <QJSEngine>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Answers like org.kde.PlasmaShell: runs the scripts it is sent against desktops of its own, one
// per screen, with the parts of Plasma's scripting that backends use.
class PlasmaShellStandIn {
public:
    explicit PlasmaShellStandIn(const QList<DesktopScreen> &screens)
    {
        QString geometries;
        for (const DesktopScreen &screen : screens) {
            const QRect &g = screen.geometry;
            geometries += QString::asprintf("{x:%d,y:%d,width:%d,height:%d},", g.x(), g.y(),
                                            g.width(), g.height());
        }
        // Plasma numbers screens in its own order: here backwards. desktopAt and imageGroup are
        // the stand-in's own.
        m_engine.evaluate(uR"(
var screens = [%1].reverse(), output = "", imageGroup = "Wallpaper/org.kde.image/General/";
function screenGeometry(i) { return screens[i]; }
function print(text) { output += String(text); }
function Desktop(screen) { Object.assign(this, { screen, wallpaperPlugin: "org.kde.color",
                                                 currentConfigGroup: [], config: {} }); }
Desktop.prototype.key = function(key) { return this.currentConfigGroup.join("/") + "/" + key; };
Desktop.prototype.writeConfig = function(k, v) { this.config[this.key(k)] = String(v); };
Desktop.prototype.readConfig = function(key) { return this.config[this.key(key)] || ""; };
var all = screens.map((g, i) => new Desktop(i));
function desktops() { return all; }
function desktopAt(x, y) { return all.find(d => (g => g.x == x && g.y == y)(screens[d.screen])); }
)"_s.arg(geometries));
    }

    // Runs a script of the test's own with `d` the desktop at the screen, as Plasma's settings
    // would.
    QString at(const QRect &screen, const QString &script)
    {
        const auto desktop = u"var d = desktopAt(%1, %2); "_s.arg(screen.x()).arg(screen.y());
        return m_engine.evaluate(desktop + script).toString();
    }

    BusStandIn bus { u"org.kde.plasmashell"_s, u"/PlasmaShell"_s, [this](const QDBusMessage &call) {
                        if (call.member() != "evaluateScript"_L1)
                            return QDBusMessage();
                        m_engine.globalObject().setProperty(u"output"_s, QString());
                        const QJSValue result =
                            m_engine.evaluate(call.arguments().value(0).toString());
                        // Plasma answers a failed script with a D-Bus error.
                        if (result.isError())
                            return call.createErrorReply(QDBusError::Failed, result.toString());
                        return call.createReply(
                            m_engine.globalObject().property(u"output"_s).toString());
                    } };

private:
    QJSEngine m_engine;
};

// On a private bus, with two dummy monitors side by side. The shell answers from the test's own
// thread: a backend that waited for its answers would never hear them.
class PlasmaBackendTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PlasmaShellStandIn> m_standIn;
    QList<DesktopScreen> m_screens;

private Q_SLOTS:
    void initTestCase()
    {
        m_screens = PlasmaBackend(QDBusConnection::sessionBus()).screens();
        QCOMPARE(m_screens.size(), 2);
        m_standIn = std::make_unique<PlasmaShellStandIn>(m_screens);
        QVERIFY(m_standIn->bus.start());
    }

    // Read back at start, and after each set.
    void eachScreenItsOwnImage()
    {
        const auto &screens = m_screens;
        m_standIn->at(screens[1].geometry,
                      u"d.wallpaperPlugin = 'org.kde.image'; "
                      u"d.config[imageGroup + 'Image'] = 'file:///r/theirs.png'"_s);
        PlasmaBackend backend(QDBusConnection::sessionBus());
        QSignalSpy changed(&backend, &DesktopBackend::picturesChanged);
        QVERIFY(changed.wait(5000));
        QCOMPARE(backend.picture(screens[0]), std::nullopt); // a plain colour
        QCOMPARE(backend.picture(screens[1]), u"/r/theirs.png"_s);
        awaitTask(backend.setPicture({ .path = u"/r/left one.png"_s }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = u"/r/right.png"_s }, { screens[1] }));
        const auto shown = u"[d.wallpaperPlugin, ...['Image', 'FillMode'].map(k => "
                           u"d.config[imageGroup + k])].join(' ')"_s;
        QCOMPARE(m_standIn->at(screens[0].geometry, shown),
                 u"org.kde.image file:///r/left one.png 2"_s);
        QCOMPARE(m_standIn->at(screens[1].geometry, shown),
                 u"org.kde.image file:///r/right.png 2"_s);
        QCOMPARE(backend.picture(screens[1]), u"/r/right.png"_s);

        // Quotes cannot break out of the script.
        const QString path = u"/r/it's \"quoted\"\\ \n.png"_s;
        awaitTask(backend.setPicture({ .path = path }, { screens[0] }));
        QCOMPARE(backend.picture(screens[0]), path);

        // Without Plasma, setting fails.
        m_standIn->bus.stop();
        QVERIFY_THROWS_EXCEPTION(DesktopError,
                                 awaitTask(backend.setPicture({ .path = u"/x.png"_s }, screens)));
    }
};

QTEST_MAIN(PlasmaBackendTest)
#include "test_plasma_backend.moc"
