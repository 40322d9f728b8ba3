#include "pixels.h"
#include "shop_profile.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto quennet = u"app.quennet.Quennet"_s;
const auto quennetPath = u"/app/quennet/Quennet"_s;
// A click that closed the panel by taking its focus does not open it again for this long.
constexpr int panelGraceMs = 300;
// GNOME's button for Quennet's status item, in the tray extension's part of the top bar.
const auto gnomeButton = uR"(Object.entries(imports.ui.main.panel.statusArea)
    .filter(([key]) => key.startsWith('appindicator-')).map(([, value]) => value)[0])"_s;

bool isGnome()
{
    return qEnvironmentVariable("QUENNET_SESSION") == "gnome"_L1;
}

// QTRY counts its steps, not the time they take: screenshots need a clock of their own.
bool waitFor(const std::function<bool()> &condition, int milliseconds = 15'000)
{
    QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QTest::qWait(200);
    }
    return true;
}

bool run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool ran = process.waitForFinished(20'000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
    if (output)
        *output = process.readAllStandardOutput();
    return ran;
}

// The whole screen, as the shell's own screenshot tool takes it.
QImage screenshot()
{
    QTemporaryDir folder;
    const QString file = folder.filePath(u"screen.png"_s);
    const bool taken = isGnome()
        ? run(u"gnome-screenshot"_s, { u"-f"_s, file })
        : run(u"spectacle"_s, { u"-b"_s, u"-n"_s, u"-f"_s, u"-o"_s, file });
    return taken ? QImage(file).convertToFormat(QImage::Format_RGB32) : QImage();
}

bool standsOut(const QColor &pixel, const QColor &panel)
{
    return qAbs(pixel.lightness() - panel.lightness()) > 90;
}

// What stands out from the panel in Plasma's tray, the right end of the bottom panel: one
// rectangle for each run of columns with something drawn in them.
QList<QRect> trayIcons(const QImage &screen)
{
    const int top = screen.height() - 44;
    const int left = screen.width() - 400;
    const QColor panel = screen.pixelColor(left, screen.height() - 4);
    QList<QRect> icons;
    QRect icon;
    for (int x = left; x < screen.width(); ++x) {
        QRect column;
        for (int y = top; y < screen.height(); ++y) {
            if (standsOut(screen.pixelColor(x, y), panel))
                column |= QRect(x, y, 1, 1);
        }
        if (!column.isEmpty()) {
            icon |= column;
        } else if (!icon.isEmpty()) {
            icons.append(icon);
            icon = {};
        }
    }
    if (!icon.isEmpty())
        icons.append(icon);
    return icons;
}

// A plain call: an interface object would introspect its peer and keep what it learnt for good.
QDBusMessage callBus(const QString &service, const QString &path, const QString &interface,
                     const QString &method, const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, 60'000);
}

QDBusMessage callQuennet(const QString &interface, const QString &method,
                         const QVariantList &arguments = {})
{
    return callBus(quennet, quennetPath, interface, method, arguments);
}

QVariant busProperty(const QString &service, const QString &path, const QString &interface,
                     const QString &name)
{
    const QDBusReply<QDBusVariant> reply =
        callBus(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, { interface, name });
    return reply.isValid() ? reply.value().variant() : QVariant();
}

QString sessionProperty(const QString &name)
{
    return busProperty(quennet, quennetPath, u"app.quennet.Quennet.Session"_s, name).toString();
}

// The status items the shell's host shows.
QStringList statusNotifierItems()
{
    return busProperty(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                       u"org.kde.StatusNotifierWatcher"_s, u"RegisteredStatusNotifierItems"_s)
        .toStringList();
}

QRect rectOf(const QJsonArray &box)
{
    return box.size() == 4 ? QRect(box[0].toInt(), box[1].toInt(), box[2].toInt(), box[3].toInt())
                           : QRect();
}

