#include "account.h"
#include "library_status.h"
#include "shop.h"
#include "store_rig.h"
#include "test_support.h"

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QList<ContentPack> packs()
{
    return { { .slug = u"aurora"_s, .files = { { u"emerald"_s, u"light"_s, 20'000 } } } };
}
} // namespace

// What the windows show in place of the packs, as the shop answers the first load.
class LibraryStatusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void firstLoadFails_data()
    {
        QTest::addColumn<QByteArray>("faults");
        QTest::addColumn<QString>("reason");

        // The sentences are the client's: what matters here is that either load can fail.
        QTest::newRow("catalogue 500")
            << "{\"statuses\": [{\"endpoint\": \"catalogue\", \"status\": 500}]}"_ba
            << u"The shop replied 500."_s;
        QTest::newRow("library malformed")
            << "{\"malformed\": [\"library\"]}"_ba
            << u"The shop sent something the app didn't understand."_s;
    }

    // The store's own sentence, not a connection to check; the next load that works ends it.
    void firstLoadFails()
    {
        QFETCH(QByteArray, faults);
        QFETCH(QString, reason);
        StoreRig rig(packs());
        QVERIFY(rig.isReady());
        LibraryStatus status(&rig.account(), &rig.store());
        QSignalSpy changed(&status, &LibraryStatus::changed);
        QVERIFY(rig.shop().setFaults(faults.constData()));

        finish(rig.store().start());
        QCOMPARE(status.state(), LibraryStatus::State::Failed);
        QCOMPARE(status.message(), u"Couldn't check for new files. "_s + reason);
        QVERIFY(rig.store().owned().isEmpty());
        QVERIFY(!changed.isEmpty());

        changed.clear();
        QVERIFY(rig.shop().setFaults("{}"));
        finish(rig.store().refresh());
        QCOMPARE(status.state(), LibraryStatus::State::Ready);
        QCOMPARE(status.message(), QString());
        QVERIFY(!changed.isEmpty());
    }

    void outOfReachOrSignedOut_data()
    {
        QTest::addColumn<bool>("signedIn");
        QTest::addColumn<LibraryStatus::State>("state");
        QTest::newRow("shop out of reach") << true << LibraryStatus::State::Unreachable;
        QTest::newRow("signed out") << false << LibraryStatus::State::SignedOut;
    }

    // Neither is a failure to explain: the shop is stopped for both.
    void outOfReachOrSignedOut()
    {
        QFETCH(bool, signedIn);
        StoreRig rig(packs(), signedIn);
        QVERIFY(rig.isReady());
        LibraryStatus status(&rig.account(), &rig.store());
        rig.shop().shop().stop();
        finish(rig.store().start());
        QTEST(status.state(), "state");
        QCOMPARE(status.message(), QString());
    }
};

QTEST_GUILESS_MAIN(LibraryStatusTest)
#include "test_library_status.moc"
