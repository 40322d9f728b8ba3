#include "cover_size.h"
#include "heic_module.h"
#include "heic_xmp.h"
#include "libheif_decoder.h"
#include "picture_choice.h"
#include "picture_record.h"
#include "pixels.h"
#include "renderer.h"
#include "test_files.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QString sample(const QString &name)
{
    return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/") + name;
}

// The same picture through JPEG, scaled to b's size: close everywhere, not equal.
bool samePicture(const QImage &a, const QImage &b)
{
    const QImage scaled = a.scaled(b.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < b.height(); y += 7)
        for (int x = 0; x < b.width(); x += 7)
            if (!near(scaled.pixelColor(x, y), b.pixelColor(x, y)))
                return false;
    return !b.isNull();
}
} // namespace

class RenderingTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::shared_ptr<const HeicDecoder> m_heic = std::make_shared<LibheifDecoder>();

private Q_SLOTS:
    // Light and dark in each row: -1 is the file's primary picture, as metadata leaves it.
    void choice_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<int>("count");
        QTest::addColumn<Edition>("edition");
        QTest::addColumn<QTime>("time");
        QTest::addColumn<int>("light");
        QTest::addColumn<int>("dark");

        const auto row = [](const char *name, const QString &fixture, int count, Edition edition,
                            QTime time, int light, int dark) {
            QTest::newRow(name) << fixture << count << edition << time << light << dark;
        };
        const auto automatic = Edition::Automatic;
        const auto timeOfDay = Edition::TimeOfDay;
        const QTime noon(12, 0);
        row("apr", u"apr.xmp"_s, 2, automatic, noon, 0, 1);
        row("any namespace prefix", u"apr-other-prefix.xmp"_s, 2, automatic, noon, 1, 0);
        row("solar only", u"solar.xmp"_s, 3, automatic, noon, 1, 2);
        row("solar index out of range", u"solar.xmp"_s, 2, automatic, noon, 1, -1);
        row("apr out of range, solar element used", u"apr-out-of-range-with-solar-element.xmp"_s, 3,
            automatic, noon, 1, 2);
        row("h24 alone says nothing about appearance", u"h24.xmp"_s, 4, automatic, noon, -1, -1);
        row("not a property list", u"apr-not-a-plist.xmp"_s, 2, automatic, noon, -1, -1);
        row("wrong value types", u"apr-wrong-types.xmp"_s, 2, automatic, noon, -1, -1);
        row("dark edition", u"apr.xmp"_s, 2, Edition::Dark, noon, 1, 1);
        // h24: 0.25 -> 0, 0.5 -> 1, 0.75 -> 2, 0.95 -> 3
        row("h24 at midnight: the day before's last", u"h24.xmp"_s, 4, timeOfDay, QTime(0, 0), 3,
            3);
        row("h24 entry past the pictures skipped", u"h24.xmp"_s, 3, timeOfDay, QTime(23, 59), 2, 2);
        row("no schedule: appearance", u"apr.xmp"_s, 2, timeOfDay, noon, 0, 1);
        // solar: azimuth 90 -> 0, 180 -> 1, 270 -> 2, the last written as an integer.
        row("solar in the evening", u"solar.xmp"_s, 3, timeOfDay, QTime(19, 0), 2, 2);
    }

    void choice()
    {
        QFETCH(QString, fixture);
        QFETCH(int, count);
        QFETCH(Edition, edition);
        QFETCH(QTime, time);
        QFETCH(int, light);
        QFETCH(int, dark);
        const auto xmp = readAll(QStringLiteral(QUENNET_TEST_DATA "/storage/") + fixture);
        const PictureChoice::Pictures pictures { HeicXmp::metadata(xmp), count, -1 };
        QCOMPARE(PictureChoice::pictureFor(pictures, edition, false, time), light);
        QCOMPARE(PictureChoice::pictureFor(pictures, edition, true, time), dark);

        // As kept beside the renderings, read strictly.
        const auto kept =
            PictureRecord::fromJson(PictureRecord::toJson({ pictures.metadata, count, 0 }));
        QVERIFY(kept);
        QCOMPARE(PictureChoice::schedule(*kept), PictureChoice::schedule(pictures));
        QCOMPARE(kept->metadata.appearance(), pictures.metadata.appearance());
        QCOMPARE(kept->metadata.solarPositions(), pictures.metadata.solarPositions());
        QJsonObject damaged = PictureRecord::toJson({ pictures.metadata, count, count });
        QVERIFY(!PictureRecord::fromJson(damaged));
        damaged.insert(u"primary"_s, 0);
        damaged.insert(u"times"_s, QJsonArray { QJsonArray { 0.5, -1 } });
        QVERIFY(!PictureRecord::fromJson(damaged));
    }

    // Through the module the program loads: what cannot be read; the sample files' pictures are
    // read by the tests of their users. Without the module nothing decodes, and the file is not
    // blamed for it.
    void heicFile()
    {
        const HeicModule found({ m_dir.filePath(u"nowhere"_s), QStringLiteral(HEIC_MODULE_DIR) });
        QVERIFY(!found.open(m_dir.filePath(u"missing.heic"_s)));
        QVERIFY(found.isAvailable());
        QVERIFY(!found.open(QStringLiteral(QUENNET_TEST_DATA "/storage/apr.xmp")));
        const auto file = found.open(sample(u"aurora/emerald-appearance.heic"_s));
        QVERIFY(file && !file->picture(1).isNull());
        QVERIFY(file->picture(2).isNull());
        QCOMPARE(file->metadata().appearance(), (HeicMetadata::LightAndDark { 0, 1 }));

        const QString source = m_dir.filePath(u"f_nomodule.heic"_s);
        QVERIFY(QFile::copy(sample(u"aurora/emerald-appearance.heic"_s), source));
        const auto missing = std::make_shared<HeicModule>(QStringList(m_dir.path()));
        QVERIFY(!missing->open(source));
        QVERIFY(!missing->isAvailable());
        bool undecodable = true;
        QCOMPARE(Renderer(m_dir.filePath(u"Unrendered"_s), missing)
                     .render(source, u"f_nomodule"_s, 0, {}, &undecodable),
                 std::nullopt);
        QVERIFY(!undecodable);
    }

    void renderingIsReusedUntilTheFileChanges()
    {
        const QString source = m_dir.filePath(u"f_abc.heic"_s);
        QVERIFY(QFile::copy(sample(u"aurora/emerald-appearance.heic"_s), source));
        const Renderer renderer(m_dir.filePath(u"Rendered"_s), m_heic);

        const auto dark = renderer.render(source, u"f_abc"_s, 1);
        QVERIFY(dark);
        QVERIFY(samePicture(LibheifFile::open(source)->picture(1), QImage(*dark)));
        QCOMPARE(renderer.sourceOf(*dark), QFileInfo(source).absoluteFilePath());
        QCOMPARE(renderer.sourceOf(source), std::nullopt);

        // What the file holds is known from then on without reading it, even without a decoder.
        const Renderer undecoding(renderer.folder());
        QCOMPARE(undecoding.pictures(source, u"f_abc"_s), std::nullopt);
        const auto read = renderer.pictures(source, u"f_abc"_s);
        const auto kept = undecoding.pictures(source, u"f_abc"_s);
        QVERIFY(read && kept);
        QCOMPARE(kept->count, read->count);
        QCOMPARE(kept->metadata.appearance(), (HeicMetadata::LightAndDark { 0, 1 }));
        QCOMPARE(undecoding.render(source, u"f_abc"_s, 1), dark);

        // Reused: a mark in the rendering survives.
        QImage marked(*dark);
        marked.fill(Qt::magenta);
        QVERIFY(marked.save(*dark, "jpeg"));
        QVERIFY(
            near(QImage(*renderer.render(source, u"f_abc"_s, 1)).pixelColor(8, 8), Qt::magenta));

        // A new file under the same name is rendered again.
        QVERIFY(QFile::remove(source));
        QVERIFY(QFile::copy(sample(u"dunes/amber-appearance.heic"_s), source));
        QFile(source).setFileTime(QDateTime::currentDateTime().addSecs(60),
                                  QFileDevice::FileModificationTime);
        QCOMPARE(undecoding.pictures(source, u"f_abc"_s), std::nullopt);
        QVERIFY(samePicture(LibheifFile::open(source)->picture(1),
                            QImage(*renderer.render(source, u"f_abc"_s, 1))));

        QVERIFY(!renderer.render(source, u"f_abc"_s, 7));

        // A file made from the renderings belongs to the same file, whatever its id is like.
        QVERIFY(renderer.render(source, u"f_a-b"_s, 0));
        QCOMPARE(renderer.sourceOf(renderer.companionPath(u"f_a-b"_s, u"xml"_s)),
                 QFileInfo(source).absoluteFilePath());
        QCOMPARE(renderer.sourceOf(renderer.renderingPath(u"f_a-b"_s, 0)),
                 QFileInfo(source).absoluteFilePath());
    }

    // A rendering covers the largest display and no more; a larger one replaces it, and a
    // picture smaller than the display is rendered whole.
    void renderingAtTheDisplaysSize()
    {
        const QString source = m_dir.filePath(u"f_big.heic"_s);
        QVERIFY(QFile::copy(sample(u"aurora/emerald-appearance.heic"_s), source));
        const QImage picture = LibheifFile::open(source)->picture(0); // 64×40
        const Renderer renderer(m_dir.filePath(u"Sized"_s), m_heic);
        const auto rendered = [&](QSize bounds) {
            return renderer.render(source, u"f_big"_s, 0, bounds).value_or(QString());
        };
        const QString small = rendered({ 32, 18 });
        QCOMPARE(QImage(small).size(), QSize(32, 20));
        QVERIFY(samePicture(picture, QImage(small)));
        QCOMPARE(rendered({ 20, 20 }), small);

        const QString larger = rendered({ 48, 27 });
        QCOMPARE(QImage(larger).size(), QSize(48, 30));
        QVERIFY(!QFile::exists(small));
        const QString whole = rendered({ 100, 100 });
        QCOMPARE(QImage(whole).size(), picture.size());
        QVERIFY(!QFile::exists(larger));
        QCOMPARE(rendered({ 32, 18 }), whole);
        QCOMPARE(Renderer::fileIdOf(larger), u"f_big"_s);

        // Shrinking averages: a 2×2 block of black and white becomes mid-grey.
        QImage checks(4, 2, QImage::Format_RGB888);
        checks.fill(Qt::black);
        checks.setPixelColor(0, 0, Qt::white);
        checks.setPixelColor(1, 1, Qt::white);
        const QImage shrunk = CoverSize::shrunk(checks, { 2, 1 });
        QCOMPARE(shrunk.pixelColor(0, 0), QColor(128, 128, 128));
        QCOMPARE(shrunk.pixelColor(1, 0), QColor(Qt::black));
    }
};

QTEST_GUILESS_MAIN(RenderingTest)
#include "test_rendering.moc"
