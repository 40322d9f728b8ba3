#include "download_cache.h"
#include "shop_content.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <signal.h>

using namespace Qt::Literals::StringLiterals;

// The whole process dies in the middle of a download (kill -9) and is started again: the second
// run resumes from the partial file with a ranged request and ends with the verified file.
class TestResumeAfterKill : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void resumesFromThePartialFile();
};

void TestResumeAfterKill::resumesFromThePartialFile()
{
    constexpr qint64 MiB = 1024 * 1024;
    ContentShop shop({ { .slug = u"big"_s,
                         .free = true,
                         .files = { { u"night"_s, u"dark"_s, 6 * MiB + 4321 } } } });
    QVERIFY(shop.isRunning());
    const ContentFile file = shop.packs()[0].files[0];
    QTemporaryDir folder;
    const QString destination = folder.filePath(u"Quennet/big/night.heic"_s);
    const QString partial = folder.filePath(u"Partial/"_s + file.id + u".partial"_s);
    const QStringList arguments {
        shop.publicUrl(file.id).toString(), shop.shop().caPath(), destination, partial,
        QString::number(file.bytes),        file.sha256
    };

    // Slow enough to be caught part-way, once a block or two is on disk.
    QVERIFY(shop.setFaults("{\"bytesPerSecond\": 1048576}"));
    QProcess first;
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(u"" DOWNLOAD_ONE ""_s, arguments);
    QVERIFY(first.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(partial).size() >= MiB, 30'000);
    ::kill(pid_t(first.processId()), SIGKILL);
    QVERIFY(first.waitForFinished());
    QCOMPARE(first.exitStatus(), QProcess::CrashExit);

    const qint64 kept = QFileInfo(partial).size();
    QVERIFY(kept >= MiB && kept < file.bytes);
    QVERIFY(QFile::exists(DownloadCache::validatorPath(partial)));
    QVERIFY(!QFile::exists(destination));

    QVERIFY(shop.setFaults("{}"));
    QProcess second;
    second.setProcessChannelMode(QProcess::ForwardedChannels);
    second.start(u"" DOWNLOAD_ONE ""_s, arguments);
    QVERIFY(second.waitForFinished(60'000));
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(readAll(destination), shop.bytes(file.id));
    QCOMPARE(shop.ranges(file.id), QStringList { u"bytes=%1-"_s.arg(kept) });
    QVERIFY(!QFile::exists(partial));
}

QTEST_GUILESS_MAIN(TestResumeAfterKill)
#include "test_resume_after_kill.moc"
