#pragma once

#include <QObject>

class QDBusConnection;

// Tells when the computer is about to sleep and when it has woken. Qt's timers stop during
// sleep, so long schedules look at their due moment again on waking.
class SleepWatcher : public QObject {
    Q_OBJECT

public:
    explicit SleepWatcher(QObject *parent = nullptr);

Q_SIGNALS:
    void aboutToSleep();
    void woke();
};

// Sleep and wake as logind announces them: PrepareForSleep(true) before, (false) after.
class LogindSleepWatcher : public SleepWatcher {
    Q_OBJECT

public:
    // The system bus in use; a test gives a bus of its own.
    explicit LogindSleepWatcher(QDBusConnection bus, QObject *parent = nullptr);

    // False without the bus: the computer then sleeps unannounced.
    [[nodiscard]] bool isListening() const { return m_listening; }

private Q_SLOTS:
    void prepareForSleep(bool start);

private:
    bool m_listening = false;
};
