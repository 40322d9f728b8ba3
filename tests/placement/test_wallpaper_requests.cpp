#include "renderer.h"
#include "set_rig.h"
#include "test_support.h"

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// Slow enough that a request can overtake a download of a sample file.
constexpr auto slowFiles = "{\"bytesPerSecond\": 2000}";
} // namespace

// The road of a set request through the store, the setter and a desktop: refusals,
// generations, history, updates of replaced files, the keep rule and damaged files.
class TestWallpaperRequests : public QObject {
    Q_OBJECT

    std::unique_ptr<SetRig> m_rig;

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    // Besides the sample files, random bytes true to their digest that decode to nothing.
    void init()
    {
        m_rig = std::make_unique<SetRig>(
            QList<ContentPack> { { .slug = u"aurora"_s,
                                   .files = { sampleFile(u"aurora"_s, u"emerald"_s, u"light"_s),
                                              sampleFile(u"aurora"_s, u"emerald"_s, u"dark"_s),
                                              sampleFile(u"aurora"_s, u"violet"_s, u"appearance"_s),
                                              { u"violet"_s, u"dark"_s, 20'000 } } },
                                 { .slug = u"glacier"_s, .released = false } });
        QVERIFY(m_rig->start());
    }

    void cleanup() { m_rig.reset(); }

    void overtakenRequests()
    {
        SetRig &rig = *m_rig;
        const QStringList ids = rig.ids();
        // The older request waits for a slow transfer.
        QVERIFY(rig.shop().setFaults(slowFiles));
        auto older = rig.set(u"violet"_s, Edition::Automatic, ids);
        QTRY_VERIFY(!rig.store().progress().isEmpty());
        QVERIFY(rig.shop().setFaults("{}"));
        QVERIFY(finish(rig.set(u"emerald"_s, Edition::Light, { ids[0] })).value);
        QCOMPARE(finish(std::move(older)).value, QStringList { ids[1] });
        QCOMPARE(rig.shownFile(ids[0]), rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Light));
        QCOMPARE(rig.shownFile(ids[1]),
                 rig.localPath(u"aurora"_s, u"violet"_s, Edition::Automatic));

        // Overtaken on every display it asked for.
        QVERIFY(rig.shop().setFaults(slowFiles));
        auto oldest = rig.set(u"emerald"_s, Edition::Dark, { ids[1] });
        QTRY_VERIFY(!rig.store().progress().isEmpty());
        QVERIFY(rig.shop().setFaults("{}"));
        QVERIFY(finish(rig.set(u"emerald"_s, Edition::Light, { ids[1] })).value);
        QCOMPARE(failureText(finish(std::move(oldest))),
                 u"Another wallpaper was set while this one downloaded."_s);
        QCOMPARE(rig.shownFile(ids[1]), rig.shownFile(ids[0]));
    }

    // What is refused leaves nothing shown and nothing to go back to.
    void refusalsAndGoingBack()
    {
        SetRig &rig = *m_rig;
        const QString main = rig.ids()[0];
        auto &requests = rig.requests();
        const auto failure = [&](const QString &pack, const QString &colourway) {
            return failureText(
                finish(requests.setWallpaper(pack, colourway, Edition::Light, { main })));
        };
        QCOMPARE(failure(u"harbour"_s, u"sea"_s), u"That wallpaper isn't in your packs."_s);
        QCOMPARE(failure(u"glacier"_s, u"ice"_s), u"It isn't available to set yet."_s);
        QVERIFY(rig.shownFile(main).isEmpty());
        const auto set = [&](Edition edition) {
            return finish(rig.set(u"emerald"_s, edition, { main })).value.has_value();
        };
        QVERIFY(set(Edition::Light));
        QVERIFY(requests.history().isEmpty()); // nothing was shown before
        QVERIFY(set(Edition::Dark));
        QCOMPARE(requests.history().size(), 1);
        QCOMPARE(requests.history()[0].value(main).edition, u"light"_s);

        QSignalSpy goingBack(&requests, &WallpaperRequests::goingBackChanged);
        QVERIFY(finish(requests.goBack()).value);
        QCOMPARE(goingBack.size(), 2);
        QVERIFY(requests.history().isEmpty());
        QCOMPARE(rig.shownFile(main), rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Light));

        // Only the latest changes are kept.
        for (int i = 0; i < 30; ++i)
            QVERIFY(set(i % 2 ? Edition::Light : Edition::Dark));
        QCOMPARE(requests.history().size(), 20);
    }

    // The shop replaces a shown file: same colourway and edition, a new id. While the new one
    // fails to download the old one stays; the next check gets the new one.
    void replacedFilesAreUpdated()
    {
        SetRig &rig = *m_rig;
        const QStringList ids = rig.ids();
        QVERIFY(finish(rig.set(u"emerald"_s, Edition::Light, ids)).value);
        const QString oldPath = rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Light);
        auto packs = rig.shop().packs();
        packs[0].files[0].id.clear();
        QVERIFY(rig.shop().restart(packs));
        QVERIFY(rig.shop().setFaults(R"({"statuses": [{"endpoint": "files", "status": 500}]})"));
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(
                u"^Couldn't update aurora/emerald-light-f_.*: Couldn't download EMERALD. |The shop replied 500."_s));
        QSignalSpy settled(&rig.reconciler(), &Reconciler::settled);
        for (const bool updated : { false, true }) {
            finish(rig.store().refresh());
            QTRY_COMPARE(settled.size(), updated ? 2 : 1);
            const QString newPath = rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Light);
            QVERIFY(newPath != oldPath);
            const QString shown = updated ? newPath : oldPath;
            QCOMPARE(rig.shownFile(ids[0]), shown);
            QCOMPARE(rig.shownFile(ids[1]), shown);
            QCOMPARE(QFile::exists(oldPath), !updated);
            QCOMPARE(QFile::exists(newPath), updated);
            QVERIFY(rig.shop().setFaults("{}"));
        }
    }

    void removeDownloadsKeepsWhatIsShown()
    {
        SetRig &rig = *m_rig;
        Shop &store = rig.store();
        const QString light = rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Light);
        const QString dark = rig.localPath(u"aurora"_s, u"emerald"_s, Edition::Dark);
        const auto violet = rig.storeRig().file(u"aurora"_s, u"violet"_s, Edition::Automatic);
        QVERIFY(finish(rig.set(u"emerald"_s, Edition::Light, { rig.ids()[0] })).value);
        QVERIFY(finish(rig.set(u"emerald"_s, Edition::Dark, { rig.ids() })).value);
        QVERIFY(finish(store.localFile(violet)).value);
        QCOMPARE(store.downloaded().size(), 3);

        // Not while a download runs.
        QVERIFY(QFile::remove(store.cache().localPath(violet)));
        QVERIFY(rig.shop().setFaults(slowFiles));
        auto running = store.localFile(violet);
        QTRY_VERIFY(!store.canRemoveDownloads());
        finish(store.removeDownloads());
        QVERIFY(QFile::exists(light));
        QVERIFY(finish(std::move(running)).value);

        finish(store.removeDownloads());
        QCOMPARE(store.downloaded().size(), 1);
        QVERIFY(QFile::exists(dark));
        QVERIFY(!QFile::exists(light));
    }

    void damagedFilesAreMadeAgain()
    {
        SetRig &rig = *m_rig;
        const QString main = rig.ids()[0];
        const auto emerald = rig.storeRig().file(u"aurora"_s, u"emerald"_s, Edition::Light);
        const QString local = rig.store().cache().localPath(emerald);
        const auto set = [&](const QString &colourway, Edition edition) {
            return failureText(finish(rig.set(colourway, edition, { main })));
        };
        const QString rendering =
            Renderer(rig.store().cache().renderingFolder()).renderingPath(emerald.id, 0);
        QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
        const QByteArray picture = readAll(rendering);
        QVERIFY(!picture.isEmpty());

        // A rendering cut short is made again from the file on disk.
        QVERIFY(QFile::resize(rendering, picture.size() / 2));
        QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
        QCOMPARE(readAll(rendering), picture);
        QCOMPARE(rig.shop().fileRequests(emerald.id), 1);

        // A downloaded file that no longer decodes is downloaded again.
        QVERIFY(writeFile(local, "junk"));
        QCOMPARE(set(u"emerald"_s, Edition::Light), u"no failure"_s);
        QCOMPARE(rig.shop().fileRequests(emerald.id), 2);
        QCOMPARE(readAll(local), rig.shop().bytes(emerald.id));
        QCOMPARE(readAll(rendering), picture);

        // Once: a file that does not decode when fetched again fails the set as before.
        const auto violet = rig.storeRig().file(u"aurora"_s, u"violet"_s, Edition::Dark);
        QCOMPARE(set(u"violet"_s, Edition::Dark),
                 u"This wallpaper could not be prepared for your desktop."_s);
        QCOMPARE(rig.shop().fileRequests(violet.id), 2);
        QCOMPARE(rig.shownFile(main), local);
    }
};

QTEST_GUILESS_MAIN(TestWallpaperRequests)
#include "test_wallpaper_requests.moc"
