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
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;

namespace {
QString xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    process.waitForFinished(10'000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
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

    std::optional<QJsonObject> placement(int display)
    {
        const QJsonObject placements =
            QJsonDocument::fromJson(readAll(m_shop.folder + u"/placements.json"_s))["placements"_L1]
                .toObject();
        // The records do not say which display is which monitor: the picture shown decides.
        const QColor shown = rootPixel(960 + 1920 * display, 540);
        for (const QJsonValue &value : placements) {
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
        m_quennet.setProcessChannelMode(QProcess::ForwardedChannels);
        m_quennet.start(QStringLiteral(QUENNET_PROGRAM), {});
        QVERIFY(m_quennet.waitForStarted());
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

    // A click on the tray icon opens the panel under it, inside the screen.
    void panelOpensUnderTheIcon()
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
    }

    // Return sets the first colourway on the main display; a click on the other display in the
    // panel's desk, then the next colourway, sets that one there.
    void aColourwayOnEachDisplay()
    {
        const QString panel = windowNamed(u"Quennet Panel"_s);
        QVERIFY(!panel.isEmpty());
        key(panel, { u"Return"_s });
        std::optional<QJsonObject> left;
        QTRY_VERIFY2_WITH_TIMEOUT((left = placement(0)).has_value(),
                                  qPrintable(rootPixel(960, 540).name()), 30'000);

        const QRect frame = geometryOf(panel);
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
        QCOMPARE((*placement(0))["edition"_L1].toString(), u"appearance"_s);
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

    // A second start asks the first to open its main window, and leaves.
    void secondLaunchOpensTheMainWindow()
    {
        QVERIFY(windowNamed(u"Quennet"_s).isEmpty());
        QCOMPARE(QProcess::execute(QStringLiteral(QUENNET_PROGRAM), {}), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!windowNamed(u"Quennet"_s).isEmpty(), 10'000);
        QCOMPARE(m_quennet.state(), QProcess::Running);
    }

    // "Quit Quennet", the last item of the status menu, ends it.
    void quitFromTheStatusMenu()
    {
        click(trayIcon().center(), 3);
        QTest::qWait(500);
        xdotool({ u"key"_s, u"--delay"_s, u"150"_s, u"Up"_s, u"Return"_s });
        QVERIFY(m_quennet.waitForFinished(10'000));
        QCOMPARE(m_quennet.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_quennet.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(ApplicationTest)
#include "test_application.moc"
