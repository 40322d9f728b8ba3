#include "panel_rules.h"

#include <algorithm>
#include <cmath>
#include <utility>

QRect PanelRules::frame(const QRect &icon, const QRect &available, int height)
{
    if (icon.isEmpty()) {
        // No icon geometry: the top-right corner, where trays usually sit.
        return { available.right() + 1 - margin - width, available.top() + gap, width, height };
    }
    const int middle = icon.left() + icon.width() / 2;
    int x = std::max(middle - width / 2, available.left() + margin);
    x = std::min(x, available.right() + 1 - width - margin);
    // A tray at the bottom of the screen opens the panel above itself.
    const bool below = icon.center().y() < available.center().y();
    const int y = below ? icon.bottom() + 1 + gap : icon.top() - gap - height;
    return { x, y, width, height };
}

bool PanelRules::resizes(double current, double reported)
{
    return reported > 0 && std::abs(reported - current) > 0.5;
}

bool PanelRules::focusLost(const QDateTime &now)
{
    if (!std::exchange(m_holdsFocus, false)) {
        return false;
    }
    m_lastDismissal = now;
    return true;
}

bool PanelRules::mayOpen(const QDateTime &now) const
{
    return !m_lastDismissal.isValid() || m_lastDismissal.msecsTo(now) > dismissalGraceMs;
}
