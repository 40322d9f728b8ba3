#include "desktop_palette.h"

#include "colour_scheme.h"

#include <QApplication>

DesktopPalette::DesktopPalette(ColourScheme *scheme, QObject *parent)
    : QObject(parent)
    , m_scheme(scheme)
    , m_original(QApplication::palette())
{
    connect(scheme, &ColourScheme::changed, this, &DesktopPalette::apply);
    apply();
}

bool DesktopPalette::isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QPalette DesktopPalette::dark()
{
    // Neutral greys near those of Adwaita and Breeze dark, with the system's blue for selection.
    const QColor window(0x2b, 0x2b, 0x2d);
    const QColor base(0x1f, 0x1f, 0x21);
    const QColor text(0xec, 0xec, 0xee);
    const QColor button(0x38, 0x38, 0x3b);
    const QColor accent(0x35, 0x84, 0xe4);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window.lighter(110));
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9a, 0xa0));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, button.lighter(130));
    palette.setColor(QPalette::Midlight, button.lighter(115));
    palette.setColor(QPalette::Mid, QColor(0x4a, 0x4a, 0x4e));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x1a));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accent.lighter(125));
    palette.setColor(QPalette::LinkVisited, accent.lighter(110));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText }) {
        palette.setColor(QPalette::Disabled, role, QColor(0x7a, 0x7a, 0x80));
    }
    palette.setColor(QPalette::Disabled, QPalette::Button, window);
    return palette;
}

void DesktopPalette::apply()
{
    const bool wantsDark = m_scheme && m_scheme->isDark();
    if (wantsDark && !m_applied && !isDark(m_original)) {
        m_applied = true;
        QApplication::setPalette(dark());
    } else if (!wantsDark && m_applied) {
        m_applied = false;
        QApplication::setPalette(m_original);
    }
}
