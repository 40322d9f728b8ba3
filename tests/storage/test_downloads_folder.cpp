#include "downloads_folder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class DownloadsFolderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hostileNames_data()
    {
        QTest::addColumn<QString>("shopName");
        QTest::addColumn<QString>("expected"); // empty: refused
        QTest::newRow("plain") << u"Harbour Mac.zip"_s << u"Harbour Mac.zip"_s;
        QTest::newRow("climbing out") << u"../../x"_s << u"x"_s;
        QTest::newRow("backslashes") << u"..\\..\\evil.zip"_s << u"evil.zip"_s;
        QTest::newRow("dot dot") << u".."_s << QString();
        QTest::newRow("dot") << u"."_s << QString();
        QTest::newRow("trailing slash") << u"folder/"_s << QString();
        QTest::newRow("only spaces") << u"   "_s << QString();
    }

    void hostileNames()
    {
        QFETCH(QString, shopName);
        QFETCH(QString, expected);
        QCOMPARE(DownloadsFolder::safeName(shopName),
                 expected.isEmpty() ? std::nullopt : std::optional(expected));
    }

    // Names taken, by files or by links, dangling ones too, get a counter; nothing is written
    // through a link, and moving leaves nothing behind.
    void takenNamesGetACounter()
    {
        QTemporaryDir downloads;
        QTemporaryDir elsewhere;
        QFile source(elsewhere.filePath(u"archive"_s));
        QVERIFY(source.open(QIODevice::WriteOnly));
        source.write("zip");
        source.close();
        const QString outside = elsewhere.filePath(u"outside.zip"_s);
        QVERIFY(QFile::link(outside, downloads.filePath(u"Aurora (Mac).zip"_s)));
        QVERIFY(QFile::link(outside, downloads.filePath(u"Aurora (Mac) 2.zip"_s)));

        const auto put = [&](const QString &name, DownloadsFolder::Source after) {
            const QString path =
                DownloadsFolder::put(source.fileName(), downloads.path(), name, after);
            if (QFileInfo(path).absolutePath() != QDir(downloads.path()).absolutePath())
                qFatal("written outside the folder");
            return QFileInfo(path).fileName();
        };
        const auto keep = DownloadsFolder::Source::Keep;
        QCOMPARE(put(u"Aurora (Mac).zip"_s, keep), u"Aurora (Mac) 3.zip"_s);
        QCOMPARE(put(u"Aurora (Mac).zip"_s, keep), u"Aurora (Mac) 4.zip"_s);
        QVERIFY(!QFileInfo::exists(outside));
        QCOMPARE(put(u"pack.tar.gz"_s, keep), u"pack.tar.gz"_s);
        QCOMPARE(put(u"pack.tar.gz"_s, keep), u"pack.tar 2.gz"_s);

        QCOMPARE(put(u"Aurora (Mac).zip"_s, DownloadsFolder::Source::Remove),
                 u"Aurora (Mac) 5.zip"_s);
        QVERIFY(!source.exists());
        QVERIFY(!QFileInfo::exists(outside));
        QFile moved(downloads.filePath(u"Aurora (Mac) 5.zip"_s));
        QVERIFY(moved.open(QIODevice::ReadOnly));
        QCOMPARE(moved.readAll(), "zip");
    }
};

QTEST_GUILESS_MAIN(DownloadsFolderTest)
#include "test_downloads_folder.moc"
