#include "atomic_file.h"
#include "defaults.h"
#include "test_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Every file Quennet keeps goes through one writer. On a full disk it must fail and leave the
// file as it was: a buffered QSaveFile reports a short write there as success. Runs on a small
// disk of its own, which the test can fill.
class AtomicFileTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_mount;

    [[nodiscard]] QString path(const QString &name) const { return m_mount.filePath(name); }

    // Fills the disk, but for a little room.
    void fill()
    {
        QFile filler(path(u"filler"_s));
        QVERIFY(filler.open(QIODevice::WriteOnly));
        const QByteArray block(4096, 'f');
        while (filler.write(block) == block.size() && filler.flush()) { }
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QProcess::execute(
                u"mount"_s,
                { u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=256k"_s, u"tmpfs"_s, m_mount.path() })
            != 0)
            QSKIP("needs root to mount a small disk");
    }

    void cleanupTestCase() { QProcess::execute(u"umount"_s, { m_mount.path() }); }

    void cleanup() { QFile::remove(path(u"filler"_s)); }

    void fullDiskKeepsTheOldFile()
    {
        const QByteArray old(1000, 'o');
        QVERIFY(writeAtomically(path(u"sub/record.json"_s), old,
                                QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        QCOMPARE(QFile(path(u"sub/record.json"_s)).permissions() & QFileDevice::ReadGroup, 0);
        fill();

        // Less than a write buffer, as most records are.
        QVERIFY(!writeAtomically(path(u"sub/record.json"_s), QByteArray(8 * 1024, 'n')));
        QCOMPARE(readAll(path(u"sub/record.json"_s)), old);
        // No half-written copy is left to take the room.
        QCOMPARE(QDir(path(u"sub"_s)).entryList(QDir::Files), QStringList { u"record.json"_s });

        QVERIFY(QFile::remove(path(u"filler"_s)));
        QVERIFY(writeAtomically(path(u"sub/record.json"_s), QByteArray(8 * 1024, 'n')));
        QCOMPARE(QFileInfo(path(u"sub/record.json"_s)).size(), 8 * 1024);
    }

    void fullDiskKeepsTheSavedSettings()
    {
        const QString file = path(u"defaults.ini"_s);
        Defaults defaults(file);
        QVERIFY(defaults.setFavouriteColourways({ u"a/1"_s }));
        QVERIFY(defaults.setShuffleIsOn(false));
        const QByteArray saved = readAll(file);
        fill();

        QVERIFY(!defaults.setFavouriteColourways({ u"b/2"_s, u"a/1"_s }));
        QVERIFY(!defaults.setShuffleIsOn(true));
        QCOMPARE(readAll(file), saved);
        // What wasn't saved is gone, so the next save can't bring it back.
        QCOMPARE(defaults.favouriteColourways(), QStringList { u"a/1"_s });
        QVERIFY(!defaults.shuffleIsOn());

        QVERIFY(QFile::remove(path(u"filler"_s)));
        QVERIFY(defaults.setShowsUnreleasedPacks(true));
        const Defaults read(file);
        QCOMPARE(read.favouriteColourways(), QStringList { u"a/1"_s });
        QVERIFY(!read.shuffleIsOn());
        QVERIFY(read.showsUnreleasedPacks());
    }
};

QTEST_GUILESS_MAIN(AtomicFileTest)
#include "test_atomic_file.moc"
