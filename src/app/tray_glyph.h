#pragma once

#include <QIcon>

// The tray icon: a monochrome picture drawn in the ink that stands out on the panel that shows
// it. Tray hosts draw a pixmap as it is, and GNOME Shell's top bar is dark in either scheme,
// while Plasma's panel follows the colour scheme.
class TrayGlyph {
public:
    // GNOME's, XFCE's, Cinnamon's and the usual X11 trays' panels are dark whatever the scheme.
    [[nodiscard]] static bool panelIsDark(bool onPlasma, bool schemeIsDark)
    {
        return !onPlasma || schemeIsDark;
    }
    [[nodiscard]] static QColor ink(bool panelIsDark);
    [[nodiscard]] static QIcon icon(const QColor &ink);
};
