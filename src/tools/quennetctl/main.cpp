#include "automation_client.h"
#include "command_line.h"
#include "translations.h"

#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    Translations::install(application);
    QTextStream out(stdout);
    QTextStream err(stderr);

    const CommandLine line = CommandLine::parse(QCoreApplication::arguments().mid(1));
    out << line.output;
    err << line.error;
    if (!line.command)
        return line.exitStatus;
    AutomationClient client(QDBusConnection::sessionBus());
    const int status = client.run(*line.command, out, err);

    // Ends without Qt's tear-down: Qt 6.4 destroys its registry of types before it stops its D-Bus
    // thread, and a message that thread is still delivering (the bus's own, after the reply) then
    // warns "Trying to construct an instance of an invalid type" on standard error, where only
    // Quennet's sentence belongs. Nothing else here needs tearing down.
    out.flush();
    err.flush();
    std::fflush(nullptr);
    std::_Exit(status);
}
