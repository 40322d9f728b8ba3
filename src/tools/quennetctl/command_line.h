#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// One request of quennetctl, as its command line asked for it.
struct Command {
    enum class Action {
        Shuffle,
        Set,
        Get,
        Favourite,
        ShuffleSettings,
        FocusFilter,
        Find,
        SignIn,
        SignOut,
        Refresh,
        Status,
    };

    Action action = Action::Status;
    QString wallpaper; // set: PACK/COLOURWAY
    QString edition; // set: empty for automatic
    bool isOn = false; // shuffle-settings
    QString interval; // shuffle-settings: empty to leave it
    QString source; // shuffle-settings: empty to leave it
    QString text; // find: empty for every wallpaper

    bool operator==(const Command &) const = default;
};

// What a command line comes to: a command to run, or text to print (help, version, or what is
// wrong with it) and the exit status that goes with it.
struct CommandLine {
    static constexpr int usageError = 2;

    std::optional<Command> command;
    QString output; // for standard output
    QString error; // for standard error
    int exitStatus = 0;

    // arguments: without the program's name.
    [[nodiscard]] static CommandLine parse(const QStringList &arguments);
    // The help of the whole tool.
    [[nodiscard]] static QString help();
    // The help of one subcommand; empty for an unknown one.
    [[nodiscard]] static QString help(const QString &name);
    [[nodiscard]] static QStringList subcommands();
};
