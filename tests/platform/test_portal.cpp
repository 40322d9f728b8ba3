#include "await_task.h"
#include "colour_scheme.h"
#include "portal_backend.h"
#include "portal_setting.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// Answers like the desktop portal: its Settings and Wallpaper interfaces on one object.
class PortalStandIn
    : public QObject
    , public QDBusContext {
    Q_OBJECT

public:
    explicit PortalStandIn(QDBusConnection bus);

    uint colourScheme = 1; // prefers dark
    bool animations = false;
    uint answer = 0; // what the user says to a new wallpaper: 0 yes, 1 no
    // As the portal has done since the handle token: the request's object is the caller's name
    // and its token, and the answer may come before the call's reply. Else an object of its own
    // and the answer later, as older portals do.
    bool honoursToken = true;
    QString wallpaper;

    void changeScheme(uint scheme)
    {
        colourScheme = scheme;
        changeSetting(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
    }

    void changeSetting(const QString &group, const QString &key, const QVariant &value)
    {
        auto signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    QDBusObjectPath request(const QString &caller, const QString &uri, const QVariantMap &options)
    {
        const QString token = options.value(u"handle_token"_s).toString();
        const QString handle = honoursToken && !token.isEmpty()
            ? u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
                caller.mid(1).replace(u'.', u'_'), token)
            : u"/org/freedesktop/portal/desktop/request/1_1/t%1"_s.arg(++m_requests);
        const auto respond = [this, handle, uri] {
            if (answer == 0)
                wallpaper = uri;
            auto signal = QDBusMessage::createSignal(handle, u"org.freedesktop.portal.Request"_s,
                                                     u"Response"_s);
            signal << answer << QVariantMap();
            m_bus.send(signal);
        };
        if (honoursToken)
            respond();
        else
            QTimer::singleShot(50, this, respond);
        return QDBusObjectPath(handle);
    }

private:
    QDBusConnection m_bus;
    int m_requests = 0;
};

class SettingsAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit SettingsAdaptor(PortalStandIn *portal)
        : QDBusAbstractAdaptor(portal)
        , m_portal(portal)
    {
    }

public Q_SLOTS:
    // Read wraps the value in one more variant than the signal does.
    QDBusVariant Read(const QString &, const QString &key)
    {
        if (key == "enable-animations"_L1)
            return QDBusVariant(QVariant::fromValue(QDBusVariant(m_portal->animations)));
        if (key != "color-scheme"_L1)
            m_portal->sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                                     u"Requested setting not found"_s);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_portal->colourScheme)));
    }

private:
    PortalStandIn *m_portal;
};

class WallpaperAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Wallpaper")

public:
    explicit WallpaperAdaptor(PortalStandIn *portal)
        : QDBusAbstractAdaptor(portal)
        , m_portal(portal)
    {
    }

public Q_SLOTS:
    QDBusObjectPath SetWallpaperURI(const QString &, const QString &uri, const QVariantMap &options)
    {
        if (uri.contains(u"refused"_s)) {
            m_portal->sendErrorReply(QDBusError::AccessDenied,
                                     u"Not allowed to set the background"_s);
            return {};
        }
        return m_portal->request(m_portal->message().service(), uri, options);
    }

private:
    PortalStandIn *m_portal;
};

PortalStandIn::PortalStandIn(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    new SettingsAdaptor(this);
    new WallpaperAdaptor(this);
}

// On a private bus.
class PortalTest : public QObject {
    Q_OBJECT

