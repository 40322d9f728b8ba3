#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QObject>

// The workspace helper's own names: its session bus name and object, and its pid file.
namespace HelperBus {
inline constexpr auto service = "app.quennet.Quennet.helper";
inline constexpr auto path = "/app/quennet/Quennet/helper";
inline constexpr auto interface = "app.quennet.Quennet.Helper";
// $XDG_RUNTIME_DIR/app.quennet.Quennet.helper.pid
[[nodiscard]] QString pidFilePath();
} // namespace HelperBus

// The running workspace helper, found through its own D-Bus name or its pid file, never by a
// process name: whether it runs, starting it, telling it of new placements, and ending it.
class HelperProcess : public QObject {
    Q_OBJECT

public:
    // bus: the session bus; pidFile: HelperBus::pidFilePath() unless a test says otherwise.
    HelperProcess(QDBusConnection bus, QString pidFile, QObject *parent = nullptr);

    // The pid of the running helper: the owner of its bus name, else a live helper process
    // named in the pid file; none when it does not run.
    [[nodiscard]] std::optional<qint64> pid() const;
    [[nodiscard]] bool isRunning() const { return pid().has_value(); }

    // Starts program, detached, unless a helper runs already. False when it could not start.
    bool start(const QString &program);
    // Tells a running helper that these displays have a new placement.
    void placementsChanged(const QStringList &displayIds);
    // Asks the helper to quit over D-Bus; one that is still there after 2 s, or that has no bus,
    // is killed by its pid. Ends when it has gone.
    QCoro::Task<> end();

private:
    [[nodiscard]] std::optional<qint64> pidFromFile() const;

    QDBusConnection m_bus;
    QString m_pidFile;
};
