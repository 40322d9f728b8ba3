#include "heic_metadata.h"

#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
HeicMetadata metadata(const QString &name)
{
    QFile file(QStringLiteral(QUENNET_TEST_DATA "/storage/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture");
    return HeicMetadata::fromXmp(file.readAll());
}
} // namespace

class HeicMetadataTest : public QObject {
    Q_OBJECT

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
};

QTEST_GUILESS_MAIN(HeicMetadataTest)
#include "test_heic_metadata.moc"