// Asks GNOME Shell, through the test's extension.
QJsonValue shellEval(const QString &script)
{
    const QDBusReply<QString> reply =
        callBus(u"app.quennet.ShellTest"_s, u"/app/quennet/ShellTest"_s, u"app.quennet.ShellTest"_s,
                u"Eval"_s, { script });
    if (!reply.isValid())
        return {};
    return QJsonDocument::fromJson("[" + reply.value().toUtf8() + "]").array().at(0);
}

// Input as a person gives it to GNOME Shell, from a device of the shell's own.
void shellInput(const QString &events)
{
    shellEval(uR"((() => {
        const { Clutter, GLib } = imports.gi;
        const seat = Clutter.get_default_backend().get_default_seat();
        global.quennetPointer ??= seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
        global.quennetKeyboard ??= seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
        const pointer = global.quennetPointer, keyboard = global.quennetKeyboard;
        const now = GLib.get_monotonic_time();
        %1;
    })())"_s.arg(events));
}

// Takes what a KWin script sends back: KWin's scripts answer only through calls of their own.
class KWinAnswers : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.quennet.KWinAnswers")

public:
    QStringList received;

public Q_SLOTS:
    Q_SCRIPTABLE void answer(const QString &json) { received.append(json); }
};

// Asks KWin, through a script of its own that calls back.
QJsonValue kwinEval(const QString &expression)
{
    static KWinAnswers answers;
    static const bool exported = QDBusConnection::sessionBus().registerObject(
        u"/KWinAnswers"_s, &answers, QDBusConnection::ExportScriptableSlots);
    static const QTemporaryDir folder;
    static int asked = 0;
    const QString name = u"quennet-eval-%1"_s.arg(++asked);
    QFile script(folder.filePath(name + u".js"_s));
    if (!exported || !script.open(QIODevice::WriteOnly))
        return {};
    script.write(u"callDBus('%1', '/KWinAnswers', 'app.quennet.KWinAnswers', 'answer', "
                 "JSON.stringify((() => (%2))() ?? null));"_s
                     .arg(QDBusConnection::sessionBus().baseService(), expression)
                     .toUtf8());
    script.close();
    answers.received.clear();
    const auto scripting = [](const QString &method, const QVariantList &arguments) {
        callBus(u"org.kde.KWin"_s, u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method, arguments);
    };
    scripting(u"loadScript"_s, { script.fileName(), name });
    scripting(u"start"_s, {});
    const bool answered = waitFor([] { return !answers.received.isEmpty(); }, 10'000);
    scripting(u"unloadScript"_s, { name });
    return answered
        ? QJsonDocument::fromJson("[" + answers.received.constFirst().toUtf8() + "]").array().at(0)
        : QJsonValue();
}

// Where Quennet's main window is, its frame included. Plasma tells no one where a window is, so
// there KWin is asked to maximise it, above the panel.
QRect mainWindowFrame()
{
    if (isGnome()) {
        return rectOf(shellEval(uR"(global.get_window_actors().map(a => a.meta_window)
            .filter(w => w.get_wm_class() === 'app.quennet.Quennet' && w.get_title() === 'Quennet')
            .map(w => w.get_frame_rect()).map(r => [r.x, r.y, r.width, r.height])[0] ?? null)"_s)
                          .toArray());
    }
    const QJsonValue maximised =
        kwinEval(u"workspace.clientList().filter(c => c.caption === 'Quennet')"
                 ".map(c => c.setMaximize(true, true)).length"_s);
    return maximised.toInt() == 1 ? QRect(0, 0, 1920, 1080 - 44) : QRect();
}

} // namespace

// Quennet inside the real shells, GNOME Shell and KDE Plasma on Wayland, as a person meets it
// there: the tray icon, its menu, signing in, and a wallpaper that follows the colour scheme and
// Do Not Disturb. Checked through screenshots and the shells' own interfaces.
class ShellTest : public QObject {
    Q_OBJECT

