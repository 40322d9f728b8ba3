#include "pixels.h"
#include "root_pixels.h"
#include "shop_profile.h"
#include "test_files.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRect>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;

namespace {
QString xdotool(const QStringList &arguments)
{
    // Xlib ends xdotool on the first error, and a search fails so whenever a window goes while it
    // looks, as windows do while Quennet starts: such a run says nothing, so it is made again.
    for (int attempt = 0;; ++attempt) {
        QProcess process;
        process.start(u"xdotool"_s, arguments);
        process.waitForFinished(10'000);
        if (attempt == 10 || !process.readAllStandardError().contains("X Error of failed request"))
            return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
}

// The first visible window whose name is exactly this.
QString windowNamed(const QString &name)
{
    return xdotool({ u"search"_s, u"--onlyvisible"_s, u"--name"_s, u'^' + name + u'$' })
        .split(u'\n')
        .value(0);
}

QRect geometryOf(const QString &window)
{
    QHash<QString, int> values;
    for (const QString &line :
         xdotool({ u"getwindowgeometry"_s, u"--shell"_s, window }).split(u'\n'))
        values.insert(line.section(u'=', 0, 0), line.section(u'=', 1).toInt());
    return { values[u"X"_s], values[u"Y"_s], values[u"WIDTH"_s], values[u"HEIGHT"_s] };
}

void click(QPoint point, int button = 1)
{
    xdotool({ u"mousemove"_s, QString::number(point.x()), QString::number(point.y()), u"click"_s,
              QString::number(button) });
}

void key(const QString &window, const QStringList &keys)
{
    xdotool(QStringList { u"windowfocus"_s, u"--sync"_s, window });
    xdotool(QStringList { u"key"_s, u"--delay"_s, u"150"_s } + keys);
}

// One node a screen reader finds in a showing window of Quennet, and the role of its parent.
struct Node {
    QString window, role, name;
    QStringList states;
    QString parent;
};

// Quennet's showing windows as the accessibility bus has them, depth-first.
QList<Node> accessibleTree()
{
    QProcess walk;
    walk.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Debian's own Python, which has pyatspi.
    walk.start(u"/usr/bin/python3"_s, { QStringLiteral(ACCESSIBLE_TREE), u"Quennet"_s });
    walk.waitForFinished(60'000);
    QList<Node> nodes;
    for (const QString &line :
         QString::fromUtf8(walk.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(u'\t');
        if (fields.size() == 5)
            nodes.append({ fields[0], fields[1], fields[2], fields[3].split(u','), fields[4] });
    }
    return nodes;
}

// The window's controls a person acts on that a screen reader could call only by their role; the
// window itself when it is not on the accessibility bus.
QStringList unnamedControls(const QString &window)
{
    static const QStringList interactive =
        u"push button,toggle button,check box,radio button,list item,menu item,combo box,slider,"
        "spin button,text,entry,page tab,link"_s.split(u',');
    QStringList unnamed { window };
    QString before; // the last name, to tell where a nameless node is
    for (const Node &node : accessibleTree()) {
        if (node.window != window)
            continue;
        unnamed.removeAll(window);
        // A combo box's text, which shows its choice, has the combo box's name.
        const bool named = node.role == "text"_L1 && node.parent == "combo box"_L1;
        if (interactive.contains(node.role) && !named && node.name.trimmed().isEmpty())
            unnamed.append(u"a "_s + node.role + u" after \""_s + before + u'"');
        if (!node.name.isEmpty())
            before = node.name;
    }
    return unnamed;
}

// The window's unnamed controls once it has had up to 10 s to show them all named. A walk of the
// tree takes seconds, so the wait is bounded in time rather than in walks.
QStringList unnamedControlsSettled(const QString &window)
{
    QStringList unnamed;
    const auto allNamed = [&] { return (unnamed = unnamedControls(window)).isEmpty(); };
    return QTest::qWaitFor(allNamed, 10'000) ? QStringList() : unnamed;
}

// The node that has the keyboard's focus in the window with this title: the innermost, as the
// lists around it say they have it too.
std::optional<Node> focused(const QString &title)
{
    std::optional<Node> found;
    for (const Node &node : accessibleTree())
        found = node.window == title && node.states.contains(u"focused"_s) ? node : found;
    return found;
}

// Tab, as often as it takes, to the window's next control in this role.
std::optional<Node> tabTo(const QString &title, const QString &role)
{
    for (int i = 0; i < 30; ++i) {
        key(windowNamed(title), { u"Tab"_s });
        if (const auto node = focused(title); node && node->role == role)
            return node;
    }
    return std::nullopt;
}
} // namespace

// Quennet as a person meets it: under Xorg with two monitors, a tray and the development shop,
// signed in through the approval flow, with a colourway chosen in the panel for each monitor.
class ApplicationTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_bin;
    SampleShop m_shop;
    QProcess m_tray;
    QProcess m_portal;
    QProcess m_quennet;

    // The small window Quennet's icon lives in, inside the tray.
    QRect trayIcon()
    {
        for (const QString &id :
             xdotool({ u"search"_s, u"--classname"_s, u"quennet"_s }).split(u'\n')) {
            const QRect rect = geometryOf(id);
            if (!rect.isEmpty() && rect.width() <= 48 && rect.height() <= 48)
                return rect;
        }
        return {};
    }

    void setScheme(const QByteArray &scheme)
    {
        QVERIFY(writeFile(m_bin.filePath(u"scheme"_s), scheme));
    }

    // What each display shows, by display id.
    QJsonObject placements()
    {
        return QJsonDocument::fromJson(
                   readAll(m_shop.folder + u"/placements.json"_s))["placements"_L1]
            .toObject();
    }

    std::optional<QJsonObject> placement(int display)
    {
        // The records do not say which display is which monitor: the picture shown decides.
        const QColor shown = rootPixel(960 + 1920 * display, 540);
        for (const QJsonValue &value : placements()) {
            if (near(shown, middleOf(value["path"_L1].toString())))
                return value.toObject();
        }
        return std::nullopt;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_shop.start());

        QVERIFY(standInBrowser(m_bin.path()));
        qputenv("QT_QUICK_BACKEND", "software");
        qputenv("QUENNET_REDUCED_MOTION", "1");
        // Qt puts its tree on the accessibility bus without waiting for a screen reader to ask.
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        // Seconds since each start, so a slow start can be told apart from a lost window.
        qputenv("QT_MESSAGE_PATTERN", "%{time process} %{category}: %{message}");

        // The desktop's colour scheme, as the portal says it: light for now.
        setScheme("light");
        m_portal.start(QStringLiteral(QUENNET_COLOUR_SCHEME), { m_bin.filePath(u"scheme"_s) });
        QVERIFY(m_portal.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QDBusConnection::sessionBus().interface()->isServiceRegistered(
                                     u"org.freedesktop.portal.Desktop"_s),
                                 10'000);

        QVERIFY(QProcess::execute(u"xsetroot"_s, { u"-solid"_s, u"#202020"_s }) == 0);
        m_tray.start(u"trayer"_s,
                     { u"--edge"_s, u"top"_s, u"--align"_s, u"right"_s, u"--widthtype"_s,
                       u"pixel"_s, u"--width"_s, u"200"_s, u"--height"_s, u"32"_s });
        QVERIFY(m_tray.waitForStarted());
        // Its errors are read at the end, for what the views ran into.
        m_quennet.setProcessChannelMode(QProcess::ForwardedOutputChannel);
        m_quennet.setStandardErrorFile(m_bin.filePath(u"quennet-errors.log"_s), QIODevice::Append);
        m_quennet.start(QStringLiteral(QUENNET_PROGRAM), {});
        QVERIFY(m_quennet.waitForStarted());
    }

    // What Quennet wrote so far, to tell why a case failed.
    void cleanup()
    {
        if (QTest::currentTestFailed())
            fputs(readAll(m_bin.filePath(u"quennet-errors.log"_s)).constData(), stderr);
    }

    void cleanupTestCase()
    {
        m_quennet.terminate();
        m_quennet.waitForFinished(5000);
        for (QProcess *helper : { &m_tray, &m_portal }) {
            helper->kill();
            helper->waitForFinished();
        }
    }

    // Return on the sign-in sheet opens the approval page; once it is approved, the library
    // loads.
    void signIn()
    {
        QString main;
        // The first start on a fresh machine also fills the caches of fonts and libraries.
        QTRY_VERIFY_WITH_TIMEOUT(!(main = windowNamed(u"Quennet"_s)).isEmpty(), 60'000);
        // The window says "Loading your packs…" until the secret store has answered: Return
        // starts the sign-in only once the button shows, which the session's state then tells.
        // A plain call: QDBusInterface's introspected meta-object outlives the test.
        const auto signInState = [] {
            auto call =
                QDBusMessage::createMethodCall(u"app.quennet.Quennet"_s, u"/app/quennet/Quennet"_s,
                                               u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
            call << u"app.quennet.Quennet.Session"_s << u"State"_s;
            const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
            return reply.arguments().value(0).value<QDBusVariant>().variant().toString();
        };
        QTRY_VERIFY_WITH_TIMEOUT((key(main, { u"Return"_s }), signInState() != "signedOut"_L1),
                                 60'000);
        QCOMPARE(unnamedControlsSettled(u"Quennet"_s), QStringList());
        const QString opened = m_bin.filePath(u"opened"_s);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(opened), 30'000);
        const QUrl page(QString::fromUtf8(readAll(opened)).trimmed());
        QVERIFY(m_shop.shop.approve(QUrlQuery(page).queryItemValue(u"user_code"_s)));
        // The store keeps the library it loaded in its disk copy.
        QTRY_VERIFY_WITH_TIMEOUT(hasLibrary(m_shop.folder), 20'000);
        // Closed, the main window leaves the desktop to be seen.
        key(main, { u"ctrl+w"_s });
        QTRY_VERIFY_WITH_TIMEOUT(windowNamed(u"Quennet"_s).isEmpty(), 10'000);
    }

    // A click on the tray icon opens the panel under it, inside the screen, and a colourway is set
    // from it on each display.
    void aColourwayOnEachDisplayFromThePanel()
    {
        QRect icon;
        QTRY_VERIFY_WITH_TIMEOUT(!(icon = trayIcon()).isEmpty(), 10'000);
        click(icon.center());
        QString panel;
        QTRY_VERIFY_WITH_TIMEOUT(!(panel = windowNamed(u"Quennet Panel"_s)).isEmpty(), 10'000);
        // The exact frame is test_panel_rules' to check; here, that the panel knows its icon.
        const QRect frame = geometryOf(panel);
        QCOMPARE(frame.top(), icon.bottom() + 1 + 6);
        QVERIFY(qAbs(frame.center().x() - icon.center().x()) <= 180);
        QCOMPARE(unnamedControlsSettled(u"Quennet Panel"_s), QStringList());

        // Return sets the first colourway on the main display; a click on the other display in
        // the panel's desk, then the next colourway, sets that one there.
        key(panel, { u"Return"_s });
        std::optional<QJsonObject> left;
        QTRY_VERIFY2_WITH_TIMEOUT((left = placement(0)).has_value(),
                                  qPrintable(rootPixel(960, 540).name()), 30'000);

        // The desk is at the top of the panel, the second display its right half.
        click(QPoint(frame.left() + 14 + 332 * 3 / 4, frame.top() + 100));
        key(panel, { u"Right"_s, u"Return"_s });
        std::optional<QJsonObject> right;
        QTRY_VERIFY2_WITH_TIMEOUT((right = placement(1)).has_value(),
                                  qPrintable(rootPixel(2880, 540).name()), 30'000);

        QCOMPARE((*left)["pack"_L1].toString(), u"aurora"_s);
        QVERIFY((*left)["colourway"_L1] != (*right)["colourway"_L1]);
        QVERIFY(!near(rootPixel(960, 540), rootPixel(1920 + 960, 540)));
    }

    // The main display's automatic wallpaper turns dark with the scheme. Quennet, stopped, is
    // started again after the scheme went back to light, as at the next login: the light picture
    // comes back.
    void automaticFollowsTheSchemeFromStart()
    {
        QCOMPARE(placement(0).value_or(QJsonObject())["edition"_L1].toString(), u"appearance"_s);
        const QColor light = rootPixel(960, 540);
        setScheme("dark");
        QTRY_VERIFY_WITH_TIMEOUT(!near(rootPixel(960, 540), light), 20'000);

        m_quennet.terminate();
        QVERIFY(m_quennet.waitForFinished(10'000));
        setScheme("light");
        m_quennet.start(QStringLiteral(QUENNET_PROGRAM), { u"--at-login"_s });
        QVERIFY(m_quennet.waitForStarted());
        QTRY_VERIFY2_WITH_TIMEOUT(near(rootPixel(960, 540), light),
                                  qPrintable(rootPixel(960, 540).name()), 20'000);
    }

    // Without the mouse, in the main window that a second start opened: Tab to the chosen display
    // and Right to the other, Tab on to the colourways, where Return sets the current one there,
    // and to its heart, where Space makes it a favourite. Ctrl+, opens the settings: the arrows go
    // through the panes and Escape closes them. A screen reader can name every control on the way.
    void keyboardOnly()
    {
        // A second start asks the first to open its main window, and leaves.
        QVERIFY(windowNamed(u"Quennet"_s).isEmpty());
        QCOMPARE(QProcess::execute(QStringLiteral(QUENNET_PROGRAM), {}), 0);
        QString main;
        QTRY_VERIFY_WITH_TIMEOUT(!(main = windowNamed(u"Quennet"_s)).isEmpty(), 10'000);
        QCOMPARE(m_quennet.state(), QProcess::Running);
        QCOMPARE(unnamedControlsSettled(u"Quennet"_s), QStringList());
        const QJsonObject before = placements();

        std::optional<Node> display = tabTo(u"Quennet"_s, u"radio button"_s);
        QVERIFY(display && display->states.contains(u"checked"_s));
        key(main, { u"Right"_s, u"space"_s });
        const std::optional<Node> other = focused(u"Quennet"_s);
        QVERIFY(other && other->name != display->name && other->states.contains(u"checked"_s));
        const std::optional<Node> tile = tabTo(u"Quennet"_s, u"list item"_s);
        QVERIFY(tile && tile->name.contains(u" from Aurora"_s));
        key(main, { u"Return"_s });
        // One display changes, the right one, to the colourway the tile named.
        const auto changed = [&] {
            QStringList displays;
            const QJsonObject after = placements();
            for (auto it = after.begin(); it != after.end(); ++it) {
                if (it.value() != before.value(it.key()))
                    displays.append(it.key());
            }
            return displays;
        };
        QTRY_COMPARE_WITH_TIMEOUT(changed().size(), 1, 30'000);
        const QJsonObject set = placements()[changed().first()].toObject();
        QTRY_VERIFY_WITH_TIMEOUT(near(rootPixel(2880, 540), middleOf(set["path"_L1].toString())),
                                 10'000);
        QVERIFY(tile->name.startsWith(set["colourway"_L1].toString(), Qt::CaseInsensitive));

        key(main, { u"Tab"_s });
        const std::optional<Node> heart = focused(u"Quennet"_s);
        QVERIFY(heart && heart->name == "Favourite"_L1 && !heart->states.contains(u"checked"_s));
        key(main, { u"space"_s });
        const QString favourite = set["pack"_L1].toString() + u'/' + set["colourway"_L1].toString();
        const QString defaults =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + u"/app.quennet.Quennet/defaults.ini"_s;
        QTRY_VERIFY_WITH_TIMEOUT(QSettings(defaults, QSettings::IniFormat)
                                     .value(u"favouriteColourways"_s)
                                     .toStringList()
                                     .contains(favourite),
                                 10'000);
        QTRY_VERIFY_WITH_TIMEOUT(
            focused(u"Quennet"_s).value_or(Node {}).states.contains(u"checked"_s), 10'000);

        key(main, { u"ctrl+comma"_s });
        QString settings;
        QTRY_VERIFY_WITH_TIMEOUT(!(settings = windowNamed(u"Quennet Settings"_s)).isEmpty(),
                                 10'000);
        // Each pane by what only it shows.
        const QStringList panes { u"General"_s,  u"Open at login"_s,   u"Account"_s,
                                  u"Sign Out"_s, u"Storage"_s,         u"Downloaded wallpapers"_s,
                                  u"About"_s,    u"Acknowledgements"_s };
        for (qsizetype i = 0; i < panes.size(); i += 2) {
            if (i > 0)
                key(settings, { u"Down"_s });
            const auto showing = [&] {
                bool chosen = false, found = false;
                for (const Node &node : accessibleTree()) {
                    const bool here = node.window == "Quennet Settings"_L1;
                    chosen |= here && node.role == "list item"_L1 && node.name == panes[i]
                        && node.states.contains(u"selected"_s);
                    found |= here && node.name == panes[i + 1];
                }
                return chosen && found;
            };
            QTRY_VERIFY2_WITH_TIMEOUT(showing(), qPrintable(panes[i]), 10'000);
            QCOMPARE(unnamedControls(u"Quennet Settings"_s), QStringList());
        }
        key(settings, { u"Escape"_s });
        QTRY_VERIFY_WITH_TIMEOUT(windowNamed(u"Quennet Settings"_s).isEmpty(), 10'000);
    }

    // "Quit Quennet", the last item of the status menu, ends it.
    void quitFromTheStatusMenu()
    {
        click(trayIcon().center(), 3);
        QTest::qWait(500);
        xdotool({ u"key"_s, u"--delay"_s, u"150"_s, u"Up"_s, u"Return"_s });
        QVERIFY(m_quennet.waitForFinished(10'000));
        // What it wrote on the way, a sanitizer's report included, and no script error in any view.
        QFile errors(m_bin.filePath(u"quennet-errors.log"_s));
        QVERIFY(errors.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(errors.readAll());
        fputs(qPrintable(text), stderr);
        QCOMPARE(m_quennet.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_quennet.exitCode(), 0);
        QVERIFY2(!text.contains(u"qrc:/"_s), "a view reported an error");
    }
};

QTEST_GUILESS_MAIN(ApplicationTest)
#include "test_application.moc"
