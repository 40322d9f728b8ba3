#include "sample_catalogue.h"

using namespace Qt::Literals::StringLiterals;

namespace SampleCatalogue
{
const QList<Pack> &packs()
{
    static const QList<Pack> all {
        { u"aurora"_s, u"Aurora"_s, u"Northern lights over a still fjord"_s, u"$4.99"_s, false,
          false, true, u"2025-02-10T18:04:00Z"_s,
          { { u"emerald"_s, u"Emerald"_s, { QColor(34, 120, 110), QColor(150, 230, 190), QColor(30, 70, 60) } },
            { u"violet"_s, u"Violet"_s, { QColor(88, 64, 150), QColor(220, 170, 230), QColor(50, 40, 80) } } } },
        { u"dunes"_s, u"Dunes"_s, u"Warm sand under a wide sky"_s, u"$2.99"_s, true, false, true,
          u"2025-03-22T09:30:00Z"_s,
          { { u"amber"_s, u"Amber"_s, { QColor(70, 140, 210), QColor(250, 220, 170), QColor(200, 140, 70) } },
            { u"rose"_s, u"Rose"_s, { QColor(120, 130, 200), QColor(250, 200, 200), QColor(190, 110, 110) }, true } } },
        { u"harbour"_s, u"Harbour"_s, u"Morning fog over a quiet harbour"_s, u"$4.99"_s, false,
          false, true, {},
          { { u"slate"_s, u"Slate"_s, { QColor(90, 110, 130), QColor(200, 210, 215), QColor(60, 70, 80) } },
            { u"sunrise"_s, u"Sunrise"_s, { QColor(100, 150, 200), QColor(255, 200, 150), QColor(70, 80, 90) } } } },
        { u"meadow"_s, u"Meadow"_s, u"Rolling hills in spring"_s, u"Free"_s, false, true, true, {},
          { { u"spring"_s, u"Spring"_s, { QColor(90, 170, 230), QColor(220, 240, 250), QColor(90, 160, 70) } },
            { u"clover"_s, u"Clover"_s, { QColor(110, 160, 200), QColor(240, 240, 210), QColor(50, 120, 60) } } } },
        { u"glacier"_s, u"Glacier"_s, u"Blue ice under the polar night"_s, u"$5.99"_s, false, false,
          false, u"2025-05-30T20:15:00Z"_s,
          { { u"ice"_s, u"Ice"_s, { QColor(120, 180, 230), QColor(230, 245, 255), QColor(170, 200, 225) } },
            { u"midnight"_s, u"Midnight"_s, { QColor(30, 50, 110), QColor(90, 120, 180), QColor(60, 80, 120) } } } },
    };
    return all;
}

const QList<Phase> &phases()
{
    using ScenePainter::Moment;
    static const QList<Phase> all {
        { u"dawn"_s, u"Dawn"_s, Moment::Dawn, 0.25, -2.0, 80.0 },
        { u"day"_s, u"Day"_s, Moment::Day, 0.375, 48.0, 165.0 },
        { u"dusk"_s, u"Dusk"_s, Moment::Dusk, 0.75, -2.5, 285.0 },
        { u"night"_s, u"Night"_s, Moment::Night, 0.875, -35.0, 350.0 },
    };
    return all;
}

QString email()
{
    return u"sam.sample@example.com"_s;
}

QString updatedAt()
{
    return u"2025-06-01T09:00:00Z"_s;
}
} // namespace SampleCatalogue
