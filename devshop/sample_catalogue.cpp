#include "sample_catalogue.h"

using namespace Qt::Literals::StringLiterals;

namespace SampleCatalogue {
namespace {
Colourway colourway(const QString &slug, const QString &name, QRgb sky, QRgb glow, QRgb land)
{
    return { slug, name, { QColor(sky), QColor(glow), QColor(land) } };
}
} // namespace

const QList<Pack> &packs()
{
    static const QList<Pack> all {
        { .slug = u"aurora"_s,
          .name = u"Aurora"_s,
          .line = u"Northern lights over a still fjord"_s,
          .price = u"$4.99"_s,
          .ownedSince = u"2025-02-10T18:04:00Z"_s,
          .colourways = { colourway(u"emerald"_s, u"Emerald"_s, 0x22786e, 0x96e6be, 0x1e463c),
                          colourway(u"violet"_s, u"Violet"_s, 0x584096, 0xdcaae6, 0x322850) } },
        { .slug = u"dunes"_s,
          .name = u"Dunes"_s,
          .line = u"Warm sand under a wide sky"_s,
          .price = u"$2.99"_s,
          .onSale = true,
          .ownedSince = u"2025-03-22T09:30:00Z"_s,
          .colourways = { colourway(u"amber"_s, u"Amber"_s, 0x468cd2, 0xfadcaa, 0xc88c46),
                          colourway(u"rose"_s, u"Rose"_s, 0x7882c8, 0xfac8c8, 0xbe6e6e) } },
        { .slug = u"harbour"_s,
          .name = u"Harbour"_s,
          .line = u"Morning fog over a quiet harbour"_s,
          .price = u"$4.99"_s,
          .colourways = { colourway(u"slate"_s, u"Slate"_s, 0x5a6e82, 0xc8d2d7, 0x3c4650),
                          colourway(u"sunrise"_s, u"Sunrise"_s, 0x6496c8, 0xffc896, 0x46505a) } },
        { .slug = u"meadow"_s,
          .name = u"Meadow"_s,
          .line = u"Rolling hills in spring"_s,
          .price = u"Free"_s,
          .free = true,
          .colourways = { colourway(u"spring"_s, u"Spring"_s, 0x5aaae6, 0xdcf0fa, 0x5aa046),
                          colourway(u"clover"_s, u"Clover"_s, 0x6ea0c8, 0xf0f0d2, 0x32783c) } },
        { .slug = u"coast"_s,
          .name = u"Coast"_s,
          .line = u"Chalk cliffs, shot at full size"_s,
          .price = u"$6.99"_s,
          .ownedSince = u"2025-06-12T07:45:00Z"_s,
          .camera = true,
          .colourways = { colourway(u"chalk"_s, u"Chalk"_s, 0x6fa0c8, 0xf5ebd2, 0x8c9682) } },
        { .slug = u"glacier"_s,
          .name = u"Glacier"_s,
          .line = u"Blue ice under the polar night"_s,
          .price = u"$5.99"_s,
          .released = false,
          .ownedSince = u"2025-05-30T20:15:00Z"_s,
          .colourways = { colourway(u"ice"_s, u"Ice"_s, 0x78b4e6, 0xe6f5ff, 0xaac8e1),
                          colourway(u"midnight"_s, u"Midnight"_s, 0x1e326e, 0x5a78b4, 0x3c5078) } },
    };
    return all;
}

const QString &solarColourway()
{
    static const QString key = u"dunes/rose"_s;
    return key;
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
