#include "wallpaper_entity.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
Pack pack(const QString &slug, const QString &name, const QStringList &colourways)
{
    Pack made { .slug = slug, .name = name };
    for (const QString &colourway : colourways)
        made.colourways.append({ .slug = colourway.toLower(), .name = colourway });
    return made;
}

// Two owned packs around one the user does not own.
WallpaperQuery sampleQuery(const QStringList &favourites)
{
    const QList<Pack> packs { pack(u"aurora"_s, u"Aurora"_s, { u"Emerald"_s, u"Violet"_s }),
                              pack(u"harbour"_s, u"Harbour"_s, { u"Slate"_s }),
                              pack(u"dunes"_s, u"Dunes"_s, { u"Amber"_s, u"Rose"_s }) };
    const QMap<QString, OwnedPack> owned { { u"aurora"_s, { .slug = u"aurora"_s } },
                                           { u"dunes"_s, { .slug = u"dunes"_s } },
                                           { u"glacier"_s, { .slug = u"glacier"_s } } };
    return WallpaperQuery(packs, owned, favourites);
}
} // namespace

// Which wallpapers automation offers, and in what order.
class WallpaperQueryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void matching_data()
    {
        QTest::addColumn<QStringList>("favourites");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("found");

        QTest::newRow("favourites first, newest first")
            << QStringList { u"dunes/rose"_s, u"gone/away"_s, u"aurora/violet"_s } << u"  "_s
            << QStringList { u"dunes/rose"_s, u"aurora/violet"_s, u"aurora/emerald"_s,
                             u"dunes/amber"_s };
        QTest::newRow("every word, in any name, any case")
            << QStringList() << u"DUNES ro"_s << QStringList { u"dunes/rose"_s };
        QTest::newRow("a key") << QStringList() << u"aurora/em"_s
                               << QStringList { u"aurora/emerald"_s };
    }

    void matching()
    {
        QFETCH(QStringList, favourites);
        QFETCH(QString, text);
        QFETCH(QStringList, found);
        QStringList ids;
        for (const auto &entity : sampleQuery(favourites).entities(text))
            ids.append(entity.id);
        QCOMPARE(ids, found);
    }

    // Lower-case pack and colourway, one slash: the form the bus and quennetctl take.
    void keys()
    {
        QCOMPARE(ColourwayKey::parse(u"spring-2/dusk"_s)->text(), u"spring-2/dusk"_s);
        for (const QString &text : { u"a/b/c"_s, u"Spring/dusk"_s })
            QVERIFY2(!ColourwayKey::parse(text), qPrintable(text));
    }
};

QTEST_GUILESS_MAIN(WallpaperQueryTest)
#include "test_wallpaper_query.moc"
