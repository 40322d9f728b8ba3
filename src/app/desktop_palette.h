#pragma once

#include <QObject>
#include <QPalette>
#include <QPointer>
#include <functional>
#include <optional>

class ColourScheme;

// Keeps the application's palette, title bars included, on the desktop's light or dark style
// while windows are open.
//
// Qt 6.4 follows neither way by itself. Its KDE theme reads kdeglobals at start, and on a change
// sometimes before Plasma has written the new colours; its GNOME and generic themes have a light
// palette only. So at every change the palette is chosen again: the desktop's own colours where it
// has them (KDE's, read afresh), else the Qt theme's if it matches the scheme, else one of
// Quennet's. Windows need telling too: a new Qt Quick window starts from the palette Qt Quick took
// at start, and the title bars Qt draws on Wayland where the compositor draws none (GNOME) take
// the palette once, when made, so they are made again.
class DesktopPalette : public QObject {
    Q_OBJECT

public:
    // The desktop's palette as it is now, if it has one of its own.
    using DesktopColours = std::function<std::optional<QPalette>()>;

    explicit DesktopPalette(ColourScheme *scheme, DesktopColours desktopColours = {},
                            QObject *parent = nullptr);

    [[nodiscard]] static QPalette dark();
    [[nodiscard]] static QPalette light();
    [[nodiscard]] static bool isDark(const QPalette &palette);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void apply();
    static void remakeTitleBars();

    QPointer<ColourScheme> m_scheme;
    DesktopColours m_desktopColours;
};
