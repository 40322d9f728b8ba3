#include "downloads_folder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class DownloadsFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostileNames_data()
    {
        QTest::addColumn<QString>("shopName");
        QTest::addColumn<QString>("expected"); // empty: refused
        QTest::newRow("plain") << u"Harbour Mac.zip"_s << u"Harbour Mac.zip"_s;
        QTest::newRow("climbing out") << u"../../x"_s << u"x"_s;
        QTest::newRow("absolute") << u"/etc/passwd"_s << u"passwd"_s;
        QTest::newRow("backslashes") << u"..\\..\\evil.zip"_s << u"evil.zip"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("dot dot") << u".."_s << QString();
        QTest::newRow("dot") << u"."_s << QString();
        QTest::newRow("trailing slash") << u"folder/"_s << QString();
        QTest::newRow("only spaces") << u"   "_s << QString();
    }

    void hostileNames()
    {
        QFETCH(QString, shopName);
        QFETCH(QString, expected);
        const auto name = DownloadsFolder::safeName(shopName);
        QCOMPARE(name.value_or(QString()), expected);

        if (name) {
            // Whatever is left stays inside the folder.
            QTemporaryDir downloads;
            const QString path = DownloadsFolder::uniquePath(downloads.path(), *name);
            QCOMPARE(QFileInfo(path).absolutePath(), QDir(downloads.path()).absolutePath());
        }
    }

    void countersAfterTakenNames()
    {
        QTemporaryDir downloads;
        const auto take = [&](const QString &name) {
            const QString path = DownloadsFolder::uniquePath(downloads.path(), name);
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly))
                qFatal("cannot write into the temporary folder");
            return QFileInfo(path).fileName();
        };
        QCOMPARE(take(u"Quennet.zip"_s), u"Quennet.zip"_s);
        QCOMPARE(take(u"Quennet.zip"_s), u"Quennet 2.zip"_s);
        QCOMPARE(take(u"Quennet.zip"_s), u"Quennet 3.zip"_s);
        QCOMPARE(take(u"README"_s), u"README"_s);
        QCOMPARE(take(u"README"_s), u"README 2"_s);
        QCOMPARE(take(u"pack.tar.gz"_s), u"pack.tar.gz"_s);
        QCOMPARE(take(u"pack.tar.gz"_s), u"pack.tar 2.gz"_s);
        QCOMPARE(take(u".hidden"_s), u".hidden"_s);
        QCOMPARE(take(u".hidden"_s), u".hidden 2"_s);
    }
};

QTEST_GUILESS_MAIN(DownloadsFolderTest)
#include "test_downloads_folder.moc"
