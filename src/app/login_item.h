#pragma once

#include "autostart_entry.h"

#include <QObject>

// Open at login, as an XDG autostart entry that starts Quennet with --at-login. On means the
// entry exists, is not hidden and the desktop's settings have not switched it off; turning it
// off deletes the entry.
class LoginItem : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY changed)

public:
    // program: what the entry starts; autostartFolder: $XDG_CONFIG_HOME/autostart by default.
    explicit LoginItem(QString program, QString autostartFolder = {}, QObject *parent = nullptr);

    [[nodiscard]] QString entryPath() const;
    [[nodiscard]] bool isOn() const;
    // Logs a failure and leaves the switch showing what is on disk.
    void setOn(bool on);

Q_SIGNALS:
    void changed();

private:
    QString m_program;
    AutostartEntry m_entry;
};
