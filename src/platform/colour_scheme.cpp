#include "colour_scheme.h"

#include "dbus_values.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;
const auto interface = u"org.freedesktop.portal.Settings"_s;
const auto group = u"org.freedesktop.appearance"_s;
const auto key = u"color-scheme"_s;
const auto accentKey = u"accent-color"_s;
const auto kdeGroup = u"org.kde.kdeglobals.General"_s;
const auto kdeKey = u"ColorScheme"_s;
} // namespace

ColourScheme::ColourScheme(QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{
    if (!m_bus.isConnected()) {
        m_known = true;
        return;
    }
    m_bus.connect(service, path, interface, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QDBusMessage)));
    // The accent first: the palette made at the scheme's first answer should carry it already.
    read(accentKey, &ColourScheme::takeAccent);
    read(key, &ColourScheme::take);
}

void ColourScheme::read(const QString &name, void (ColourScheme::*adopt)(const QVariant &))
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    message << group << name;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, adopt](QDBusPendingCallWatcher *call) {
                const QDBusPendingReply<QDBusVariant> reply = *call;
                // Without a portal, or a portal too old for the setting: light, with no accent.
                (this->*adopt)(reply.isError() ? QVariant() : reply.value().variant());
                call->deleteLater();
            });
}

void ColourScheme::settingChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() != 3)
        return;
    if (arguments[0].toString() == group && arguments[1].toString() == key)
        take(arguments[2]);
    else if (arguments[0].toString() == group && arguments[1].toString() == accentKey)
        takeAccent(arguments[2]);
    else if (arguments[0].toString() == kdeGroup && arguments[1].toString() == kdeKey)
        Q_EMIT coloursChanged();
}

void ColourScheme::take(const QVariant &value)
{
    // 1 prefers dark; 0 (no preference) and 2 (prefers light) show light.
    const bool dark = unwrap(value).toUInt() == 1;
    if (dark == m_dark && m_known)
        return;
    m_dark = dark;
    m_known = true;
    Q_EMIT changed();
}

void ColourScheme::takeAccent(const QVariant &value)
{
    // Red, green and blue from 0 to 1; anything else, out of range included, means no accent.
    QColor accent;
    const QVariant inner = unwrap(value);
    if (inner.canConvert<QDBusArgument>()) {
        const auto argument = inner.value<QDBusArgument>();
        if (argument.currentSignature() == "(ddd)"_L1) {
            double red = -1;
            double green = -1;
            double blue = -1;
            argument.beginStructure();
            argument >> red >> green >> blue;
            argument.endStructure();
            const auto inRange = [](double part) { return part >= 0 && part <= 1; };
            if (inRange(red) && inRange(green) && inRange(blue))
                accent = QColor::fromRgbF(float(red), float(green), float(blue));
        }
    }
    if (accent == m_accent)
        return;
    m_accent = accent;
    Q_EMIT coloursChanged();
}
