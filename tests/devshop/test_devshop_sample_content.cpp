#include "content_rules.h"
#include "libheif_decoder.h"
#include "test_files.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const QDir content(u"" QUENNET_DEVSHOP_CONTENT ""_s);

QJsonObject manifest()
{
    return QJsonDocument::fromJson(readAll(content.filePath(u"content.json"_s))).object();
}
} // namespace

// The generated sample content: real HEIC with the desktop metadata, archives, and a list whose
// digests match the bytes. The tests that show its artwork and set its files check the rest.
class TestDevshopSampleContent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Every file of every colourway, and every pack's archives.
    void entries_data()
    {
        QTest::addColumn<QJsonObject>("entry");
        const auto row = [](const QJsonValue &entry) {
            QTest::newRow(qPrintable(entry[u"path"_s].toString())) << entry.toObject();
        };
        for (const QJsonValue &pack : manifest()[u"packs"_s].toArray()) {
            for (const QJsonValue &colourway : pack[u"colourways"_s].toArray())
                for (const QJsonValue &file : colourway[u"files"_s].toArray())
                    row(file);
            for (const QJsonValue &archive : pack[u"archives"_s].toArray())
                row(archive);
        }
    }

    void entries()
    {
        QFETCH(QJsonObject, entry);
        const QString path = content.filePath(entry[u"path"_s].toString());
        // The shop itself refuses to start over files of other sizes than listed.
        QCOMPARE(entry[u"sha256"_s].toString().toLatin1(),
                 QCryptographicHash::hash(readAll(path), QCryptographicHash::Sha256).toHex());
        QVERIFY(ContentRules::isValidIdentifier(entry[u"id"_s].toString()));
        if (entry.contains(u"device"_s)) {
            QCOMPARE(QProcess::execute(u"unzip"_s, { u"-tqq"_s, path }), 0);
            return;
        }
        // Read with Quennet's own reader, which its own tests check against files made elsewhere.
        // test_rendering and test_following read the appearance and clock files' metadata; one
        // file of all follows the sun.
        const auto heic = LibheifFile::open(path);
        QVERIFY(heic);
        const QString edition = entry[u"edition"_s].toString();
        QCOMPARE(heic->pictureCount(),
                 edition == "time-of-day"_L1      ? 4
                     : edition == "appearance"_L1 ? 2
                                                  : 1);
        QVERIFY(!heic->thumbnail(heic->primaryIndex()).isNull());
        QVERIFY(!heic->picture(heic->primaryIndex()).isNull());
        const bool solar = path.endsWith(u"dunes/rose-time-of-day.heic"_s);
        QCOMPARE(heic->metadata().solarPositions().size(), solar ? 4 : 0);
    }
};

QTEST_GUILESS_MAIN(TestDevshopSampleContent)
#include "test_devshop_sample_content.moc"
