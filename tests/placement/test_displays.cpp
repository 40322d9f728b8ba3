#include "await_task.h"
#include "display_id.h"
#include "displays.h"
#include "fake_desktop.h"
#include "test_clock.h"

#include <QCoroTask>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const DesktopScreen left { .connector = u"DP-1"_s,
                           .manufacturer = u"ACME-"_s,
                           .model = u"View 27"_s,
                           .serial = u"A1"_s,
                           .geometry = QRect(0, 0, 1920, 1080) };
const DesktopScreen right { .connector = u"DP-2"_s,
                            .manufacturer = u"ACME"_s,
                            .model = u"View 27"_s,
                            .serial = u"B2"_s,
                            .geometry = QRect(1920, -200, 2560, 1440) };

Placement placementFor(const QString &colourway)
{
    return { .pack = u"meadow"_s,
             .colourway = colourway,
             .edition = u"light"_s,
             .path = u"/ignored"_s,
             .setAt = 1 };
}
} // namespace

class DisplaysTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    FakeDesktop *m_desktop = nullptr;
    std::shared_ptr<TestClock> m_clock;

    std::unique_ptr<Displays> make()
    {
        return std::make_unique<Displays>(m_desktop, PlacementRecords(m_dir.path()), m_clock);
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        QFile::remove(m_dir.filePath(u"placements.json"_s));
        delete m_desktop;
        m_desktop = new FakeDesktop;
        m_desktop->shownScreens = { left, right };
        m_clock = std::make_shared<TestClock>();
    }

    void cleanupTestCase() { delete m_desktop; }

    void listsScreensInDesktopOrder()
    {
        m_desktop->shown.insert(u"DP-2"_s, u"/theirs.png"_s);
        const auto displays = make();
        const QList<Displays::Display> all = displays->all();
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].id, displayId(left));
        QCOMPARE(all[0].name, u"ACME View 27"_s);
        QVERIFY(all[0].isMain && !all[1].isMain);
        QCOMPARE(all[1].frame, QRectF(1920, -200, 2560, 1440));
        QCOMPARE(all[1].wallpaper, u"/theirs.png"_s);
        // Same make and model, different serial numbers: placements never mix.
        QVERIFY(all[0].id != all[1].id);

        // Frames are relative to the first screen.
        m_desktop->shownScreens = { right, left };
        Q_EMIT m_desktop->screensChanged();
        QCOMPARE(displays->all()[0].frame, QRectF(0, 0, 2560, 1440));
        QCOMPARE(displays->all()[1].frame, QRectF(-1920, 200, 1920, 1080));
    }

    void setRecordsAndSavesEachListedDisplay()
    {
        const auto displays = make();
        awaitTask(displays->set({ .path = u"/r/f_1-0.png"_s }, placementFor(u"dawn"_s),
                                { displayId(right) }));
        QCOMPARE(m_desktop->requests.size(), 1);
        QCOMPARE(m_desktop->requests[0].second, QStringList { u"DP-2"_s });
        const auto recorded = displays->placement(displayId(right));
        QVERIFY(recorded);
        QCOMPARE(recorded->path, u"/r/f_1-0.png"_s);
        QVERIFY(!displays->placement(displayId(left)));
        QVERIFY(displays->showsOwnWallpaper(displays->all()[1]));
        QVERIFY(!displays->showsOwnWallpaper(displays->all()[0]));

        // A restart reads the records back.
        const auto again = make();
        QCOMPARE(again->placement(displayId(right)), recorded);
    }

    void detachedDisplayIsLeftAlone()
    {
        const auto displays = make();
        awaitTask(displays->set({ .path = u"/p.png"_s }, placementFor(u"dawn"_s),
                                { u"no-such-display"_s }));
        QVERIFY(m_desktop->requests.isEmpty());
        QVERIFY(displays->file().placements.isEmpty());
    }

    void placementComesBackWithItsDisplay()
    {
        const auto displays = make();
        awaitTask(
            displays->set({ .path = u"/p.png"_s }, placementFor(u"dawn"_s), { displayId(right) }));
        QSignalSpy changed(displays.get(), &Displays::allChanged);
        m_desktop->shownScreens = { left };
        Q_EMIT m_desktop->screensChanged();
        QCOMPARE(displays->all().size(), 1);
        m_desktop->shownScreens = { left, right };
        Q_EMIT m_desktop->screensChanged();
        QCOMPARE(changed.size(), 2);
        QVERIFY(displays->showsOwnWallpaper(displays->all()[1]));
    }

    // Another picture on a display: not ours any more, though its record stays.
    void refreshStoresOnlyChanges()
    {
        const auto displays = make();
        awaitTask(
            displays->set({ .path = u"/p.png"_s }, placementFor(u"dawn"_s), { displayId(left) }));
        QSignalSpy changed(displays.get(), &Displays::allChanged);
        displays->refresh();
        Q_EMIT m_desktop->picturesChanged();
        QCOMPARE(changed.size(), 0);
        m_desktop->shown.insert(u"DP-1"_s, u"/elsewhere.png"_s);
        Q_EMIT m_desktop->picturesChanged();
        QCOMPARE(changed.size(), 1);
        QVERIFY(!displays->showsOwnWallpaper(displays->all()[0]));
        QVERIFY(displays->placement(displayId(left)));
    }

    // The desktop takes a while to report the new picture: until it does, or for 3 s, the
    // display shows the picture that was set.
    void pendingWindow_data()
    {
        QTest::addColumn<int>("reportAfterMs"); // -1: never
        QTest::addColumn<bool>("ownAtTheEnd");
        QTest::newRow("confirmed after a second") << 1000 << true;
        QTest::newRow("never confirmed") << -1 << false;
    }

    void pendingWindow()
    {
        QFETCH(int, reportAfterMs);
        QFETCH(bool, ownAtTheEnd);
        m_desktop->reportsAtOnce = false;
        m_desktop->shown.insert(u"DP-1"_s, u"/before.png"_s);
        m_clock->allowed = 0;
        const auto displays = make();
        awaitTask(
            displays->set({ .path = u"/new.png"_s }, placementFor(u"dawn"_s), { displayId(left) }));
        QCOMPARE(displays->all()[0].wallpaper, u"/new.png"_s);
        QVERIFY(displays->showsOwnWallpaper(displays->all()[0]));
        QVERIFY(displays->hasPending());

        while (displays->hasPending() && m_clock->sleeps().size() < 12) {
            const auto slept = m_clock->sleeps().size();
            m_clock->allowed = 1;
            QTRY_COMPARE(m_clock->sleeps().size(), slept + 1);
            if (reportAfterMs >= 0 && m_clock->sleeps().size() * 250 >= reportAfterMs)
                m_desktop->shown.insert(u"DP-1"_s, u"/new.png"_s);
            QCOMPARE(displays->showsOwnWallpaper(displays->all()[0]),
                     reportAfterMs >= 0 || m_clock->sleeps().size() * 250 < 3000);
        }
        m_clock->allowed = 1;
        QTest::qWait(20);
        displays->refresh();
        QCOMPARE(displays->showsOwnWallpaper(displays->all()[0]), ownAtTheEnd);
        QVERIFY(!displays->hasPending());
        // The loop ends at its first look after the refresh that saw the confirmation.
        QCOMPARE(m_clock->sleeps().size(), reportAfterMs >= 0 ? reportAfterMs / 250 + 2 : 12);
    }

    void refusalKeepsEarlierRecordsAndReports()
    {
        const auto displays = make();
        awaitTask(
            displays->set({ .path = u"/a.png"_s }, placementFor(u"dawn"_s), { displayId(left) }));
        m_desktop->refusal = u"No."_s;
        QVERIFY_THROWS_EXCEPTION(
            DesktopError,
            awaitTask(displays->set({ .path = u"/b.png"_s }, placementFor(u"dusk"_s),
                                    { displayId(left), displayId(right) })));
        QCOMPARE(displays->placement(displayId(left))->colourway, u"dawn"_s);
        QCOMPARE(make()->placement(displayId(left))->colourway, u"dawn"_s);
        // The desktop took the picture on the first screen before it refused the second.
        m_desktop->changesBeforeRefusal = 1;
        QVERIFY_THROWS_EXCEPTION(
            DesktopError,
            awaitTask(displays->set({ .path = u"/c.png"_s }, placementFor(u"noon"_s),
                                    { displayId(left), displayId(right) })));
        QCOMPARE(make()->placement(displayId(left))->colourway, u"noon"_s);
        QVERIFY(!make()->placement(displayId(right)));
    }
};

QTEST_GUILESS_MAIN(DisplaysTest)
#include "test_displays.moc"
