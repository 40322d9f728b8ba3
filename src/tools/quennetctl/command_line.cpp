#include "command_line.h"

#include <QCoreApplication>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {
struct Subcommand {
    QLatin1StringView name;
    Command::Action action;
    QLatin1StringView synopsis; // after the name
    const char *brief; // in the tool's list, to translate in context "CommandLine"
    const char *about; // in the subcommand's help, with options and notes
};

constexpr std::array table {
    Subcommand { "shuffle"_L1, Command::Action::Shuffle, ""_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "change the wallpaper now"),
                 QT_TRANSLATE_NOOP("CommandLine",
                                   "Changes the wallpaper now, as the shuffle's settings say.\n") },
    Subcommand { "set"_L1, Command::Action::Set, " PACK/COLOURWAY [--edition EDITION]"_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "set a wallpaper on all displays"),
                 QT_TRANSLATE_NOOP(
                     "CommandLine",
                     "Sets a wallpaper on all displays, downloading it first when needed.\n"
                     "\n"
                     "Options:\n"
                     "  --edition EDITION   automatic (the default), timeOfDay, light or dark\n") },
    Subcommand {
        "get"_L1, Command::Action::Get, ""_L1,
        QT_TRANSLATE_NOOP("CommandLine", "print the main display's wallpaper"),
        QT_TRANSLATE_NOOP(
            "CommandLine",
            "Prints the main display's wallpaper: PACK/COLOURWAY, its name and its pack's\n"
            "name, separated by tabs.\n") },
    Subcommand { "favourite"_L1, Command::Action::Favourite, ""_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "make the main display's wallpaper a favourite"),
                 QT_TRANSLATE_NOOP(
                     "CommandLine",
                     "Makes the main display's wallpaper a favourite. A favourite already stays\n"
                     "where it is: this never removes one.\n") },
    Subcommand {
        "shuffle-settings"_L1, Command::Action::ShuffleSettings,
        " --on|--off [--interval INTERVAL] [--source SOURCE]"_L1,
        QT_TRANSLATE_NOOP("CommandLine", "turn the shuffle on or off, and say how"),
        QT_TRANSLATE_NOOP(
            "CommandLine",
            "Turns the shuffle on or off, and changes how often it shuffles and what from.\n"
            "\n"
            "Options:\n"
            "  --on, --off         shuffle, or stop shuffling\n"
            "  --interval INTERVAL hour, sixHours, day or week; unchanged when left out\n"
            "  --source SOURCE     all or favourites; unchanged when left out\n") },
    Subcommand {
        "focus-filter"_L1, Command::Action::FocusFilter, " [PACK/COLOURWAY [--edition EDITION]]"_L1,
        QT_TRANSLATE_NOOP("CommandLine", "choose the wallpaper for Do Not Disturb"),
        QT_TRANSLATE_NOOP(
            "CommandLine",
            "Chooses the wallpaper every display shows while Do Not Disturb is on; without\n"
            "a wallpaper, none.\n"
            "\n"
            "Options:\n"
            "  --edition EDITION   automatic (the default), timeOfDay, light or dark\n") },
    Subcommand { "find"_L1, Command::Action::Find, " [TEXT...]"_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "list your wallpapers"),
                 QT_TRANSLATE_NOOP(
                     "CommandLine",
                     "Lists your wallpapers whose name or pack name holds every word of the text,\n"
                     "regardless of case; all of them without text. Favourites come first, newest\n"
                     "first, then the rest in library order. Each line is PACK/COLOURWAY, the\n"
                     "wallpaper's name and its pack's name, separated by tabs.\n") },
    Subcommand { "sign-in"_L1, Command::Action::SignIn, ""_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "sign in to the shop in the browser"),
                 QT_TRANSLATE_NOOP(
                     "CommandLine",
                     "Signs in to the shop: approve this computer in the browser with the code it\n"
                     "prints. Waits until the sign-in is done and your packs are loaded.\n") },
    Subcommand { "sign-out"_L1, Command::Action::SignOut, ""_L1,
                 QT_TRANSLATE_NOOP("CommandLine", "sign this computer out of the shop"),
                 QT_TRANSLATE_NOOP("CommandLine", "Signs this computer out of the shop.\n") },
    Subcommand {
        "refresh"_L1, Command::Action::Refresh, ""_L1,
        QT_TRANSLATE_NOOP("CommandLine", "check the shop for new packs and files"),
        QT_TRANSLATE_NOOP("CommandLine",
                          "Checks the shop for new packs and files, and waits for the answer.\n") },
    Subcommand {
        "status"_L1, Command::Action::Status, ""_L1,
        QT_TRANSLATE_NOOP("CommandLine", "print the sign-in and library state"),
        QT_TRANSLATE_NOOP(
            "CommandLine",
            "Prints the sign-in state (signedOut, requesting, waiting, failed or signedIn),\n"
            "the code to approve and its page while waiting, why a sign-in failed, and\n"
            "the library's state (loading, ready or failed), one \"Name: value\" a line.\n") },
};

