#pragma once

#include <QStringList>
#include <optional>

// One XDG autostart entry in $XDG_CONFIG_HOME/autostart: the session starts its program at
// login. Registered means the file exists and is not Hidden=true; unregistering deletes it.
class AutostartEntry {
public:
    enum class State {
        Absent, // no file, or Hidden=true
        Present,
        Disabled, // X-GNOME-Autostart-enabled=false: turned off in the desktop's settings
    };

    // name: the file's name, "app.quennet.Quennet.helper.desktop"; folder: the autostart folder,
    // $XDG_CONFIG_HOME/autostart when empty.
    explicit AutostartEntry(QString name, QString folder = {});

    [[nodiscard]] QString path() const;
    [[nodiscard]] State state() const;
    // The program of the entry's Exec line, unquoted; empty when there is none.
    [[nodiscard]] QString program() const;

    // What the entry starts and how the desktop's list of startup programs shows it.
    struct Contents {
        QString title;
        QString comment;
        QString program;
        QStringList arguments;
        // Listed entries are the user's to see and switch off in the desktop's settings.
        bool listed = false;
    };

    // Writes the entry atomically. Returns the error's words, empty on success.
    [[nodiscard]] QString write(const Contents &contents) const;
    // Deletes the entry; no file is no error. Returns the error's words, empty on success.
    [[nodiscard]] QString remove() const;

private:
    // The main group's value of key, or none.
    [[nodiscard]] std::optional<QString> value(QStringView key) const;

    QString m_path;
};
