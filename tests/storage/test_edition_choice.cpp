#include "edition_choice.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class EditionChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The wanted edition, else the closest one the colourway has.
    void fallback()
    {
        OwnedPack pack { .slug = u"p"_s };
        const auto offer = [&](QList<Edition> editions) {
            pack.files[u"c"_s].clear();
            for (const Edition edition : editions)
                pack.files[u"c"_s].insert(edition, WallpaperFile { .edition = edition });
        };
        offer({ Edition::Light, Edition::Automatic, Edition::Dark });
        QCOMPARE(chooseEdition(pack, u"c"_s, Edition::Dark), Edition::Dark);
        offer({ Edition::Light, Edition::Automatic });
        QCOMPARE(chooseEdition(pack, u"c"_s, Edition::Dark), Edition::Automatic);
        offer({ Edition::Dark, Edition::Light });
        QCOMPARE(chooseEdition(pack, u"c"_s, Edition::TimeOfDay), Edition::Light);
        QVERIFY(!chooseEdition(pack, u"other"_s, Edition::Light));
        offer({});
        QVERIFY(!chooseEdition(pack, u"c"_s, Edition::Light));
    }
};

QTEST_GUILESS_MAIN(EditionChoiceTest)
#include "test_edition_choice.moc"
