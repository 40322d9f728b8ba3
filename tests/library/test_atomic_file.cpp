#include "atomic_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Every file Quennet keeps goes through one writer. On a full disk it must fail and leave the
// file as it was: a buffered QSaveFile reports a short write there as success.
class AtomicFileTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_mount;

    [[nodiscard]] QString path(const QString &name) const { return m_mount.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        // A small disk of its own, which the test can fill.
        if (QProcess::execute(
                u"mount"_s,
                { u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=256k"_s, u"tmpfs"_s, m_mount.path() })
            != 0)
            QSKIP("needs root to mount a small disk");
    }

    void cleanupTestCase() { QProcess::execute(u"umount"_s, { m_mount.path() }); }

    void fullDiskKeepsTheOldFile()
    {
        const QByteArray old(1000, 'o');
        QVERIFY(writeAtomically(path(u"sub/record.json"_s), old,
                                QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        QCOMPARE(QFile(path(u"sub/record.json"_s)).permissions() & QFileDevice::ReadGroup, 0);

        // Fill the disk, but for a little room.
        QFile filler(path(u"filler"_s));
        QVERIFY(filler.open(QIODevice::WriteOnly));
        const QByteArray block(4096, 'f');
        while (filler.write(block) == block.size() && filler.flush()) { }
        filler.close();

        // Less than a write buffer, as most records are.
        QVERIFY(!writeAtomically(path(u"sub/record.json"_s), QByteArray(8 * 1024, 'n')));
        QFile kept(path(u"sub/record.json"_s));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), old);
        // No half-written copy is left to take the room.
        QCOMPARE(QDir(path(u"sub"_s)).entryList(QDir::Files), QStringList { u"record.json"_s });

        QVERIFY(QFile::remove(path(u"filler"_s)));
        QVERIFY(writeAtomically(path(u"sub/record.json"_s), QByteArray(8 * 1024, 'n')));
        QCOMPARE(QFileInfo(path(u"sub/record.json"_s)).size(), 8 * 1024);
    }
};

QTEST_GUILESS_MAIN(AtomicFileTest)
#include "test_atomic_file.moc"
