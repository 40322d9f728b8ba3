#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QObject>

class PortalSetting;

// Whether the desktop prefers dark, and the accent colour the user chose, from the desktop portal's
// appearance settings (org.freedesktop.appearance color-scheme and accent-color). Light, with no
// accent, until the portal says otherwise. It also tells when KDE's colour scheme is replaced,
// since its colours can change while dark stays dark. changed() comes once when the first answer
// is in, whatever it is, and at every change after; coloursChanged() when the colours change.
class ColourScheme : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)

public:
    explicit ColourScheme(const QDBusConnection &bus, QObject *parent = nullptr);

    [[nodiscard]] bool isDark() const { return m_dark; }
    // Invalid while the desktop has no accent colour or the portal cannot tell.
    [[nodiscard]] QColor accent() const { return m_accent; }
    // Whether the portal has answered, or will never be asked.
    [[nodiscard]] bool isKnown() const { return m_known; }

Q_SIGNALS:
    void changed();
    void coloursChanged();

private:
    void takeScheme();
    void takeAccent();
    void takeKdeScheme();

    PortalSetting *m_accentSetting;
    PortalSetting *m_schemeSetting;
    PortalSetting *m_kdeScheme;
    bool m_dark = false;
    bool m_known = false;
    QColor m_accent;
    bool m_kdeSchemeKnown = false;
};
