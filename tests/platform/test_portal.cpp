#include "await_task.h"
#include "colour_scheme.h"
#include "portal_backend.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// Answers like the desktop portal: its Settings and Wallpaper interfaces on one object.
class PortalStandIn : public QObject
{
    Q_OBJECT

public:
    explicit PortalStandIn(QDBusConnection bus);

    uint colourScheme = 1; // prefers dark
    uint answer = 0; // what the user says to a new wallpaper: 0 yes, 1 no
    QString wallpaper;

    void changeScheme(uint scheme)
    {
        colourScheme = scheme;
        changeSetting(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
    }

    void changeSetting(const QString &group, const QString &key, const QVariant &value)
    {
        auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    QDBusObjectPath request(const QString &uri)
    {
        const QString handle = u"/org/freedesktop/portal/desktop/request/1_1/t%1"_s.arg(++m_requests);
        // The answer comes later, as the user's would.
        QTimer::singleShot(50, this, [this, handle, uri] {
            if (answer == 0)
                wallpaper = uri;
            auto signal = QDBusMessage::createSignal(handle, u"org.freedesktop.portal.Request"_s, u"Response"_s);
            signal << answer << QVariantMap();
            m_bus.send(signal);
        });
        return QDBusObjectPath(handle);
    }

private:
    QDBusConnection m_bus;
    int m_requests = 0;
};

class SettingsAdaptor : public QDBusAbstractAdaptor
{
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
    QDBusVariant Read(const QString &, const QString &)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_portal->colourScheme)));
    }

private:
    PortalStandIn *m_portal;
};

class WallpaperAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Wallpaper")

public:
    explicit WallpaperAdaptor(PortalStandIn *portal)
        : QDBusAbstractAdaptor(portal)
        , m_portal(portal)
    {
    }

public Q_SLOTS:
    QDBusObjectPath SetWallpaperURI(const QString &, const QString &uri, const QVariantMap &)
    {
        return m_portal->request(uri);
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
class PortalTest : public QObject
{
    Q_OBJECT

    QDBusConnection m_portalBus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
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
        m_portal->changeSetting(u"org.kde.kdeglobals.General"_s, u"ColorScheme"_s, u"BreezeClassic"_s);
        QVERIFY(colours.wait(5000));
        QVERIFY(scheme.isDark());
        QCOMPARE(changed.size(), 2);
    }

    void wallpaperTheUserAccepts()
    {
        // One picture for every screen.
        const DesktopScreen screen { .connector = u"DP-1"_s };
        PortalBackend backend(QDBusConnection::sessionBus(), m_dir.filePath(u"portal.json"_s));
        QCOMPARE(backend.picture(screen), std::nullopt);
        awaitTask(backend.setPicture({ .path = u"/r/one.png"_s }, { screen }));
        QCOMPARE(m_portal->wallpaper, u"file:///r/one.png"_s);
        QCOMPARE(backend.picture({ .connector = u"HDMI-2"_s }), u"/r/one.png"_s);

        m_portal->answer = 1;
        QVERIFY_THROWS_EXCEPTION(DesktopError, awaitTask(backend.setPicture({ .path = u"/r/two.png"_s }, { screen })));
        m_portal->answer = 0;
        QCOMPARE(m_portal->wallpaper, u"file:///r/one.png"_s);
        QCOMPARE(PortalBackend(QDBusConnection::sessionBus(), m_dir.filePath(u"portal.json"_s)).picture(screen),
                 u"/r/one.png"_s);
    }

    void withoutAPortalItIsLight()
    {
        ColourScheme scheme(QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"none"_s));
        QVERIFY(!scheme.isDark());
    }
};

QTEST_MAIN(PortalTest)
#include "test_portal.moc"
