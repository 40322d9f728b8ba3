#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusMessage;

// Whether the desktop prefers dark, from the desktop portal's appearance setting
// (org.freedesktop.appearance color-scheme). Light until the portal says otherwise. It also tells
// when KDE's colour scheme is replaced, since its colours can change while dark stays dark.
// changed() comes once when the first answer is in, whatever it is, and at every change after.
class ColourScheme : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)

public:
    explicit ColourScheme(QDBusConnection bus, QObject *parent = nullptr);

    [[nodiscard]] bool isDark() const { return m_dark; }
    // Whether the portal has answered, or will never be asked.
    [[nodiscard]] bool isKnown() const { return m_known; }

Q_SIGNALS:
    void changed();
    void coloursChanged();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &message);

private:
    void take(const QVariant &value);

    QDBusConnection m_bus;
    bool m_dark = false;
    bool m_known = false;
};