    QDBusConnection m_portalBus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    std::unique_ptr<PortalStandIn> m_portal;
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        m_portal = std::make_unique<PortalStandIn>(m_portalBus);
        QVERIFY(m_portalBus.registerObject(u"/org/freedesktop/portal/desktop"_s, m_portal.get(),
                                           QDBusConnection::ExportAdaptors));
        QVERIFY(m_portalBus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    void colourSchemeFollowsThePortal()
    {
        ColourScheme scheme(QDBusConnection::sessionBus());
        QTRY_VERIFY(scheme.isDark());
        QSignalSpy changed(&scheme, &ColourScheme::changed);
        m_portal->changeScheme(2); // prefers light
        QVERIFY(changed.wait(5000));
        QVERIFY(!scheme.isDark());
        m_portal->changeScheme(0); // no preference: light, nothing changes
        m_portal->changeScheme(1);
        QVERIFY(changed.wait(5000));
        QVERIFY(scheme.isDark());
        QCOMPARE(changed.size(), 2);

        // Another KDE colour scheme changes the colours, not the preference.
        QSignalSpy colours(&scheme, &ColourScheme::coloursChanged);
        m_portal->changeSetting(u"org.kde.kdeglobals.General"_s, u"ColorScheme"_s,
                                u"BreezeClassic"_s);
        QVERIFY(colours.wait(5000));
        QVERIFY(scheme.isDark());
        QCOMPARE(changed.size(), 2);
    }

    void wallpaperRequests_data()
    {
        QTest::addColumn<bool>("honoursToken");
        QTest::newRow("answer at once, where the token says") << true;
        QTest::newRow("answer later, where the portal says") << false;
    }

    // One picture for every screen, once the user accepts it; the answer is never missed.
    void wallpaperRequests()
    {
        QFETCH(bool, honoursToken);
        m_portal->honoursToken = honoursToken;
        m_portal->wallpaper.clear();
        const QString state = m_dir.filePath(u"portal-%1.json"_s.arg(honoursToken));
        const DesktopScreen screen { .connector = u"DP-1"_s };
        PortalBackend backend(QDBusConnection::sessionBus(), state);
        // Long enough for a person; a missed answer fails instead of hanging.
        backend.setTimeout(std::chrono::seconds(10));
        QCOMPARE(backend.picture(screen), std::nullopt);
        awaitTask(backend.setPicture({ .path = u"/r/one.png"_s }, { screen }));
        QCOMPARE(m_portal->wallpaper, u"file:///r/one.png"_s);
        QCOMPARE(backend.picture({ .connector = u"HDMI-2"_s }), u"/r/one.png"_s);

        m_portal->answer = 1;
        const auto refusal = [&](const QString &path) {
            return failureText(finish(backend.setPicture({ .path = path }, { screen })));
        };
        QCOMPARE(refusal(u"/r/two.png"_s), u"Your desktop did not take the picture."_s);
        m_portal->answer = 0;
        QCOMPARE(refusal(u"/r/refused.png"_s),
                 u"The desktop portal refused the picture: Not allowed to set the background"_s);
        QCOMPARE(m_portal->wallpaper, u"file:///r/one.png"_s);
        QCOMPARE(PortalBackend(QDBusConnection::sessionBus(), state).picture(screen),
                 u"/r/one.png"_s);
    }

    void withoutAPortalItIsLight()
    {
        ColourScheme scheme(QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"none"_s));
        QVERIFY(!scheme.isDark());
    }

    // Read once, then followed; a setting the portal does not know stays unknown.
    void oneSettingFollowed()
    {
        PortalSetting animations(QDBusConnection::sessionBus(), u"org.gnome.desktop.interface"_s,
                                 u"enable-animations"_s);
        PortalSetting unknown(QDBusConnection::sessionBus(), u"org.gnome.desktop.interface"_s,
                              u"nothing"_s);
        QSignalSpy changed(&animations, &PortalSetting::changed);
        QVERIFY(changed.wait(5000));
        QCOMPARE(animations.value(), QVariant(false));
        m_portal->changeSetting(u"org.gnome.desktop.a11y"_s, u"enable-animations"_s, true);
        m_portal->changeSetting(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, true);
        QVERIFY(changed.wait(5000));
        QCOMPARE(animations.value(), QVariant(true));
        QCOMPARE(changed.size(), 2);
        QVERIFY(!unknown.value().isValid());
    }
};

QTEST_MAIN(PortalTest)
#include "test_portal.moc"
