#include "download_cache.h"
#include "download_thread.h"
#include "file_error.h"
#include "file_fetcher.h"
#include "network_error.h"
#include "set_rig.h"
#include "store_rig.h"
#include "test_support.h"

#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>
#include <cerrno>
#include <signal.h>
#include <sys/statvfs.h>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 MiB = 1024 * 1024;

// What the suite did, printed at the end.
struct Figures {
    int faults = 0;
    int verified = 0;
    qint64 fetchedAgain = 0; // sent by the shop beyond one copy of each file
    int lost = 0; // files saved before and damaged since, partial files that are not a prefix
};

// Every file under folder, by relative path, outside the partial downloads.
QHash<QString, QByteArray> savedFiles(const QString &folder)
{
    QHash<QString, QByteArray> files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = QDir(folder).relativeFilePath(path);
        if (!relative.startsWith("Partial/"_L1))
            files.insert(relative, readAll(path));
    }
    return files;
}

qint64 usedBytes(const QString &mount)
{
    struct statvfs disk { };
    if (::statvfs(QFile::encodeName(mount).constData(), &disk) != 0)
        return -1;
    return qint64(disk.f_blocks - disk.f_bfree) * qint64(disk.f_frsize);
}

// Prints a case's figures; no case may lose data.
void count(const char *what, const Figures &figures)
{
    qInfo("%s: %d faults injected, %d files verified, %lld bytes fetched again (%lld per fault), "
          "data lost: %d",
          what, figures.faults, figures.verified, figures.fetchedAgain,
          figures.faults ? figures.fetchedAgain / figures.faults : 0, figures.lost);
    QCOMPARE(figures.lost, 0);
}

bool remount(const QString &mount, qint64 bytes)
{
    return QProcess::execute(u"mount"_s, { u"-o"_s, u"remount,size=%1"_s.arg(bytes), mount }) == 0;
}
} // namespace

