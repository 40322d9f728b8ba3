#pragma once

#include <QPalette>
#include <QStringList>
#include <optional>

// The palette of the KDE colour scheme in use, read from kdeglobals as Plasma last wrote it. Qt
// 6.4's own KDE theme reads that file at start, and after a change not reliably again.
class KdeColours {
public:
    // kdeglobals in the user's configuration folder, then in the system's: KDE's order.
    [[nodiscard]] static QStringList files();
    // Each colour comes from the first file that has it. None without the window's colour.
    [[nodiscard]] static std::optional<QPalette> palette(const QStringList &files);
};
