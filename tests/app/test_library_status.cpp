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

    void firstLoad_data()
    {
        QTest::addColumn<bool>("signedIn");
        QTest::addColumn<QByteArray>("faults"); // none: the shop is stopped
        QTest::addColumn<LibraryStatus::State>("state");
        QTest::addColumn<QString>("message");

        // The sentences are the client's: what matters here is that either load can fail.
        QTest::newRow("catalogue 500")
            << true << R"({"statuses": [{"endpoint": "catalogue", "status": 500}]})"_ba
            << LibraryStatus::State::Failed
            << u"Couldn't check for new files. The shop replied 500."_s;
        QTest::newRow("library malformed")
            << true << R"({"malformed": ["library"]})"_ba << LibraryStatus::State::Failed
            << u"Couldn't check for new files. The shop sent something the app didn't understand."_s;
        // Neither is a failure to explain.
        QTest::newRow("shop out of reach")
            << true << QByteArray() << LibraryStatus::State::Unreachable << QString();
        QTest::newRow("signed out")
            << false << QByteArray() << LibraryStatus::State::SignedOut << QString();
    }

    // A failure is the store's own sentence, not a connection to check; the next load that works
    // ends it.
    void firstLoad()
    {
        QFETCH(bool, signedIn);
        QFETCH(QByteArray, faults);
        StoreRig rig(packs(), signedIn);
        QVERIFY(rig.isReady());
        LibraryStatus status(&rig.account(), &rig.store());
        QSignalSpy changed(&status, &LibraryStatus::changed);
        if (faults.isEmpty())
            rig.shop().shop().stop();
        else
            QVERIFY(rig.shop().setFaults(faults.constData()));

        finish(rig.store().start());
        QTEST(status.state(), "state");
        QTEST(status.message(), "message");
        QVERIFY(rig.store().owned().isEmpty());
        QVERIFY(!changed.isEmpty());
        if (faults.isEmpty())
            return;

        changed.clear();
        QVERIFY(rig.shop().setFaults("{}"));
        finish(rig.store().refresh());
        QCOMPARE(status.state(), LibraryStatus::State::Ready);
        QCOMPARE(status.message(), QString());
        QVERIFY(!changed.isEmpty());
    }
};

QTEST_GUILESS_MAIN(LibraryStatusTest)
#include "test_library_status.moc"
