#pragma once

#include <QDateTime>
#include <QRect>

// Where the tray panel goes and when a click may open it: the geometry and timing rules kept
// apart from the window so that they can be checked without a tray.
class PanelRules {
public:
    static constexpr int width = 360;
    static constexpr int margin = 8; // kept between the panel and the edge of the available area
    static constexpr int gap = 6; // between the tray and the panel
    static constexpr int initialHeight = 480;
    static constexpr int openingLift = 6; // the panel slides this far into place when it opens
    static constexpr qint64 dismissalGraceMs = 250;

    // The panel's frame for a content height. icon is the tray icon's rectangle on screen (empty
    // when the tray does not say, as StatusNotifierItem hosts often do); available is the
    // available area of the icon's screen, else the primary screen's.
    [[nodiscard]] static QRect frame(const QRect &icon, const QRect &available, int height);

    // Whether a content height report changes the panel: heights of zero or less mean nothing,
    // and a change of half a pixel or less is not worth a resize.
    [[nodiscard]] static bool resizes(double current, double reported);

    // The panel took the focus, or it was hidden.
    void focusTaken() { m_holdsFocus = true; }
    void hidden() { m_holdsFocus = false; }

    // The panel lost the focus: whether that was a click elsewhere, which closes it and must not
    // reopen it. Only the focus taken since the panel was last shown can be lost: a window system
    // may tell of a loss from before a hide only once the panel is shown again.
    [[nodiscard]] bool focusLost(const QDateTime &now);
    [[nodiscard]] bool mayOpen(const QDateTime &now) const;

private:
    bool m_holdsFocus = false;
    QDateTime m_lastDismissal;
};
