#include "desktop_palette.h"

#include "colour_scheme.h"

#include <QApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

DesktopPalette::DesktopPalette(ColourScheme *scheme, DesktopColours desktopColours, QObject *parent)
    : QObject(parent)
    , m_scheme(scheme)
    , m_desktopColours(std::move(desktopColours))
{
    connect(scheme, &ColourScheme::changed, this, &DesktopPalette::apply);
    connect(scheme, &ColourScheme::coloursChanged, this, &DesktopPalette::apply);
    QCoreApplication::instance()->installEventFilter(this);
    apply();
}

bool DesktopPalette::eventFilter(QObject *watched, QEvent *event)
{
    // Until told of a change, a new Qt Quick window keeps the palette Qt Quick took at start.
    if (event->type() == QEvent::PlatformSurface
        && static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType()
            == QPlatformSurfaceEvent::SurfaceCreated
        && watched->inherits("QQuickWindow")) {
        QEvent change(QEvent::ApplicationPaletteChange);
        QCoreApplication::sendEvent(watched, &change);
    }
    return false;
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

QPalette DesktopPalette::light()
{
    // Near Adwaita's light window, views and text; Fusion's own greys look foreign on every
    // desktop.
    const QColor window(0xfa, 0xfa, 0xfa);
    const QColor text(0x30, 0x30, 0x30);
    const QColor button(0xeb, 0xeb, 0xeb);
    const QColor accent(0x35, 0x84, 0xe4);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf4, 0xf4, 0xf4));
    palette.setColor(QPalette::ToolTipBase, QColor(0x30, 0x30, 0x30));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, Qt::white);
    palette.setColor(QPalette::Midlight, QColor(0xf2, 0xf2, 0xf2));
    palette.setColor(QPalette::Mid, QColor(0xc0, 0xc0, 0xc0));
    palette.setColor(QPalette::Dark, QColor(0x9a, 0x9a, 0x9a));
    palette.setColor(QPalette::Shadow, QColor(0x60, 0x60, 0x60));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accent.darker(115));
    palette.setColor(QPalette::LinkVisited, accent.darker(135));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText }) {
        palette.setColor(QPalette::Disabled, role, QColor(0x9a, 0x9a, 0x9a));
    }
    palette.setColor(QPalette::Disabled, QPalette::Button, window);
    return palette;
}

void DesktopPalette::takeAccent(QPalette &palette, const QColor &accent)
{
    palette.setColor(QPalette::Highlight, accent);
    // White on the accent unless the accent is too light to carry it.
    palette.setColor(QPalette::HighlightedText, accent.lightness() > 170 ? Qt::black : Qt::white);
    const QColor link = isDark(palette) ? accent.lighter(125) : accent.darker(115);
    palette.setColor(QPalette::Link, link);
    palette.setColor(QPalette::LinkVisited, isDark(palette) ? link.darker(115) : link.darker(120));
}

void DesktopPalette::apply()
{
    const QPalette before = QApplication::palette();
    // The desktop's own colours, read afresh, are right even before the portal has answered.
    std::optional<QPalette> chosen = m_desktopColours ? m_desktopColours() : std::nullopt;
    if (!chosen) {
        const bool wantsDark = m_scheme && m_scheme->isDark();
        chosen = wantsDark ? dark() : light();
        if (qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME")) {
            // A Qt theme the user chose (qt6ct and the like) wins while it matches the scheme. A
            // palette with no role of its own resolves to the theme's as it is now; a fresh one,
            // so that Qt cannot take it for the application's own.
            QPalette theme(Qt::black);
            theme.setResolveMask(0);
            QApplication::setPalette(theme);
            if (isDark(QApplication::palette()) == wantsDark)
                chosen = QApplication::palette();
        }
        if (m_scheme && m_scheme->accent().isValid())
            takeAccent(*chosen, m_scheme->accent());
    }
    QApplication::setPalette(*chosen);
    if (QApplication::palette() != before)
        remakeTitleBars();
}

void DesktopPalette::remakeTitleBars()
{
    if (QGuiApplication::platformName() != "wayland"_L1)
        return;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        const Qt::WindowFlags flags = window->flags();
        // Only a frame Qt draws has margins; a compositor's title bar is not the window's.
        if (window->frameMargins().isNull() || flags.testFlag(Qt::FramelessWindowHint))
            continue;
        // Qt's Wayland plugin makes a new decoration when a frameless window gets its frame back.
        window->setFlags(flags | Qt::FramelessWindowHint);
        window->setFlags(flags);
    }
}
