#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariant>

class QDBusMessage;

// One setting of the desktop portal's Settings interface (a group and a key, such as
// org.gnome.desktop.interface enable-animations), read once without waiting and then followed
// through the portal's SettingChanged signal. Invalid until the portal answers, and for good
// when there is no portal or it does not know the setting. changed() comes with the first answer,
// whatever it is, and at every change after.
class PortalSetting : public QObject {
    Q_OBJECT

public:
    PortalSetting(QDBusConnection bus, QString group, QString key, QObject *parent = nullptr);

    [[nodiscard]] QVariant value() const { return m_value; }
    // Whether the portal has answered, or will never be asked.
    [[nodiscard]] bool isKnown() const { return m_known; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &message);

private:
    void read();
    void take(const QVariant &value);

    QDBusConnection m_bus;
    QString m_group;
    QString m_key;
    QVariant m_value;
    bool m_known = false;
    bool m_heard = false;
};
