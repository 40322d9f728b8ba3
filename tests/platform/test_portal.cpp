#include "await_task.h"
#include "bus_stand_in.h"
#include "colour_scheme.h"
#include "portal_backend.h"
#include "portal_setting.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// On a private bus, against a stand-in for the desktop portal's Settings and Wallpaper.
class PortalTest : public QObject {
    Q_OBJECT

    QVariant m_accent = accent(0.2, 0.4, 0.8);
    uint m_answer = 0; // what the user says to a new wallpaper: 0 yes, 1 no
    // As the portal has done since the handle token: the request's object is the caller's name
    // and its token, and the answer may come before the call's reply. Else an object of its own
    // and the answer later, as older portals do.
    bool m_honoursToken = true;
    int m_requests = 0;
    bool m_changeWhileReading = false; // the scheme turns light just before Read answers dark
    QString m_wallpaper;
    BusStandIn m_portal { u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                          [this](const QDBusMessage &call) { return answer(call); } };
    QTemporaryDir m_dir;

    QDBusMessage answer(const QDBusMessage &call)
    {
        const QVariantList arguments = call.arguments();
        if (call.member() == "Read"_L1) {
            // Read wraps the value in one more variant than the signal does.
            const QVariant value = QVariantMap {
                { u"enable-animations"_s, false },
                { u"color-scheme"_s, 1u }, // prefers dark
                { u"accent-color"_s, m_accent }
            }.value(arguments.value(1).toString());
            if (m_changeWhileReading && arguments.value(1).toString() == "color-scheme"_L1)
                changeSetting(u"color-scheme"_s, 2u);
            if (!value.isValid())
                return call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                                             u"Requested setting not found"_s);
            return call.createReply(
                QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value)))));
        }
        if (call.member() != "SetWallpaperURI"_L1)
            return {};
        const QString uri = arguments.value(1).toString();
        if (uri.contains(u"refused"_s))
            return call.createErrorReply(QDBusError::AccessDenied,
                                         u"Not allowed to set the background"_s);
        const QString token =
            qdbus_cast<QVariantMap>(arguments.value(2)).value(u"handle_token"_s).toString();
        const QString handle = m_honoursToken && !token.isEmpty()
            ? u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
                call.service().mid(1).replace(u'.', u'_'), token)
            : u"/org/freedesktop/portal/desktop/request/1_1/t%1"_s.arg(++m_requests);
        const auto respond = [this, handle, uri] {
            if (m_answer == 0)
                m_wallpaper = uri;
            m_portal.emitSignal(u"org.freedesktop.portal.Request"_s, u"Response"_s,
                                { m_answer, QVariantMap() }, handle);
        };
        if (m_honoursToken)
            respond();
        else
            QTimer::singleShot(50, this, respond);
        return call.createReply(QVariant::fromValue(QDBusObjectPath(handle)));
    }

    void changeSetting(const QString &key, const QVariant &value,
                       const QString &group = u"org.freedesktop.appearance"_s)
    {
        m_portal.emitSignal(u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
                            { group, key, QVariant::fromValue(QDBusVariant(value)) });
    }

    static QVariant accent(double red, double green, double blue)
    {
        QDBusArgument colour;
        colour.beginStructure();
        colour << red << green << blue;
        colour.endStructure();
        return QVariant::fromValue(colour);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_portal.start()); }

    void colourSchemeFollowsThePortal()
    {
        const auto nowhere = QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"none"_s);
        QVERIFY2(!ColourScheme(nowhere).isDark(), "light without a portal");
        ColourScheme scheme(QDBusConnection::sessionBus());
        QTRY_VERIFY(scheme.isDark());
        QSignalSpy changed(&scheme, &ColourScheme::changed);
        changeSetting(u"color-scheme"_s, 2u); // prefers light
        QVERIFY(changed.wait(5000));
        QVERIFY(!scheme.isDark());
        changeSetting(u"color-scheme"_s, 0u); // no preference: light, nothing changes
        changeSetting(u"color-scheme"_s, 1u);
        QVERIFY(changed.wait(5000));
        QVERIFY(scheme.isDark());
        QCOMPARE(changed.size(), 2);

        // Another KDE colour scheme changes the colours, not the preference.
        QSignalSpy colours(&scheme, &ColourScheme::coloursChanged);
        changeSetting(u"ColorScheme"_s, u"BreezeClassic"_s, u"org.kde.kdeglobals.General"_s);
        QVERIFY(colours.wait(5000));
        QCOMPARE(changed.size(), 2);

        // The accent colour, as read at start and as changed; out of range or malformed is none.
        QCOMPARE(scheme.accent(), QColor::fromRgbF(0.2F, 0.4F, 0.8F));
        changeSetting(u"accent-color"_s, accent(-1, -1, -1));
        QTRY_VERIFY(!scheme.accent().isValid());
        changeSetting(u"accent-color"_s, accent(1, 0.5, 0));
        QTRY_COMPARE(scheme.accent(), QColor::fromRgbF(1, 0.5F, 0));
        changeSetting(u"accent-color"_s, u"blue"_s);
        QTRY_VERIFY(!scheme.accent().isValid());

        // A change heard before the first answer is newer than it.
        m_changeWhileReading = true;
        ColourScheme started(QDBusConnection::sessionBus());
        // Answers keep their order: once this one is in, so is the scheme's first.
        PortalSetting later(QDBusConnection::sessionBus(), u"org.gnome.desktop.interface"_s,
                            u"enable-animations"_s);
        QTRY_VERIFY(later.isKnown());
        QVERIFY(started.isKnown() && !started.isDark());
        m_changeWhileReading = false;
    }

    // One picture for every screen, once the user accepts it; the answer is never missed, at once
    // where the token says, or later where the portal says.
    void wallpaperRequests()
    {
        const DesktopScreen screen { .connector = u"DP-1"_s };
        PortalBackend backend(QDBusConnection::sessionBus(), m_dir.filePath(u"portal.json"_s));
        // Long enough for a person; a missed answer fails instead of hanging.
        backend.setTimeout(std::chrono::seconds(10));
        awaitTask(backend.setPicture({ .path = u"/r/one.png"_s }, { screen }));
        QCOMPARE(m_wallpaper, u"file:///r/one.png"_s);
        QCOMPARE(backend.picture({ .connector = u"HDMI-2"_s }), u"/r/one.png"_s);

        const auto refusal = [&](const QString &path) {
            return failureText(finish(backend.setPicture({ .path = path }, { screen })));
        };
        m_answer = 1;
        QCOMPARE(refusal(u"/r/two.png"_s), u"Your desktop did not take the picture."_s);
        m_answer = 0;
        QCOMPARE(refusal(u"/r/refused.png"_s),
                 u"The desktop portal refused the picture: Not allowed to set the background"_s);
        QCOMPARE(backend.picture(screen), u"/r/one.png"_s);

        m_honoursToken = false;
        awaitTask(backend.setPicture({ .path = u"/r/three.png"_s }, { screen }));
        QCOMPARE(m_wallpaper, u"file:///r/three.png"_s);
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
        changeSetting(u"enable-animations"_s, true, u"org.gnome.desktop.a11y"_s);
        changeSetting(u"enable-animations"_s, true, u"org.gnome.desktop.interface"_s);
        QVERIFY(changed.wait(5000));
        QCOMPARE(animations.value(), QVariant(true));
        QCOMPARE(changed.size(), 2);
        QVERIFY(!unknown.value().isValid());
    }
};

QTEST_MAIN(PortalTest)
#include "test_portal.moc"
