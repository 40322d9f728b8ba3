// quennet-devshop: the development shop on the command line.
#include "dev_shop.h"
#include "sample_content.h"

#include <QCoreApplication>
#include <QTextStream>
#include <csignal>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto usage = R"(usage:
  quennet-devshop make-content DIR [--small]
  quennet-devshop serve --content DIR --state DIR [--port N] [--interval S]
                        [--code-lifetime S] [--link-lifetime S]
)"_L1;

int usageError(const QString &problem)
{
    QTextStream(stderr) << "quennet-devshop: " << problem << "\n" << usage;
    return 2;
}

std::optional<int> number(const QString &text, int lowest, int highest)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= lowest && value <= highest ? std::optional(value) : std::nullopt;
}

int makeContent(const QStringList &arguments)
{
    const bool small = arguments.contains(u"--small"_s);
    QStringList rest = arguments;
    rest.removeAll(u"--small"_s);
    if (rest.size() != 1 || rest.first().startsWith(u'-'))
        return usageError(u"make-content takes one folder"_s);
    return SampleContent::make(rest.first(),
                               small ? SampleContent::Size::Small : SampleContent::Size::Large)
        ? 0
        : 1;
}

int serve(const QStringList &arguments)
{
    DevShop::Options options;
    for (qsizetype i = 0; i < arguments.size(); i += 2) {
        const QString &name = arguments[i];
        if (i + 1 >= arguments.size())
            return usageError(name + u" needs a value"_s);
        const QString &value = arguments[i + 1];
        std::optional<int> seconds;
        if (name == "--content"_L1) {
            options.contentDir = value;
        } else if (name == "--state"_L1) {
            options.stateDir = value;
        } else if (name == "--port"_L1) {
            const auto port = number(value, 0, 65535);
            if (!port)
                return usageError(u"--port takes a number from 0 to 65535"_s);
            options.port = quint16(*port);
        } else if (name == "--interval"_L1 || name == "--code-lifetime"_L1
                   || name == "--link-lifetime"_L1) {
            if (!(seconds = number(value, 0, 86400 * 365)))
                return usageError(name + u" takes a number of seconds"_s);
            int &field = name == "--interval"_L1 ? options.pollInterval
                : name == "--code-lifetime"_L1   ? options.codeLifetime
                                                 : options.linkLifetime;
            field = *seconds;
        } else {
            return usageError(u"unknown option "_s + name);
        }
    }
    if (options.contentDir.isEmpty() || options.stateDir.isEmpty())
        return usageError(u"serve needs --content and --state"_s);

    // The server's threads inherit this mask, so the signals reach only sigwait below.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    DevShop shop(options);
    if (!shop.start())
        return 1;
    QTextStream(stdout) << shop.baseUrl().toString() << Qt::endl;
    int received = 0;
    sigwait(&signals, &received);
    shop.stop();
    return 0;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"quennet-devshop"_s);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return usageError(u"no command given"_s);
    const QString command = arguments.takeFirst();
    if (command == "make-content"_L1)
        return makeContent(arguments);
    if (command == "serve"_L1)
        return serve(arguments);
    if (command == "--help"_L1 || command == "-h"_L1) {
        QTextStream(stdout) << usage;
        return 0;
    }
    return usageError(u"unknown command "_s + command);
}