    SampleShop m_shop;
    QProcess m_quennet;
    QTemporaryDir m_bin;
    // Plasma: the panel before Quennet's icon was in it, in light and in dark.
    QHash<bool, QImage> m_panelWithoutIcon;

    static void setDark(bool dark)
    {
        if (isGnome()) {
            QVERIFY(run(u"gsettings"_s,
                        { u"set"_s, u"org.gnome.desktop.interface"_s, u"color-scheme"_s,
                          dark ? u"prefer-dark"_s : u"default"_s }));
        } else {
            QVERIFY(
                run(u"plasma-apply-colorscheme"_s, { dark ? u"BreezeDark"_s : u"BreezeLight"_s }));
        }
        // The shells repaint their panels after the change has gone round.
        QTest::qWait(1500);
    }

    // Where the shell shows Quennet's icon, in screen pixels.
    QRect trayIcon(bool dark)
    {
        if (isGnome()) {
            return rectOf(shellEval(uR"((() => {
                const button = %1;
                if (!button || !button.visible) return null;
                const [x, y] = button.get_transformed_position();
                const [w, h] = button.get_transformed_size();
                return [x, y, w, h];
            })())"_s.arg(gnomeButton))
                              .toArray());
        }
        // Plasma tells no one where its tray draws an item. The tray, at the panel's right end,
        // shows one more icon than before Quennet started, at its left.
        const QList<QRect> before = trayIcons(m_panelWithoutIcon[dark]);
        const QList<QRect> now = trayIcons(screenshot());
        return now.size() == before.size() + 1 ? now.first() : QRect();
    }

    // Which of the pictures Quennet rendered for the desktop the screen shows, if any.
    QString shownRendering()
    {
        const QImage screen = screenshot();
        if (screen.isNull())
            return {};
        const QColor middle = screen.pixelColor(screen.width() / 2, screen.height() / 2);
        const QDir rendered(m_shop.folder + u"/Rendered"_s);
        for (const QString &name : rendered.entryList({ u"*.jpg"_s }, QDir::Files)) {
            if (near(middle, middleOf(rendered.filePath(name))))
                return name;
        }
        return {};
    }

    static void setDoNotDisturb(bool on)
    {
        if (isGnome()) {
            QVERIFY(run(u"gsettings"_s,
                        { u"set"_s, u"org.gnome.desktop.notifications"_s, u"show-banners"_s,
                          on ? u"false"_s : u"true"_s }));
            return;
        }
        // Plasma's Do Not Disturb is held by whoever inhibits its notifications.
        static uint cookie = 0;
        const auto notifications = [](const QString &method, const QVariantList &arguments) {
            return callBus(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                           u"org.freedesktop.Notifications"_s, method, arguments);
        };
        if (on) {
            const QDBusReply<uint> reply =
                notifications(u"Inhibit"_s, { u"quennet-test"_s, u"presenting"_s, QVariantMap() });
            QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
            cookie = reply.value();
        } else {
            QVERIFY(notifications(u"UnInhibit"_s, { cookie }).type() == QDBusMessage::ReplyMessage);
        }
    }

    // GNOME puts a new window where it likes and tells no window of a click on the desktop: the
    // panel covers the work area, clear but for the panel at its top right. A click in the middle
    // closes it.
    static void panelOverTheWorkArea(const QImage &before, const QJsonArray &shown)
    {
        QVERIFY2(shown.at(0).toBool() && shown.at(1).toBool(),
                 QJsonDocument(shown).toJson(QJsonDocument::Compact).constData());
        // The panel is drawn under the top bar's right end, and the desktop shows through the
        // rest of the window.
        const QRect underTray(shown.at(2).toInt() - 360, shown.at(3).toInt() + 10, 340, 80);
        const QRect middle(before.width() / 2 - 100, before.height() / 2 - 100, 200, 200);
        const auto changed = [&before](const QImage &after, const QRect &rect) {
            int count = 0;
            for (int y = rect.top(); y <= rect.bottom(); ++y)
                for (int x = rect.left(); x <= rect.right(); ++x)
                    count += before.pixel(x, y) != after.pixel(x, y);
            return count;
        };
        QImage after;
        QVERIFY(waitFor([&] {
            after = screenshot();
            return changed(after, underTray) > underTray.width() * underTray.height() / 2;
        }));
        QCOMPARE(changed(after, middle), 0);

        shellInput(u"pointer.notify_absolute_motion(now, %1, %2)"_s.arg(middle.center().x())
                       .arg(middle.center().y()));
        QTest::qWait(100);
        shellInput(
            u"pointer.notify_button(now, Clutter.BUTTON_PRIMARY, Clutter.ButtonState.PRESSED)"_s);
        QTest::qWait(100);
        shellInput(
            u"pointer.notify_button(now, Clutter.BUTTON_PRIMARY, Clutter.ButtonState.RELEASED)"_s);
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariable("QUENNET_SESSION") != "gnome"_L1
            && qEnvironmentVariable("QUENNET_SESSION") != "plasma"_L1)
            QSKIP("runs only inside tests/run-in-session gnome|plasma");
        QVERIFY(m_shop.start());

        if (!isGnome()) {
            // The clock would change the tray's neighbourhood between screenshots.
            QVERIFY(run(u"qdbus"_s,
                        { u"org.kde.plasmashell"_s, u"/PlasmaShell"_s, u"evaluateScript"_s,
                          uR"(panels().forEach(p => p.widgets('org.kde.plasma.digitalclock')
                                              .forEach(w => w.remove())))"_s }));
            for (const bool dark : { true, false }) {
                setDark(dark);
                m_panelWithoutIcon[dark] = screenshot();
            }
        }

        QVERIFY(standInBrowser(m_bin.path()));
        qputenv("QUENNET_REDUCED_MOTION", "1");
        qputenv("QT_QUICK_BACKEND", "software");
        m_quennet.setProcessChannelMode(QProcess::ForwardedChannels);
        m_quennet.start(QStringLiteral(QUENNET_PROGRAM), { u"--at-login"_s });
        QVERIFY(m_quennet.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(
            QDBusConnection::sessionBus().interface()->isServiceRegistered(quennet), 20'000);
    }

    void cleanupTestCase()
    {
        if (m_quennet.state() != QProcess::NotRunning) {
            m_quennet.terminate();
            m_quennet.waitForFinished(5000);
        }
    }

    // The icon shows in the panel in both schemes: its pixels stand out from the panel's.
    void trayIconStandsOut_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void trayIconStandsOut()
    {
        QFETCH(bool, dark);
        setDark(dark);
        QRect icon;
        QVERIFY(waitFor([&] { return !(icon = trayIcon(dark)).isEmpty(); }));
        const QImage screen = screenshot();
        QVERIFY2(icon.width() <= 64 && icon.height() <= 64,
                 qPrintable(u"%1x%2"_s.arg(icon.width()).arg(icon.height())));
        const QColor panel = screen.pixelColor(icon.left() - 2, icon.center().y());
        int standing = 0;
        for (int y = icon.top(); y <= icon.bottom(); ++y) {
            for (int x = icon.left(); x <= icon.right(); ++x)
                standing += standsOut(screen.pixelColor(x, y), panel);
        }
        QVERIFY2(standing >= 20, qPrintable(panel.name()));
    }

    // A right click opens the menu the shell draws, from the items Quennet handed it.
    void menuFromTheShell()
    {
        const QStringList expected { u"Open Quennet"_s, u"Settings…"_s, u"Quit Quennet"_s };
        if (isGnome()) {
            // The extension builds its menu from Quennet's when it opens, as on a right click.
            const auto openMenu = uR"((() => {
                const button = %1;
                if (!button) return [];
                if (!button.menu.isOpen) button.menu.open();
                return button.menu._getMenuItems().filter(i => i.label && i.label.text && i.visible)
                    .map(i => i.label.text);
            })())"_s.arg(gnomeButton);
            QStringList labels;
            QTRY_COMPARE_WITH_TIMEOUT((labels = shellEval(openMenu).toVariant().toStringList()),
                                      expected, 10'000);
            // Closed, and its grab given back, before anything else wants the focus.
            const auto anyOpen = u"Object.values(imports.ui.main.panel.statusArea)"
                                 u".some(b => b.menu && (b.menu.close(), b.menu.isOpen))"_s;
            QTRY_VERIFY_WITH_TIMEOUT(!shellEval(anyOpen).toBool(), 5'000);
            QTest::qWait(500);
            return;
        }
        // Plasma reads the menu over D-Bus from the path the item names, as here.
        const QStringList items = statusNotifierItems();
        QCOMPARE(items.size(), 1);
        const QString service = items.first().section(u'/', 0, 0);
        const auto menu = qvariant_cast<QDBusObjectPath>(
                              busProperty(service, u'/' + items.first().section(u'/', 1),
                                          u"org.kde.StatusNotifierItem"_s, u"Menu"_s))
                              .path();
        QVERIFY(!menu.isEmpty() && menu != "/NO_DBUSMENU"_L1);
        QByteArray layout;
        QVERIFY(run(u"gdbus"_s,
                    { u"call"_s, u"--session"_s, u"--dest"_s, service, u"--object-path"_s, menu,
                      u"--method"_s, u"com.canonical.dbusmenu.GetLayout"_s, u"0"_s, u"1"_s,
                      u"['label']"_s },
                    &layout));
        QStringList labels;
        for (const auto &label :
             QRegularExpression(u"'label': <'([^']+)'>"_s).globalMatch(QString::fromUtf8(layout)))
            labels.append(label.captured(1).remove(u'&'));
        QCOMPARE(labels, expected);
    }

    // A click on the icon (the host calls the item's Activate) opens the panel focused, next to
    // the icon as far as the shell lets it, and out of the task manager; a click elsewhere,
    // Escape (on GNOME, where the test can type) and the next click on the icon close it.
    void panelFromTheIcon()
    {
        // GNOME's watcher lists items as "SERVICE@PATH", Plasma's as "SERVICE/PATH".
        const QString item = statusNotifierItems().value(0);
        const qsizetype split = item.contains(u'@') ? item.indexOf(u'@') : item.indexOf(u'/');
        QVERIFY2(split > 0, qPrintable(item));
        const auto click = [&item, split] {
            return callBus(item.left(split), item.mid(split + (item[split] == u'@')),
                           u"org.kde.StatusNotifierItem"_s, u"Activate"_s, { 0, 0 })
                       .type()
                == QDBusMessage::ReplyMessage;
        };
        // KWin opens the panel under the pointer, which is on the icon just clicked, and keeps it
        // out of the task manager and the window switcher.
        const auto panels = isGnome() ? uR"(global.get_window_actors()
            .filter(a => a.meta_window.get_title() === 'Quennet Panel' && a.visible)
            .map(a => a.meta_window).map(w => {
                const frame = w.get_frame_rect(), area = w.get_work_area_current_monitor();
                return [w.has_focus(), frame.equal(area), area.x + area.width, area.y];
            }))"_s
                                      : uR"(workspace.clientList()
            .filter(c => c.caption === 'Quennet Panel')
            .map(c => { const g = c.frameGeometry, p = workspace.cursorPos;
                return [c.active, c.skipTaskbar, c.skipSwitcher,
                        g.x <= p.x && p.x < g.x + g.width && g.y <= p.y && p.y < g.y + g.height]; }))"_s;
        const auto shown = [&panels] {
            return (isGnome() ? shellEval(panels) : kwinEval(panels)).toArray();
        };
        const auto closed = [&shown] { return shown().isEmpty(); };
        QVERIFY(closed());

        const QImage before = screenshot();
        QVERIFY(click());
        QTRY_COMPARE_WITH_TIMEOUT(shown().size(), 1, 10'000);
        if (isGnome()) {
            panelOverTheWorkArea(before, shown().at(0).toArray());
        } else {
            QCOMPARE(shown().at(0).toArray(), QJsonArray({ true, true, true, true }));
            // A click on the desktop gives it the focus.
            kwinEval(
                u"workspace.activeClient = workspace.clientList().find(c => c.desktopWindow)"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(closed(), 10'000);
        QTest::qWait(panelGraceMs);
        QVERIFY(click());
        QTRY_VERIFY_WITH_TIMEOUT(!closed(), 10'000);
        if (isGnome()) {
            shellInput(
                u"keyboard.notify_keyval(now, Clutter.KEY_Escape, Clutter.KeyState.PRESSED);"
                "keyboard.notify_keyval(now, Clutter.KEY_Escape, Clutter.KeyState.RELEASED)"_s);
            QTRY_VERIFY_WITH_TIMEOUT(closed(), 10'000);
            QVERIFY(click());
            QTRY_VERIFY_WITH_TIMEOUT(!closed(), 10'000);
        }
        QVERIFY(click());
        QTRY_VERIFY_WITH_TIMEOUT(closed(), 10'000);
    }

    // Signing in takes the code approved in the browser; the session goes into the secret
    // service on the bus, without a wallet of KDE's being started or a private file written.
    void signIn()
    {
        QVERIFY(callQuennet(u"app.quennet.Quennet.Session"_s, u"SignIn"_s).type()
                == QDBusMessage::ReplyMessage);
        QString code;
        QTRY_VERIFY_WITH_TIMEOUT(!(code = sessionProperty(u"UserCode"_s)).isEmpty(), 10'000);
        QVERIFY(m_shop.shop.approve(code));
        QTRY_COMPARE_WITH_TIMEOUT(sessionProperty(u"State"_s), u"signedIn"_s, 15'000);
        QTRY_VERIFY_WITH_TIMEOUT(hasLibrary(m_shop.folder), 15'000);
        QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
            u"org.kde.kwalletd5"_s));
        QVERIFY(!QFile::exists(m_shop.folder + u"/secrets.json"_s));
    }

    // An automatic wallpaper shows its light picture, its dark one in dark, and light again. Do
    // Not Disturb shows its own wallpaper; afterwards the automatic one is back, still following
    // the scheme.
    void wallpaperFollowsTheSchemeAndDoNotDisturb()
    {
        setDark(false);
        const QDBusMessage set = callQuennet(u"app.quennet.Quennet.Automation"_s, u"SetWallpaper"_s,
                                             { u"aurora/violet"_s, u"automatic"_s });
        QVERIFY2(set.type() == QDBusMessage::ReplyMessage, qPrintable(set.errorMessage()));
        QString light;
        QString dark;
        QVERIFY(waitFor([&] { return !(light = shownRendering()).isEmpty(); }));
        setDark(true);
        QVERIFY(waitFor([&] { return !(dark = shownRendering()).isEmpty() && dark != light; }));
        setDark(false);
        QVERIFY(waitFor([&] { return shownRendering() == light; }));

        const QDBusMessage chosen =
            callQuennet(u"app.quennet.Quennet.Automation"_s, u"SetFocusFilter"_s,
                        { u"dunes/amber"_s, u"light"_s });
        QVERIFY2(chosen.type() == QDBusMessage::ReplyMessage, qPrintable(chosen.errorMessage()));
        setDoNotDisturb(true);
        QVERIFY(waitFor(
            [&] {
                const QString shown = shownRendering();
                return !shown.isEmpty() && shown != light && shown != dark;
            },
            30'000));
        setDoNotDisturb(false);
        QVERIFY(waitFor([&] { return shownRendering() == light; }));
        setDark(true);
        QVERIFY(waitFor([&] { return shownRendering() == dark; }));
        setDark(false);
    }

    // The main window follows the scheme: opened in dark, as after a start at login, then light
    // and dark again while open. Its packs, its colourways and, where Qt draws it (GNOME), its
    // title bar.
    void mainWindowFollowsTheScheme()
    {
        QRect frame;
        QList<std::pair<QString, QPoint>> points;
        for (const bool dark : { true, false, true }) {
            setDark(dark);
            if (frame.isEmpty()) {
                QCOMPARE(
                    callQuennet(u"org.freedesktop.Application"_s, u"Activate"_s, { QVariantMap() })
                        .type(),
                    QDBusMessage::ReplyMessage);
                QVERIFY(waitFor([&] { return !(frame = mainWindowFrame()).isEmpty(); }));
                points = { { u"packs"_s, { frame.left() + 100, frame.bottom() - 40 } },
                           { u"colourways"_s, { frame.right() - 60, frame.bottom() - 40 } } };
                if (isGnome())
                    points.append({ u"title bar"_s, { frame.left() + 60, frame.top() + 12 } });
            }
            QStringList wrong;
            const bool followed = waitFor([&] {
                const QImage screen = screenshot();
                if (screen.isNull())
                    return false;
                wrong.clear();
                for (const auto &[name, point] : std::as_const(points)) {
                    const QColor pixel = screen.pixelColor(point);
                    if (dark ? pixel.lightness() > 90 : pixel.lightness() < 180)
                        wrong.append(name + u' ' + pixel.name());
                }
                return wrong.isEmpty();
            });
            QVERIFY2(followed,
                     qPrintable((dark ? u"dark: "_s : u"light: "_s) + wrong.join(u", "_s)));
        }
        setDark(false);
    }

    // GNOME without its tray extension: started at login, Quennet says it is there, and the
    // notification opens its window.
    void withoutATray()
    {
        if (!isGnome())
            QSKIP("Plasma always has its tray");
        m_quennet.terminate();
        QVERIFY(m_quennet.waitForFinished(10'000));
        QVERIFY(run(u"gsettings"_s,
                    { u"set"_s, u"org.gnome.shell"_s, u"enabled-extensions"_s,
                      u"['quennet-test@quennet.app']"_s }));
        QTRY_VERIFY_WITH_TIMEOUT(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
                                     u"org.kde.StatusNotifierWatcher"_s),
                                 10'000);
        m_quennet.start(QStringLiteral(QUENNET_PROGRAM), { u"--at-login"_s });
        QVERIFY(m_quennet.waitForStarted());

        const auto notifications = uR"(imports.ui.main.messageTray.getSources()
            .flatMap(source => source.notifications).filter(n => n.title === 'Quennet is running'))"_s;
        QTRY_COMPARE_WITH_TIMEOUT(shellEval(notifications + u".length"_s).toInt(), 1, 20'000);
        shellEval(notifications + u"[0].activate()"_s);
        const auto windows = u"global.get_window_actors().map(a => a.meta_window.get_title())"_s;
        QTRY_VERIFY_WITH_TIMEOUT(
            shellEval(windows).toVariant().toStringList().contains(u"Quennet"_s), 10'000);

        // The desktop entry's actions, as the app grid and the dock run them.
        const auto runAction = [](const QString &action) {
            return callQuennet(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
                               { action, QVariantList(), QVariantMap() })
                .type();
        };
        // The window covers the desktop now: the placements tell what was set, and when.
        const QByteArray before = readAll(m_shop.folder + u"/placements.json"_s);
        QCOMPARE(runAction(u"shuffle-now"_s), QDBusMessage::ReplyMessage);
        QTRY_VERIFY_WITH_TIMEOUT(readAll(m_shop.folder + u"/placements.json"_s) != before, 30'000);
        QCOMPARE(runAction(u"settings"_s), QDBusMessage::ReplyMessage);
        QTRY_VERIFY_WITH_TIMEOUT(
            shellEval(windows).toVariant().toStringList().contains(u"Quennet Settings"_s), 10'000);
    }
};

QTEST_GUILESS_MAIN(ShellTest)
#include "test_shell.moc"
