#include "heic_file.h"
#include "picture_choice.h"
#include "renderer.h"
#include "test_files.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QString sample(const QString &name)
{
    return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/") + name;
}

HeicMetadata metadata(const QString &name)
{
    return HeicMetadata::fromXmp(readAll(QStringLiteral(QUENNET_TEST_DATA "/storage/") + name));
}

// Equal pictures decode to equal pixels; PNG keeps them exactly.
bool samePixels(const QImage &a, const QImage &b)
{
    return a.convertToFormat(QImage::Format_RGB32) == b.convertToFormat(QImage::Format_RGB32);
}
} // namespace

class RenderingTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void pictureForAppearance_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<int>("pictures");
        QTest::addColumn<int>("light"); // -1: the primary picture
        QTest::addColumn<int>("dark");

        QTest::newRow("apr") << u"apr.xmp"_s << 2 << 0 << 1;
        QTest::newRow("any namespace prefix") << u"apr-other-prefix.xmp"_s << 2 << 1 << 0;
        QTest::newRow("solar only") << u"solar.xmp"_s << 3 << 1 << 2;
        QTest::newRow("solar index out of range") << u"solar.xmp"_s << 2 << 1 << -1;
        QTest::newRow("apr out of range, solar element used")
            << u"apr-out-of-range-with-solar-element.xmp"_s << 3 << 1 << 2;
        QTest::newRow("h24 alone says nothing about appearance") << u"h24.xmp"_s << 4 << -1 << -1;
        QTest::newRow("not a property list") << u"apr-not-a-plist.xmp"_s << 2 << -1 << -1;
        QTest::newRow("wrong value types") << u"apr-wrong-types.xmp"_s << 2 << -1 << -1;
    }

    void pictureForAppearance()
    {
        QFETCH(QString, fixture);
        QFETCH(int, pictures);
        QFETCH(int, light);
        QFETCH(int, dark);
        const HeicMetadata data = metadata(fixture);
        QCOMPARE(data.pictureFor(false, pictures).value_or(-1), light);
        QCOMPARE(data.pictureFor(true, pictures).value_or(-1), dark);
    }

    void choice_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<int>("count");
        QTest::addColumn<Edition>("edition");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<QTime>("time");
        QTest::addColumn<int>("picture");

        const QTime noon(12, 0);
        QTest::newRow("dark edition of an apr file")
            << u"apr.xmp"_s << 2 << Edition::Dark << false << noon << 1;
        QTest::newRow("every index out of range: primary")
            << u"apr-out-of-range-with-solar-element.xmp"_s << 1 << Edition::Automatic << true
            << noon << 0;
        // h24: 0.25 -> 0, 0.5 -> 1, 0.75 -> 2, 0.95 -> 3
        QTest::newRow("h24 at midnight: the day before's last")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << false << QTime(0, 0) << 3;
        QTest::newRow("h24 at six")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << false << QTime(6, 0) << 0;
        QTest::newRow("h24 in the evening")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << true << QTime(18, 30) << 2;
        QTest::newRow("h24 entry past the pictures skipped")
            << u"h24.xmp"_s << 3 << Edition::TimeOfDay << false << QTime(23, 59) << 2;
        QTest::newRow("no schedule: appearance")
            << u"apr.xmp"_s << 2 << Edition::TimeOfDay << true << noon << 1;
        // solar: azimuth 90 -> 0, 180 -> 1, 270 -> 2, the last written as an integer.
        QTest::newRow("solar in the evening")
            << u"solar.xmp"_s << 3 << Edition::TimeOfDay << false << QTime(19, 0) << 2;
    }

    void choice()
    {
        QFETCH(QString, fixture);
        QFETCH(int, count);
        QFETCH(Edition, edition);
        QFETCH(bool, dark);
        QFETCH(QTime, time);
        QFETCH(int, picture);
        const PictureChoice::Pictures pictures { metadata(fixture), count, 0 };
        QCOMPARE(PictureChoice::pictureFor(pictures, edition, dark, time), picture);
    }

    void heicFile()
    {
        QVERIFY(!HeicFile::open(m_dir.filePath(u"missing.heic"_s)));
        QVERIFY(!HeicFile::open(QStringLiteral(QUENNET_TEST_DATA "/storage/apr.xmp")));
        const auto file = HeicFile::open(sample(u"aurora/emerald-appearance.heic"_s));
        QVERIFY(file);
        QCOMPARE(file->primaryIndex(), 0);
        QVERIFY(file->picture(2).isNull());
        const QImage light = file->picture(0);
        const QImage dark = file->picture(1);
        QVERIFY(!light.isNull() && !samePixels(light, dark));
        const QImage thumbnail = file->thumbnail(0);
        QVERIFY(!thumbnail.isNull());
        QVERIFY(thumbnail.width() <= light.width());
    }

    void renderingIsReusedUntilTheFileChanges()
    {
        const QString source = m_dir.filePath(u"f_abc.heic"_s);
        QVERIFY(QFile::copy(sample(u"aurora/emerald-appearance.heic"_s), source));
        const Renderer renderer(m_dir.filePath(u"Rendered"_s));

        const auto dark = renderer.render(source, u"f_abc"_s, 1);
        QVERIFY(dark);
        QCOMPARE(*dark, renderer.renderingPath(u"f_abc"_s, 1));
        QVERIFY(samePixels(QImage(*dark), HeicFile::open(source)->picture(1)));
        QCOMPARE(renderer.sourceOf(*dark), QFileInfo(source).absoluteFilePath());
        QCOMPARE(renderer.sourceOf(source), std::nullopt);

        // Reused: a mark in the rendering survives.
        QImage marked(*dark);
        marked.setPixel(0, 0, 0xff123456);
        QVERIFY(marked.save(*dark));
        QCOMPARE(QImage(*renderer.render(source, u"f_abc"_s, 1)).pixel(0, 0), 0xff123456);

        // A new file under the same name is rendered again.
        QVERIFY(QFile::remove(source));
        QVERIFY(QFile::copy(sample(u"dunes/amber-appearance.heic"_s), source));
        QFile(source).setFileTime(QDateTime::currentDateTime().addSecs(60),
                                  QFileDevice::FileModificationTime);
        QVERIFY(samePixels(QImage(*renderer.render(source, u"f_abc"_s, 1)),
                           HeicFile::open(source)->picture(1)));

        QVERIFY(!renderer.render(source, u"f_abc"_s, 7));

        // A file made from the renderings belongs to the same file, whatever its id is like.
        QVERIFY(renderer.render(source, u"f_a-b"_s, 0));
        QCOMPARE(renderer.sourceOf(renderer.companionPath(u"f_a-b"_s, u"xml"_s)),
                 QFileInfo(source).absoluteFilePath());
        QCOMPARE(renderer.sourceOf(renderer.renderingPath(u"f_a-b"_s, 0)),
                 QFileInfo(source).absoluteFilePath());
    }
};

QTEST_GUILESS_MAIN(RenderingTest)
#include "test_rendering.moc"