const Subcommand *find(QStringView name)
{
    for (const auto &subcommand : table) {
        if (name == subcommand.name)
            return &subcommand;
    }
    return nullptr;
}

CommandLine usage(const QString &problem, const QString &subcommand = {})
{
    const QString see = subcommand.isEmpty() ? u"quennetctl --help"_s
                                             : u"quennetctl "_s + subcommand + u" --help"_s;
    return { .error = u"quennetctl: "_s + problem + u'\n'
                 + QCoreApplication::translate("CommandLine", "See '%1'.").arg(see) + u'\n',
             .exitStatus = CommandLine::usageError };
}

bool isHelp(const QString &argument)
{
    return argument == "--help"_L1 || argument == "-h"_L1;
}

// Reads the subcommand's arguments into command; an error text when they are not right.
std::optional<QString> readArguments(const Subcommand &subcommand, QStringList arguments,
                                     Command &command)
{
    QStringList positional;
    std::optional<bool> on;
    while (!arguments.isEmpty()) {
        QString argument = arguments.takeFirst();
        if (argument == "--"_L1) {
            positional.append(arguments);
            break;
        }
        if (!argument.startsWith("--"_L1)) {
            positional.append(argument);
            continue;
        }
        QString value;
        bool hasValue = false;
        if (const qsizetype equals = argument.indexOf(u'='); equals > 0) {
            value = argument.mid(equals + 1);
            argument.truncate(equals);
            hasValue = true;
        }
        const auto takeValue = [&]() -> std::optional<QString> {
            if (hasValue)
                return value;
            if (arguments.isEmpty())
                return std::nullopt;
            return arguments.takeFirst();
        };
        QString *target = nullptr;
        if ((subcommand.action == Command::Action::Set
             || subcommand.action == Command::Action::FocusFilter)
            && argument == "--edition"_L1)
            target = &command.edition;
        else if (subcommand.action == Command::Action::ShuffleSettings
                 && argument == "--interval"_L1)
            target = &command.interval;
        else if (subcommand.action == Command::Action::ShuffleSettings && argument == "--source"_L1)
            target = &command.source;
        if (target) {
            const auto taken = takeValue();
            if (!taken || taken->isEmpty())
                return QCoreApplication::translate("CommandLine", "%1 needs a value").arg(argument);
            *target = *taken;
            continue;
        }
        if (subcommand.action == Command::Action::ShuffleSettings && !hasValue
            && (argument == "--on"_L1 || argument == "--off"_L1)) {
            const bool wanted = argument == "--on"_L1;
            if (on && *on != wanted)
                return QCoreApplication::translate("CommandLine", "give --on or --off, not both");
            on = wanted;
            continue;
        }
        return QCoreApplication::translate("CommandLine", "unknown option %1").arg(argument);
    }

    switch (subcommand.action) {
    case Command::Action::Set:
        if (positional.isEmpty())
            return QCoreApplication::translate("CommandLine", "name a wallpaper as PACK/COLOURWAY");
        if (positional.size() > 1)
            return QCoreApplication::translate("CommandLine", "one wallpaper at a time");
        command.wallpaper = positional.first();
        return std::nullopt;
    case Command::Action::FocusFilter:
        if (positional.size() > 1)
            return QCoreApplication::translate("CommandLine", "one wallpaper at a time");
        if (positional.isEmpty() && !command.edition.isEmpty())
            return QCoreApplication::translate("CommandLine", "--edition needs a wallpaper");
        command.wallpaper = positional.value(0);
        return std::nullopt;
    case Command::Action::Find:
        command.text = positional.join(u' ');
        return std::nullopt;
    case Command::Action::ShuffleSettings:
        if (!on)
            return QCoreApplication::translate("CommandLine", "give --on or --off");
        command.isOn = *on;
        break;
    default:
        break;
    }
    if (!positional.isEmpty())
        return QCoreApplication::translate("CommandLine", "unexpected argument %1")
            .arg(positional.first());
    return std::nullopt;
}
} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return usage(QCoreApplication::translate("CommandLine", "name a command"));
    const QString &first = arguments.first();
    if (isHelp(first)) {
        if (arguments.size() > 1 && find(arguments[1]))
            return { .output = help(arguments[1]) };
        return { .output = help() };
    }
    if (first == "--version"_L1)
        return { .output = u"quennetctl " QUENNET_VERSION "\n"_s };
    const Subcommand *subcommand = find(first);
    if (!subcommand)
        return first.startsWith(u'-')
            ? usage(QCoreApplication::translate("CommandLine", "unknown option %1").arg(first))
            : usage(QCoreApplication::translate("CommandLine", "'%1' isn't a command").arg(first));
    QStringList rest = arguments.mid(1);
    const qsizetype beforeEnd = rest.indexOf(u"--"_s);
    const QStringList options = beforeEnd < 0 ? rest : rest.first(beforeEnd);
    if (std::any_of(options.cbegin(), options.cend(), isHelp))
        return { .output = help(first) };

    Command command { .action = subcommand->action };
    if (const auto problem = readArguments(*subcommand, rest, command))
        return usage(first + u": "_s + *problem, first);
    return { .command = command };
}

