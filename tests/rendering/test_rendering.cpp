#include "heic_file.h"
#include "picture_choice.h"
#include "renderer.h"

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
    QFile file(QStringLiteral(QUENNET_TEST_DATA "/storage/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture");
    return HeicMetadata::fromXmp(file.readAll());
}

PictureChoice::Pictures fixture(const QString &name, int count)
{
    return { metadata(name), count, 0 };
}

PictureChoice::Pictures of(const HeicFile &file)
{
    return { HeicMetadata::fromXmp(file.xmp()), file.pictureCount(), file.primaryIndex() };
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

    void schedules()
    {
        const auto h24 = metadata(u"h24.xmp"_s);
        // The entry without a time is skipped.
        QCOMPARE(h24.times(),
                 (QList<HeicMetadata::TimedPicture> {
                     { 0.25, 0 }, { 0.5, 1 }, { 0.75, 2 }, { 0.95, 3 } }));
        QCOMPARE(h24.timeAppearance(), (HeicMetadata::LightAndDark { 1, 3 }));

        const auto solar = metadata(u"solar.xmp"_s);
        QCOMPARE(solar.solarPositions().size(), 3);
        QCOMPARE(solar.solarPositions()[0], (HeicMetadata::SolarPicture { -10.5, 90.0, 0 }));
        QCOMPARE(solar.solarPositions()[2].altitude, 5.0); // an integer where a real is usual
        QVERIFY(solar.times().isEmpty());

        QVERIFY(HeicMetadata::fromXmp("<not xml").times().isEmpty());
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
        QTest::newRow("h24 just before six")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << false << QTime(5, 59) << 3;
        QTest::newRow("h24 at six")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << false << QTime(6, 0) << 0;
        QTest::newRow("h24 in the evening")
            << u"h24.xmp"_s << 4 << Edition::TimeOfDay << true << QTime(18, 30) << 2;
        QTest::newRow("h24 entry past the pictures skipped")
            << u"h24.xmp"_s << 3 << Edition::TimeOfDay << false << QTime(23, 59) << 2;
        QTest::newRow("no schedule: appearance")
            << u"apr.xmp"_s << 2 << Edition::TimeOfDay << true << noon << 1;
    }

    void choice()
    {
        QFETCH(QString, fixture);
        QFETCH(int, count);
        QFETCH(Edition, edition);
        QFETCH(bool, dark);
        QFETCH(QTime, time);
        QFETCH(int, picture);
        QCOMPARE(PictureChoice::pictureFor(::fixture(fixture, count), edition, dark, time),
                 picture);
    }

    void nextChange()
    {
        const auto h24 = fixture(u"h24.xmp"_s, 4);
        QCOMPARE(PictureChoice::nextChange(h24, Edition::TimeOfDay, QTime(12, 0)), QTime(18, 0));
        QCOMPARE(PictureChoice::nextChange(h24, Edition::TimeOfDay, QTime(23, 30)), QTime(6, 0));
        QCOMPARE(PictureChoice::nextChange(h24, Edition::Automatic, QTime(12, 0)), std::nullopt);
    }

    // The sample time-of-day files hold Day, Dawn, Dusk, Night; dunes/rose says when by the sun
    // (azimuth 80, 165, 285, 350), the others by the clock (0.25, 0.375, 0.75, 0.875).
    void timeOfDayFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QTime>("time");
        QTest::addColumn<int>("picture");
        QTest::newRow("h24 dawn") << u"aurora/emerald-time-of-day.heic"_s << QTime(6, 30) << 1;
        QTest::newRow("solar dawn") << u"dunes/rose-time-of-day.heic"_s << QTime(5, 30) << 1;
        QTest::newRow("solar dusk") << u"dunes/rose-time-of-day.heic"_s << QTime(20, 0) << 2;
        QTest::newRow("solar night") << u"dunes/rose-time-of-day.heic"_s << QTime(23, 50) << 3;
    }

    void timeOfDayFiles()
    {
        QFETCH(QString, file);
        QFETCH(QTime, time);
        QFETCH(int, picture);
        const auto heic = HeicFile::open(sample(file));
        QVERIFY(heic);
        QCOMPARE(heic->pictureCount(), 4);
        QCOMPARE(PictureChoice::pictureFor(of(*heic), Edition::TimeOfDay, false, time), picture);
    }

    void heicFile()
    {
        QVERIFY(!HeicFile::open(m_dir.filePath(u"missing.heic"_s)));
        QVERIFY(!HeicFile::open(QStringLiteral(QUENNET_TEST_DATA "/storage/apr.xmp")));
        const auto file = HeicFile::open(sample(u"aurora/emerald-appearance.heic"_s));
        QVERIFY(file);
        QCOMPARE(file->pictureCount(), 2);
        QCOMPARE(file->primaryIndex(), 0);
        QVERIFY(file->picture(2).isNull());
        const QImage light = file->picture(0);
        const QImage dark = file->picture(1);
        QVERIFY(!light.isNull() && !samePixels(light, dark));
        const QImage thumbnail = file->thumbnail(0);
        QVERIFY(!thumbnail.isNull());
        QVERIFY(thumbnail.width() <= light.width());
        QCOMPARE(PictureChoice::pictureFor(of(*file), Edition::Automatic, true, QTime(12, 0)), 1);
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
