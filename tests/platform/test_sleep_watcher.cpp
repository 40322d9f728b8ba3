#include "sleep_watcher.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QDBusMessage prepareForSleep(bool start)
{
    auto message = QDBusMessage::createSignal(
        u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
    message << start;
    return message;
}
} // namespace

// logind's announcements on a private bus standing in for the system bus: one connection owns
// logind's name, another only pretends to be it. Also run without any bus.
class SleepWatcherTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsLogind()
    {
        if (qEnvironmentVariable("QUENNET_SESSION") == "nobus"_L1) {
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(u"^Not told of sleep and wake"_s));
            const LogindSleepWatcher watcher(QDBusConnection::sessionBus());
            QVERIFY(!watcher.isListening());
            return;
        }

        auto logind = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"logind"_s);
        auto impostor = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"impostor"_s);
        QVERIFY(logind.registerService(u"org.freedesktop.login1"_s));
        LogindSleepWatcher watcher(QDBusConnection::sessionBus());
        QVERIFY(watcher.isListening());
        QSignalSpy sleeping(&watcher, &SleepWatcher::aboutToSleep);
        QSignalSpy woke(&watcher, &SleepWatcher::woke);

        QVERIFY(logind.send(prepareForSleep(true)));
        QTRY_COMPARE(sleeping.size(), 1);
        QVERIFY(logind.send(prepareForSleep(false)));
        QTRY_COMPARE(woke.size(), 1);

        // The bus has routed the impostor's signal before logind's next one is even sent.
        QVERIFY(impostor.send(prepareForSleep(false)));
        QVERIFY(impostor.interface()->serviceOwner(u"org.freedesktop.DBus"_s).isValid());
        QVERIFY(logind.send(prepareForSleep(true)));
        QTRY_COMPARE(sleeping.size(), 2);
        QCOMPARE(woke.size(), 1);
    }
};

QTEST_GUILESS_MAIN(SleepWatcherTest)
#include "test_sleep_watcher.moc"
