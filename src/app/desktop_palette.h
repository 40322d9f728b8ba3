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
// sometimes before Plasma has written the new colours; its GNOME and generic themes have Fusion's
// light greys only. So at every change the palette is chosen again: the desktop's own colours where
// it has them (KDE's, read afresh, accent included), else the Qt theme the user chose if it matches
// the scheme, else Quennet's light or dark one near Adwaita's; both take the accent colour the
// portal reports. Windows need telling too: a new Qt Quick window starts from the palette Qt Quick
// took at start, and the title bars Qt draws on Wayland where the compositor draws none (GNOME)
// take the palette once, when made, so they are made again.
class DesktopPalette : public QObject {
    Q_OBJECT

public:
    // The desktop's palette as it is now, if it has one of its own.
    using DesktopColours = std::function<std::optional<QPalette>()>;

    explicit DesktopPalette(ColourScheme *scheme, DesktopColours desktopColours = {},
                            QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] static QPalette dark();
    [[nodiscard]] static QPalette light();
    [[nodiscard]] static bool isDark(const QPalette &palette);
    static void takeAccent(QPalette &palette, const QColor &accent);
    void apply();
    static void remakeTitleBars();

    QPointer<ColourScheme> m_scheme;
    DesktopColours m_desktopColours;
};
