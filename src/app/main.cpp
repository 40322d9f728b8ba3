#include "app_delegate.h"
#include "single_instance.h"
#include "translations.h"
#include "views_module.h"

#include <QApplication>
#include <QCommandLineParser>

using namespace Qt::Literals::StringLiterals;

namespace {
// Quennet's command line. Answers --help, --version and a mistake itself, and exits.
struct CommandLine {
    bool atLogin = false;
    bool dbusActivated = false;
    bool selfTest = false;
    bool settings = false;

    explicit CommandLine(const QCoreApplication &application)
    {
        const QCommandLineOption atLoginOption(
            u"at-login"_s,
            QCoreApplication::translate("main", "Started at login: stay in the tray."));
        const QCommandLineOption dbusActivatedOption(
            u"dbus-activated"_s,
            QCoreApplication::translate("main",
                                        "Started by a call on the session bus: stay in the tray."));
        const QCommandLineOption selfTestOption(
            u"self-test"_s,
            QCoreApplication::translate("main", "Load every view hidden, then quit."));
        const QCommandLineOption settingsOption(
            u"settings"_s, QCoreApplication::translate("main", "Open the settings."));
        QCommandLineParser parser;
        parser.addHelpOption();
        parser.addVersionOption();
        parser.addOptions({ atLoginOption, dbusActivatedOption, selfTestOption, settingsOption });
        parser.process(application);
        atLogin = parser.isSet(atLoginOption);
        dbusActivated = parser.isSet(dbusActivatedOption);
        selfTest = parser.isSet(selfTestOption);
        settings = parser.isSet(settingsOption);
    }
};

void describe(QCoreApplication &application)
{
    Translations::install(application);
    QCoreApplication::setApplicationName(u"Quennet"_s);
    QCoreApplication::setApplicationVersion(AppDelegate::version());
}

// Whether Qt has a display to open; without one it aborts.
bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// On a terminal outside the desktop, --help and --version still answer; a start says why it
// cannot happen.
int withoutDisplay(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    describe(application);
    // Made for what it answers itself before a start.
    const CommandLine options(application);
    fprintf(stderr, "%s\n",
            qPrintable(QCoreApplication::translate(
                "main", "Quennet runs in a desktop session, and this one has no display.")));
    return 1;
}
} // namespace

int main(int argc, char *argv[])
{
    if (!hasDisplay())
        return withoutDisplay(argc, argv);
    QApplication application(argc, argv);
    describe(application);
    QApplication::setDesktopFileName(u"app.quennet.Quennet"_s);
    // A tray application: closing its windows leaves it running.
    QApplication::setQuitOnLastWindowClosed(false);
    const CommandLine options(application);

    // Made before the instance claims the bus name: it puts the automation object on the bus.
    AppDelegate delegate({ .atLogin = options.atLogin || options.dbusActivated || options.settings,
                           .program = QApplication::applicationFilePath(),
                           .selfTest = options.selfTest,
                           .sayIfNoTray = options.atLogin,
                           .makeViews = ViewsModule::load });
    if (!options.selfTest && !SingleInstance::claim(options.settings ? u"settings"_s : QString()))
        return 0;
    delegate.start();
    if (options.settings)
        delegate.openSettings();
    if (options.selfTest)
        return delegate.selfTest() ? 0 : 1;
    return QApplication::exec();
}
