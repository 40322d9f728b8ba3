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
        row("h24 in the evening", u"h24.xmp"_s, 4, timeOfDay, QTime(18, 30), 2, 2);
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
        const PictureChoice::Pictures pictures { HeicMetadata::fromXmp(xmp), count, -1 };
        QCOMPARE(PictureChoice::pictureFor(pictures, edition, false, time), light);
        QCOMPARE(PictureChoice::pictureFor(pictures, edition, true, time), dark);
    }

    // What cannot be read; the sample files' pictures are read by the tests of their users.
    void heicFile()
    {
        QVERIFY(!HeicFile::open(m_dir.filePath(u"missing.heic"_s)));
        QVERIFY(!HeicFile::open(QStringLiteral(QUENNET_TEST_DATA "/storage/apr.xmp")));
        const auto file = HeicFile::open(sample(u"aurora/emerald-appearance.heic"_s));
        QVERIFY(file && !file->picture(1).isNull());
        QVERIFY(file->picture(2).isNull());
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
