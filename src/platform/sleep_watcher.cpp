#include "sleep_watcher.h"

#include "logging.h"

#include <QDBusConnection>
#include <QDBusError>

using namespace Qt::Literals::StringLiterals;

SleepWatcher::SleepWatcher(QObject *parent)
    : QObject(parent)
{
}

LogindSleepWatcher::LogindSleepWatcher(QDBusConnection bus, QObject *parent)
    : SleepWatcher(parent)
{
    m_listening = bus.isConnected()
        && bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                       u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                       SLOT(prepareForSleep(bool)));
    if (!m_listening)
        qCWarning(lcSleep) << "Not told of sleep and wake:" << bus.lastError().message();
}

void LogindSleepWatcher::prepareForSleep(bool start)
{
    if (start)
        Q_EMIT aboutToSleep();
    else
        Q_EMIT woke();
}
