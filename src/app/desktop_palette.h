#pragma once

#include <QObject>
#include <QPalette>
#include <QPointer>

class ColourScheme;

// Keeps the application's palette on the desktop's light or dark style. A desktop whose own Qt
// theme already gives a dark palette is left alone; elsewhere (the portal says dark, the palette
// is light) Quennet puts on a dark palette of its own, and takes it off again for light.
class DesktopPalette : public QObject {
    Q_OBJECT

public:
    explicit DesktopPalette(ColourScheme *scheme, QObject *parent = nullptr);

    [[nodiscard]] static QPalette dark();
    [[nodiscard]] static bool isDark(const QPalette &palette);

private:
    void apply();

    QPointer<ColourScheme> m_scheme;
    QPalette m_original;
    bool m_applied = false;
};
