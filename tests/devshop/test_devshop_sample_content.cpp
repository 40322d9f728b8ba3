#include "content_rules.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <libheif/heif.h>
#include <memory>
#include <plist/plist.h>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {
const QDir content(u"" QUENNET_DEVSHOP_CONTENT ""_s);

QJsonObject manifest()
{
    QFile file(content.filePath(u"content.json"_s));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

QList<QJsonObject> entries(const char *kind)
{
    QList<QJsonObject> result;
    for (const QJsonValue &pack : manifest()[u"packs"_s].toArray()) {
        if (std::string_view(kind) == "archives")
            for (const QJsonValue &archive : pack[u"archives"_s].toArray())
                result.append(archive.toObject());
        else
            for (const QJsonValue &colourway : pack[u"colourways"_s].toArray())
                for (const QJsonValue &file : colourway[u"files"_s].toArray())
                    result.append(file.toObject());
    }
    return result;
}

// The apple_desktop entries of the file's XMP, by tag, as property lists.
QHash<QString, std::shared_ptr<void>> desktopMetadata(heif_context *context, heif_item_id primary)
{
    heif_image_handle *handle = nullptr;
    heif_context_get_image_handle(context, primary, &handle);
    heif_item_id ids[4];
    const int count = heif_image_handle_get_list_of_metadata_block_IDs(handle, "mime", ids, 4);
    QHash<QString, std::shared_ptr<void>> result;
    for (int i = 0; i < count; ++i) {
        QByteArray xmp(qsizetype(heif_image_handle_get_metadata_size(handle, ids[i])), '\0');
        heif_image_handle_get_metadata(handle, ids[i], xmp.data());
        if (!xmp.contains(R"(xmlns:apple_desktop="http://ns.apple.com/namespace/1.0/")"))
            continue;
        const QRegularExpression attribute(u"apple_desktop:(\\w+)=\"([^\"]+)\""_s);
        for (const auto &match : attribute.globalMatch(QString::fromUtf8(xmp))) {
            const QByteArray binary = QByteArray::fromBase64(match.captured(2).toLatin1());
            plist_t root = nullptr;
            plist_from_bin(binary.constData(), uint32_t(binary.size()), &root);
            result.insert(match.captured(1), std::shared_ptr<void>(root, plist_free));
        }
    }
    heif_image_handle_release(handle);
    return result;
}

qint64 integer(plist_t dict, const char *key)
{
    uint64_t value = 0;
    plist_t node = plist_dict_get_item(dict, key);
    if (plist_get_node_type(node) != PLIST_UINT)
        return -1;
    plist_get_uint_val(node, &value);
    return qint64(value);
}

// Checks one "ap"-style dictionary: both indices inside the file.
bool lightAndDarkWithin(plist_t dict, int pictures)
{
    const qint64 light = integer(dict, "l");
    const qint64 dark = integer(dict, "d");
    return light >= 0 && dark >= 0 && light < pictures && dark < pictures && light != dark;
}
} // namespace

// The generated sample content: real HEIC with the desktop metadata, artwork, archives, and
// a list whose sizes and digests match the bytes.
class TestDevshopSampleContent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { heif_init(nullptr); }
    void cleanupTestCase() { heif_deinit(); }

    // Every released colourway in every edition, with its artwork.
    void packs()
    {
        const QStringList all { u"appearance"_s, u"dark"_s, u"light"_s, u"time-of-day"_s };
        for (const QJsonValue &pack : manifest()[u"packs"_s].toArray()) {
            for (const QJsonValue &colourway : pack[u"colourways"_s].toArray()) {
                QStringList editions;
                for (const QJsonValue &file : colourway[u"files"_s].toArray())
                    editions.append(file[u"edition"_s].toString());
                editions.sort();
                QCOMPARE(editions, pack[u"released"_s].toBool() ? all : QStringList());
                for (const QJsonValue &art : colourway[u"art"_s][u"phases"_s].toObject())
                    QVERIFY(!QImage(content.filePath(art.toString())).isNull());
            }
        }
    }

    void sizesAndDigests()
    {
        for (const QJsonObject &entry : entries("files") + entries("archives")) {
            QFile file(content.filePath(entry[u"path"_s].toString()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            QCOMPARE(entry[u"bytes"_s].toInteger(), bytes.size());
            QCOMPARE(entry[u"sha256"_s].toString().toLatin1(),
                     QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
            QVERIFY(ContentRules::isValidIdentifier(entry[u"id"_s].toString()));
        }
    }

    void heicFiles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("edition");
        for (const QJsonObject &file : entries("files"))
            QTest::newRow(qPrintable(file[u"path"_s].toString()))
                << content.filePath(file[u"path"_s].toString()) << file[u"edition"_s].toString();
    }

    void heicFiles()
    {
        QFETCH(QString, path);
        QFETCH(QString, edition);
        const std::unique_ptr<heif_context, decltype(&heif_context_free)> context(
            heif_context_alloc(), heif_context_free);
        QCOMPARE(heif_context_read_from_file(context.get(), qPrintable(path), nullptr).code,
                 heif_error_Ok);
        const int pictures = heif_context_get_number_of_top_level_images(context.get());
        static const QHash<QString, int> expected { { u"light"_s, 1 },
                                                    { u"dark"_s, 1 },
                                                    { u"appearance"_s, 2 } };
        QCOMPARE(pictures, expected.value(edition, 4));

        heif_item_id primary = 0;
        heif_context_get_primary_image_ID(context.get(), &primary);
        heif_image_handle *handle = nullptr;
        heif_context_get_primary_image_handle(context.get(), &handle);
        QCOMPARE(heif_image_handle_get_number_of_thumbnails(handle), 1);
        heif_image *decoded = nullptr;
        QCOMPARE(heif_decode_image(handle, &decoded, heif_colorspace_RGB,
                                   heif_chroma_interleaved_RGB, nullptr)
                     .code,
                 heif_error_Ok);
        heif_image_release(decoded);
        heif_image_handle_release(handle);

        const auto metadata = desktopMetadata(context.get(), primary);
        if (edition == "appearance"_L1) {
            QCOMPARE(metadata.keys(), QStringList { u"apr"_s });
            QCOMPARE(integer(metadata[u"apr"_s].get(), "l"), 0);
            QCOMPARE(integer(metadata[u"apr"_s].get(), "d"), 1);
        } else if (edition == "time-of-day"_L1) {
            // One file of all follows the sun.
            const bool solar = path.endsWith(u"dunes/rose-time-of-day.heic"_s);
            QCOMPARE(metadata.keys(), QStringList { solar ? u"solar"_s : u"h24"_s });
            plist_t root = metadata.value(solar ? u"solar"_s : u"h24"_s).get();
            QVERIFY(lightAndDarkWithin(plist_dict_get_item(root, "ap"), pictures));
            plist_t schedule = plist_dict_get_item(root, solar ? "si" : "ti");
            QSet<qint64> shown;
            for (uint32_t i = 0; i < plist_array_get_size(schedule); ++i) {
                plist_t entry = plist_array_get_item(schedule, i);
                for (const char *real : solar ? QList { "a", "z" } : QList { "t" })
                    QCOMPARE(plist_get_node_type(plist_dict_get_item(entry, real)), PLIST_REAL);
                shown.insert(integer(entry, "i"));
            }
            // Every picture is shown at some point, and no entry points past the last.
            QCOMPARE(shown, (QSet<qint64> { 0, 1, 2, 3 }));
        } else {
            QVERIFY(metadata.isEmpty());
        }
    }

    void archives()
    {
        for (const QJsonObject &archive : entries("archives")) {
            QProcess unzip;
            unzip.start(u"unzip"_s, { u"-Z1"_s, content.filePath(archive[u"path"_s].toString()) });
            QVERIFY(unzip.waitForFinished());
            QCOMPARE(unzip.exitCode(), 0);
            const QStringList members =
                QString::fromUtf8(unzip.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
            const bool mac = archive[u"device"_s] == u"mac"_s;
            QCOMPARE(members.size(), mac ? 8 : 4);
            QVERIFY(members.first().endsWith(mac ? u".heic"_s : u".png"_s));
        }
    }
};

QTEST_GUILESS_MAIN(TestDevshopSampleContent)
#include "test_devshop_sample_content.moc"