QString CommandLine::help()
{
    QString text = QCoreApplication::translate(
        "CommandLine",
        "Usage: quennetctl COMMAND [ARGUMENTS]\n"
        "\n"
        "Controls Quennet over the session bus, starting it when it isn't running.\n"
        "\n"
        "Commands:\n");
    for (const auto &subcommand : table)
        text += u"  %1  %2\n"_s.arg(QString(subcommand.name).leftJustified(16),
                                    QCoreApplication::translate("CommandLine", subcommand.brief));
    text += QCoreApplication::translate(
        "CommandLine",
        "\n"
        "Options:\n"
        "  -h, --help        this help, or a command's help after the command\n"
        "  --version         Quennet's version\n"
        "\n"
        "A wallpaper is named PACK/COLOURWAY, as 'quennetctl find' lists them.\n"
        "Exit status: 0 when done; 1 when it failed, with the reason on standard error;\n"
        "2 when the command line is wrong.\n");
    return text;
}

QString CommandLine::help(const QString &name)
{
    const Subcommand *subcommand = find(name);
    if (!subcommand)
        return {};
    return QCoreApplication::translate("CommandLine", "Usage: quennetctl %1%2")
               .arg(subcommand->name, subcommand->synopsis)
        + u"\n\n"_s + QCoreApplication::translate("CommandLine", subcommand->about);
}

QStringList CommandLine::subcommands()
{
    QStringList names;
    for (const auto &subcommand : table)
        names.append(subcommand.name);
    return names;
}
