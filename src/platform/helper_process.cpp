#include "helper_process.h"

#include "logging.h"

#include <QCoroTimer>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <csignal>
#include <sys/types.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto quitWait = 2s;
constexpr auto poll = 50ms;

// Whether pid is a live process whose program is the helper: a pid file may outlive its
// process, and the number may since belong to another.
bool isHelper(qint64 pid)
{
    const QString program = QFileInfo(u"/proc/%1/exe"_s.arg(pid)).symLinkTarget();
    // A program replaced on disk shows as "… (deleted)".
    return QFileInfo(program).fileName().startsWith("quennet-helper"_L1);
}

QCoro::Task<> pause(std::chrono::milliseconds duration)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(duration);
    co_await timer;
}
} // namespace

QString HelperBus::pidFilePath()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    return folder + u'/' + QLatin1StringView(service) + u".pid"_s;
}

HelperProcess::HelperProcess(QDBusConnection bus, QString pidFile, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_pidFile(std::move(pidFile))
{
}

std::optional<qint64> HelperProcess::pidFromFile() const
{
    QFile file(m_pidFile);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    bool number = false;
    const qint64 pid = QString::fromLatin1(file.readAll()).trimmed().toLongLong(&number);
    if (!number || pid <= 1 || !isHelper(pid))
        return std::nullopt;
    return pid;
}

std::optional<qint64> HelperProcess::pid() const
{
    if (m_bus.isConnected() && m_bus.interface()) {
        const auto pid = m_bus.interface()->servicePid(QLatin1StringView(HelperBus::service));
        if (pid.isValid() && pid.value() > 0)
            return pid.value();
    }
    return pidFromFile();
}

bool HelperProcess::start(const QString &program)
{
    if (isRunning())
        return true;
    qCDebug(lcSpacesProcess) << "Starting" << program;
    return QProcess::startDetached(program, {});
}

void HelperProcess::placementsChanged(const QStringList &displayIds)
{
    if (!m_bus.isConnected())
        return;
    auto message = QDBusMessage::createMethodCall(
        QLatin1StringView(HelperBus::service), QLatin1StringView(HelperBus::path),
        QLatin1StringView(HelperBus::interface), u"PlacementsChanged"_s);
    message << displayIds;
    // Not started for this: a helper that does not run reads the placements when it starts.
    message.setAutoStartService(false);
    m_bus.asyncCall(message);
}

QCoro::Task<> HelperProcess::end()
{
    const QPointer<HelperProcess> self(this);
    const auto pid = this->pid();
    if (!pid)
        co_return;
    if (m_bus.isConnected()) {
        auto message = QDBusMessage::createMethodCall(
            QLatin1StringView(HelperBus::service), QLatin1StringView(HelperBus::path),
            QLatin1StringView(HelperBus::interface), u"Quit"_s);
        message.setAutoStartService(false);
        m_bus.asyncCall(message);
    }
    for (auto waited = 0ms; waited < quitWait; waited += poll) {
        co_await pause(poll);
        if (!self)
            co_return;
        if (!isHelper(*pid))
            co_return;
    }
    qCInfo(lcSpacesProcess) << "The helper did not quit; ending process" << *pid;
    ::kill(pid_t(*pid), SIGKILL);
    while (isHelper(*pid)) {
        co_await pause(poll);
        if (!self)
            co_return;
    }
}
