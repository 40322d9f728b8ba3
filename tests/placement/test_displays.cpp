#include "await_task.h"
#include "display_id.h"
#include "displays.h"
#include "fake_desktop.h"
#include "test_clock.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
const DesktopScreen left { .connector = u"DP-1"_s, .geometry = QRect(0, 0, 1920, 1080) };
const DesktopScreen right { .connector = u"DP-2"_s, .geometry = QRect(1920, -200, 2560, 1440) };

// Sets a picture on the displays with the ids, recorded as a colourway of meadow.
void set(Displays &displays, const QString &path, const QString &colourway, const QStringList &ids)
{
    const Placement placement {
        .pack = u"meadow"_s, .colourway = colourway, .edition = u"light"_s, .setAt = 1
    };
    awaitTask(displays.set({ .path = path }, placement, ids));
}
} // namespace

class DisplaysTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<FakeDesktop> m_desktop;
    std::shared_ptr<TestClock> m_clock;

    std::unique_ptr<Displays> make()
    {
        return std::make_unique<Displays>(m_desktop.get(), PlacementRecords(m_dir.path()), m_clock);
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(m_dir.filePath(u"placements.json"_s));
        m_desktop = std::make_unique<FakeDesktop>();
        m_desktop->shownScreens = { left, right };
        m_clock = std::make_shared<TestClock>();
    }

    void listsScreensInDesktopOrder()
    {
        m_desktop->shown.insert(u"DP-2"_s, u"/theirs.png"_s);
        const auto displays = make();
        const QList<Displays::Display> all = displays->all();
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].name, u"DP-1"_s);
        QVERIFY(all[0].isMain && !all[1].isMain);
        QCOMPARE(all[1].frame, QRectF(1920, -200, 2560, 1440));
        QCOMPARE(all[1].wallpaper, u"/theirs.png"_s);

        // Frames are relative to the first screen.
        m_desktop->shownScreens = { right, left };
        Q_EMIT m_desktop->screensChanged();
        QCOMPARE(displays->all()[0].frame, QRectF(0, 0, 2560, 1440));
        QCOMPARE(displays->all()[1].frame, QRectF(-1920, 200, 1920, 1080));
    }

    void setRecordsAndSavesEachListedDisplay()
    {
        const auto displays = make();
        // A display that is not attached is left alone.
        set(*displays, u"/p.png"_s, u"dawn"_s, { u"no-such-display"_s });
        QVERIFY(m_desktop->requests.isEmpty());
        set(*displays, u"/r/f_1-0.png"_s, u"dawn"_s, { displayId(right) });
        QCOMPARE(m_desktop->requests[0].second, QStringList { u"DP-2"_s });
        const auto recorded = displays->placement(displayId(right));
        QCOMPARE(recorded->path, u"/r/f_1-0.png"_s);
        QVERIFY(!displays->placement(displayId(left)));
        QVERIFY(displays->showsOwnWallpaper(displays->all()[1]));
        QVERIFY(!displays->showsOwnWallpaper(displays->all()[0]));
        // A restart reads the records back.
        QCOMPARE(make()->placement(displayId(right)), recorded);

        // Another picture on the display: not ours any more, though its record stays.
        QSignalSpy changed(displays.get(), &Displays::allChanged);
        Q_EMIT m_desktop->picturesChanged();
        QCOMPARE(changed.size(), 0);
        m_desktop->shown.insert(u"DP-2"_s, u"/elsewhere.png"_s);
        Q_EMIT m_desktop->picturesChanged();
        QCOMPARE(changed.size(), 1);
        QVERIFY(!displays->showsOwnWallpaper(displays->all()[1]));
        QCOMPARE(displays->placement(displayId(right)), recorded);

        // A refusal keeps the earlier records, and reports.
        set(*displays, u"/a.png"_s, u"dawn"_s, { displayId(left) });
        m_desktop->refusal = u"No."_s;
        QVERIFY_THROWS_EXCEPTION(
            DesktopError,
            set(*displays, u"/b.png"_s, u"dusk"_s, { displayId(left), displayId(right) }));
        QCOMPARE(make()->placement(displayId(left))->colourway, u"dawn"_s);
        // The desktop took the picture on the first screen before it refused the second.
        m_desktop->changesBeforeRefusal = 1;
        QVERIFY_THROWS_EXCEPTION(
            DesktopError,
            set(*displays, u"/c.png"_s, u"noon"_s, { displayId(left), displayId(right) }));
        QCOMPARE(make()->placement(displayId(left))->colourway, u"noon"_s);
        QCOMPARE(make()->placement(displayId(right)), recorded);
    }

    // The desktop takes a while to report the new picture: until it does, or for a while, the
    // display shows the picture that was set. Here it never confirms the left one's.
    void pendingWindow()
    {
        m_desktop->reportsAtOnce = false;
        m_desktop->shown.insert(u"DP-1"_s, u"/before.png"_s);
        m_clock->allowed = 0;
        const auto displays = make();
        set(*displays, u"/new.png"_s, u"dawn"_s, { displayId(left), displayId(right) });
        for (const auto &display : displays->all()) {
            QCOMPARE(display.wallpaper, u"/new.png"_s);
            QVERIFY(displays->showsOwnWallpaper(display));
        }
        m_desktop->shown.insert(u"DP-2"_s, u"/new.png"_s);
        m_clock->allowed = 100;
        QTRY_VERIFY(!displays->hasPending());
        QVERIFY(!displays->showsOwnWallpaper(displays->all()[0]));
        QVERIFY(displays->showsOwnWallpaper(displays->all()[1]));
    }
};

QTEST_GUILESS_MAIN(DisplaysTest)
#include "test_displays.moc"
