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

    // Either load can fail. The sentences are the client's; the states that need none,
    // signed out and out of reach, are test_panel_text's.
    void firstLoad_data()
    {
        QTest::addColumn<QByteArray>("faults");
        QTest::addColumn<QString>("message");
        QTest::newRow("catalogue 500")
            << R"({"statuses": [{"endpoint": "catalogue", "status": 500}]})"_ba
            << u"Couldn't check for new files. The shop replied 500."_s;
        QTest::newRow("library malformed")
            << R"({"malformed": ["library"]})"_ba
            << u"Couldn't check for new files. The shop sent something the app didn't understand."_s;
    }

    // A failure is the store's own sentence, not a connection to check; the next load that works
    // ends it.
    void firstLoad()
    {
        QFETCH(QByteArray, faults);
        StoreRig rig(packs());
        QVERIFY(rig.isReady());
        LibraryStatus status(&rig.account(), &rig.store());
        QSignalSpy changed(&status, &LibraryStatus::changed);
        QVERIFY(rig.shop().setFaults(faults.constData()));
        finish(rig.store().start());
        QCOMPARE(status.state(), LibraryStatus::State::Failed);
        QTEST(status.message(), "message");
        QVERIFY(rig.store().owned().isEmpty());
        QVERIFY(!changed.isEmpty());

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
