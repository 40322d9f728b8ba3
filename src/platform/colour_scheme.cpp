#include "colour_scheme.h"

#include "portal_setting.h"

#include <QDBusArgument>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto appearance = u"org.freedesktop.appearance"_s;
} // namespace

ColourScheme::ColourScheme(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    // The accent first: the palette made at the scheme's first answer should carry it already.
    , m_accentSetting(new PortalSetting(bus, appearance, u"accent-color"_s, this))
    , m_schemeSetting(new PortalSetting(bus, appearance, u"color-scheme"_s, this))
    , m_kdeScheme(new PortalSetting(bus, u"org.kde.kdeglobals.General"_s, u"ColorScheme"_s, this))
    , m_known(m_schemeSetting->isKnown())
    , m_kdeSchemeKnown(m_kdeScheme->isKnown())
{
    connect(m_accentSetting, &PortalSetting::changed, this, &ColourScheme::takeAccent);
    connect(m_schemeSetting, &PortalSetting::changed, this, &ColourScheme::takeScheme);
    connect(m_kdeScheme, &PortalSetting::changed, this, &ColourScheme::takeKdeScheme);
}

void ColourScheme::takeScheme()
{
    // 1 prefers dark; 0 (no preference) and 2 (prefers light) show light.
    const bool dark = m_schemeSetting->value().toUInt() == 1;
    if (dark == m_dark && m_known)
        return;
    m_dark = dark;
    m_known = true;
    Q_EMIT changed();
}

void ColourScheme::takeAccent()
{
    // Red, green and blue from 0 to 1; anything else, out of range included, means no accent.
    QColor accent;
    const QVariant value = m_accentSetting->value();
    if (value.canConvert<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
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

void ColourScheme::takeKdeScheme()
{
    // Its first answer is the scheme the colours were read with.
    if (std::exchange(m_kdeSchemeKnown, true))
        Q_EMIT coloursChanged();
}
