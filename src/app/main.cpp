#include "app_delegate.h"
#include "single_instance.h"
#include "translations.h"
#include "views_module.h"

#include <QApplication>
#include <QCommandLineParser>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    Translations::install(application);
    QApplication::setApplicationName(u"Quennet"_s);
    QApplication::setApplicationVersion(AppDelegate::version());
    QApplication::setDesktopFileName(u"app.quennet.Quennet"_s);
    // A tray application: closing its windows leaves it running.
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption atLogin(
        u"at-login"_s, QCoreApplication::translate("main", "Started at login: stay in the tray."));
    const QCommandLineOption dbusActivated(
        u"dbus-activated"_s,
        QCoreApplication::translate("main",
                                    "Started by a call on the session bus: stay in the tray."));
    const QCommandLineOption selfTest(
        u"self-test"_s, QCoreApplication::translate("main", "Load every view hidden, then quit."));
    const QCommandLineOption settings(u"settings"_s,
                                      QCoreApplication::translate("main", "Open the settings."));
    parser.addOptions({ atLogin, dbusActivated, selfTest, settings });
    parser.process(application);

    // Made before the instance claims the bus name: it puts the automation object on the bus.
    AppDelegate delegate(
        { .atLogin = parser.isSet(atLogin) || parser.isSet(dbusActivated) || parser.isSet(settings),
          .program = QApplication::applicationFilePath(),
          .selfTest = parser.isSet(selfTest),
          .sayIfNoTray = parser.isSet(atLogin),
          .makeViews = ViewsModule::load });
    if (!parser.isSet(selfTest)
        && !SingleInstance::claim(parser.isSet(settings) ? u"settings"_s : QString())) {
        return 0;
    }
    delegate.start();
    if (parser.isSet(settings)) {
        delegate.openSettings();
    }
    if (parser.isSet(selfTest)) {
        return delegate.selfTest() ? 0 : 1;
    }
    return QApplication::exec();
}