// Faults by the hundred against the development shop and the real download code: transfers cut
// at random offsets, the downloading process killed at random moments, the disk full at every
// write of a download. Each case prints its figures; QUENNET_SEED=N repeats a run's offsets and
// moments.
class TestReliability : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        bool given = false;
        const quint32 seed = quint32(qEnvironmentVariableIntValue("QUENNET_SEED", &given));
        const quint32 chosen = given ? seed : QRandomGenerator::global()->generate();
        qInfo("Seed %u (QUENNET_SEED=%u repeats this run)", chosen, chosen);
        m_random.seed(chosen);
    }

    // A camera-sized file, its transfer cut once at a random offset, a hundred times: each resumes
    // where the kept bytes end, and the shop sends again at most what the client had not yet
    // written, less than one write block.
    void cutTransfers()
    {
        constexpr int transfers = 100;
        ContentShop shop({ { .slug = u"coast"_s,
                             .free = true,
                             .files = { { u"chalk"_s, u"light"_s, 5 * MiB + 54'321 } } } });
        QVERIFY(shop.isRunning());
        const ContentFile file = shop.packs()[0].files[0];
        const QByteArray bytes = shop.bytes(file.id);
        DownloadThread thread(shop.shop().caPath(), shop.baseUrl());
        const FileFetcher fetcher(&thread);

        Figures figures;
        qint64 worst = 0;
        for (int transfer = 0; transfer < transfers; ++transfer) {
            QTemporaryDir folder;
            const FileFetcher::Target target { .destination = folder.filePath(u"coast.heic"_s),
                                               .partial = folder.filePath(u"coast.partial"_s),
                                               .size = file.bytes,
                                               .sha256 = file.sha256 };
            const qint64 cut = m_random.bounded(qint64(1), file.bytes);
            QVERIFY(shop.setFaults(
                qPrintable(u"{\"cut\": {\"afterBytes\": %1, \"times\": 1}}"_s.arg(cut))));
            const qint64 sentBefore = shop.sent(file.id);
            const qsizetype rangesBefore = shop.ranges(file.id).size();

            const auto broken = finish(fetcher.fetch(shop.publicUrl(file.id), target));
            QVERIFY2(broken.failure<NetworkError>(), qPrintable(failureText(broken)));
            ++figures.faults;
            const QByteArray kept = readAll(target.partial);
            if (!bytes.startsWith(kept))
                ++figures.lost;

            const auto resumed = finish(fetcher.fetch(shop.publicUrl(file.id), target));
            QVERIFY2(resumed.value, qPrintable(failureText(resumed)));
            QCOMPARE(readAll(target.destination), bytes);
            ++figures.verified;
            const QStringList asked = shop.ranges(file.id).mid(rangesBefore);
            QCOMPARE(asked,
                     kept.isEmpty() ? QStringList()
                                    : QStringList { u"bytes=%1-"_s.arg(kept.size()) });
            const qint64 again = shop.sent(file.id) - sentBefore - file.bytes;
            QVERIFY2(again >= 0 && again <= MiB,
                     qPrintable(u"cut at %1, %2 fetched again"_s.arg(cut).arg(again)));
            figures.fetchedAgain += again;
            worst = std::max(worst, again);
        }
        qInfo("Cut transfers: at most %lld bytes fetched again for one cut", worst);
        count("Cut transfers", figures);
    }

    // A process downloading with the file fetcher is killed (SIGKILL) at random moments of its
    // transfer; each run after it resumes from the partial file, and the last ends with the
    // verified file.
    void killedDownloads()
    {
        constexpr int kills = 6;
        ContentShop shop({ { .slug = u"coast"_s,
                             .free = true,
                             .files = { { u"chalk"_s, u"dark"_s, 8 * MiB + 4321 } } } });
        QVERIFY(shop.isRunning());
        const ContentFile file = shop.packs()[0].files[0];
        const QByteArray bytes = shop.bytes(file.id);
        QTemporaryDir folder;
        const QString destination = folder.filePath(u"Quennet/coast/chalk.heic"_s);
        const QString partial = folder.filePath(u"Partial/"_s + file.id + u".partial"_s);
        const QStringList arguments {
            shop.publicUrl(file.id).toString(), shop.shop().caPath(), destination, partial,
            QString::number(file.bytes),        file.sha256
        };
        const auto start = [&](QProcess &process) {
            process.setProcessChannelMode(QProcess::ForwardedChannels);
            process.start(u"" DOWNLOAD_ONE ""_s, arguments);
            return process.waitForStarted();
        };

        // Slow enough that a block takes over a second, and six runs leave the file unfinished.
        QVERIFY(shop.setFaults("{\"bytesPerSecond\": 786432}"));
        Figures figures;
        qint64 kept = 0;
        for (int kill = 0; kill < kills; ++kill) {
            const qsizetype rangesBefore = shop.ranges(file.id).size();
            const qint64 sentBefore = shop.sent(file.id);
            QProcess run;
            QVERIFY(start(run));
            QTRY_VERIFY_WITH_TIMEOUT(shop.sent(file.id) > sentBefore, 30'000);
            // Every other kill lands in the block after one written, so that some runs resume;
            // the rest anywhere in the first second, often before a block is whole.
            if (kill % 2 == 1)
                QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(partial).size() > kept, 30'000);
            QTest::qWait(int(m_random.bounded(kill % 2 == 1 ? 400 : 1000)));
            ::kill(pid_t(run.processId()), SIGKILL);
            QVERIFY(run.waitForFinished());
            QCOMPARE(run.exitStatus(), QProcess::CrashExit);
            ++figures.faults;

            // Each run asks for the rest of what the one before kept.
            QCOMPARE(shop.ranges(file.id).mid(rangesBefore),
                     kept > 0 ? QStringList { u"bytes=%1-"_s.arg(kept) } : QStringList());
            const QByteArray now = readAll(partial);
            if (!bytes.startsWith(now) || now.size() < kept)
                ++figures.lost;
            kept = now.size();
            QVERIFY(!QFile::exists(destination));
        }
        QVERIFY(kept >= kills / 2 * MiB);

        QVERIFY(shop.setFaults("{}"));
        const qsizetype rangesBefore = shop.ranges(file.id).size();
        QProcess last;
        QVERIFY(start(last));
        QVERIFY(last.waitForFinished(60'000));
        QCOMPARE(last.exitCode(), 0);
        QCOMPARE(readAll(destination), bytes);
        ++figures.verified;
        QCOMPARE(shop.ranges(file.id).mid(rangesBefore),
                 kept > 0 ? QStringList { u"bytes=%1-"_s.arg(kept) } : QStringList());
        figures.fetchedAgain = shop.sent(file.id) - file.bytes;
        count("Killed downloads", figures);
    }

    // The application folder on a small disk of its own, after a set, that is full at each write of
    // a download: the validator, then each block of the partial file. Every failure reaches the
    // caller and the store's notice, nothing saved before changes, and each try keeps what the one
    // before wrote, until the download goes through.
    void fullDisk()
    {
        QTemporaryDir mount;
        const QStringList tmpfs { u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=32m"_s, u"tmpfs"_s };
        if (QProcess::execute(u"mount"_s, tmpfs + QStringList { mount.path() }) != 0)
            QSKIP("needs root to mount a small disk");
        const auto unmount = qScopeGuard([&] { QProcess::execute(u"umount"_s, { mount.path() }); });
        // Inside the mount, so that the rig's folder is gone before the disk.
        const QString folder = mount.filePath(u"app"_s);
        Figures figures;
        {
            SetRig rig({ { .slug = u"aurora"_s,
                           .files = { sampleFile(u"aurora"_s, u"emerald"_s, u"light"_s),
                                      { u"emerald"_s, u"dark"_s, 3 * MiB + 7777 } } } },
                       folder);
            QVERIFY(rig.start());
            const auto earlier = finish(rig.set(u"emerald"_s, Edition::Light, rig.ids()));
            QVERIFY2(earlier.value, qPrintable(failureText(earlier)));
            const auto saved = savedFiles(folder);
            QVERIFY(saved.contains(u"placements.json"_s));
            const WallpaperFile dark =
                rig.storeRig().file(u"aurora"_s, u"emerald"_s, Edition::Dark);
            const QByteArray darkBytes = rig.shop().bytes(dark.id);
            const QString partial = DownloadCache(folder).partialPath(dark);

            // No room, then room for the validator alone, then for three quarters of a block more
            // each time, so that the disk fills inside every block, until the set goes through.
            QList<qint64> rooms { 0, 4096 };
            while (rooms.size() < 12)
                rooms.append(3 * MiB / 4);
            const qint64 sentBefore = rig.shop().sent(dark.id);
            bool done = false;
            QSet<QString> failedWrites;
            QSet<qint64> blocksReached; // where the partial file ended at each failure
            QStringList resumeFrom;
            for (const qint64 room : std::as_const(rooms)) {
                QVERIFY(remount(mount.path(), usedBytes(mount.path()) + room));
                rig.store().dismissMessage();
                const int requestsBefore = rig.shop().fileRequests(dark.id);
                const auto outcome = finish(rig.store().localFile(dark));
                const qint64 now = QFileInfo(partial).size();
                if (outcome.value) {
                    done = true;
                    break;
                }
                ++figures.faults;
                QVERIFY2(outcome.failure<FileError>(), qPrintable(failureText(outcome)));
                // A full disk is not tried again at once. The one request may be dropped before the
                // shop counts it, when the first write already fails.
                QVERIFY(rig.shop().fileRequests(dark.id) - requestsBefore <= 1);
                const QString text = failureText(outcome);
                failedWrites.insert(text.section(u':', 0, 0));
                // The disk's own reason, where the system gives one.
                if (text.startsWith(u"Couldn't write "_s + partial + u':'))
                    QCOMPARE(text.section(u": "_s, 1), qt_error_string(ENOSPC));
                blocksReached.insert(now / MiB);
                if (now > 0)
                    resumeFrom.append(u"bytes=%1-"_s.arg(now));
                QVERIFY(rig.store().message().has_value());
                const auto files = savedFiles(folder);
                for (auto it = saved.cbegin(); it != saved.cend(); ++it)
                    if (files.value(it.key()) != it.value())
                        ++figures.lost;
                if (!darkBytes.startsWith(readAll(partial)))
                    ++figures.lost;
                QVERIFY(!QFile::exists(DownloadCache(folder).localPath(dark)));
            }
            QVERIFY2(done, "the download never went through");
            QCOMPARE(failedWrites,
                     (QSet<QString> { u"Couldn't write "_s + DownloadCache::validatorPath(partial),
                                      u"Couldn't write "_s + partial }));
            // The disk filled in each block of the file.
            QCOMPARE(blocksReached.size(), darkBytes.size() / MiB + 1);
            QCOMPARE(readAll(DownloadCache(folder).localPath(dark)), darkBytes);
            ++figures.verified;
            figures.fetchedAgain = rig.shop().sent(dark.id) - sentBefore - darkBytes.size();
            // Each try after a failure resumed where the partial file ended.
            const QStringList ranges = rig.shop().ranges(dark.id);
            for (const QString &range : std::as_const(resumeFrom))
                QVERIFY2(ranges.contains(range), qPrintable(range));
        }
        count("Full disk", figures);
    }

private:
    QRandomGenerator m_random;
};

QTEST_GUILESS_MAIN(TestReliability)
#include "test_reliability.moc"
