#include "catalogue_reply.h"
#include "content_rules.h"
#include "json_fields.h"
#include "library_reply.h"

#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const QUrl shopBase(u"https://shop.example/api/app/v1"_s);

QByteArray fixture(const QString &name)
{
    QFile file(QStringLiteral(QUENNET_TEST_DATA "/library/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture %s", qPrintable(name));
    return file.readAll();
}

// A fixture with the first "from" in it replaced by "to".
QByteArray mutated(const QString &name, const QByteArray &from, const QByteArray &to)
{
    QByteArray bytes = fixture(name);
    const qsizetype at = bytes.indexOf(from);
    if (at < 0)
        qFatal("%s is not in %s", from.constData(), qPrintable(name));
    return bytes.replace(at, from.size(), to);
}

QString text(const std::optional<QDateTime> &time)
{
    return time ? JsonFields::formatTime(*time) : u"-"_s;
}

QString text(const FileSource &source)
{
    return source == FileSource::shop() ? u"shop"_s : source.url().toString();
}

void describe(QStringList &lines, const OwnedPack &pack)
{
    lines << u"%1 %2 %3"_s.arg(pack.slug, text(pack.since), text(pack.updatedAt));
    for (const auto &file : pack.allFiles())
        lines << u"  %1 %2 %3 %4 %5 %6"_s.arg(file.colourway, rawValue(file.edition), file.id)
                     .arg(file.bytes)
                     .arg(file.sha256.value_or(u"-"_s).right(4), text(file.source));
    for (const auto &archive : pack.archives)
        lines << u"  %1: %2 %3 %4"_s.arg(archive.deviceLabel(), archive.filename,
                                         archive.sha256.value_or(u"-"_s), text(archive.source));
}

// What a reply decodes to, a line for each pack, colourway, file and archive kept; or why it
// doesn't decode.
QStringList decoded(const QString &kind, const QByteArray &body)
{
    QStringList lines;
    try {
        if (kind == "library"_L1) {
            const auto reply = LibraryReply::decode(body);
            lines << reply.email;
            for (const auto &pack : reply.ownedPacks(SourceRule::pathRule()))
                describe(lines, pack);
            return lines;
        }
        const auto reply = CatalogueReply::decode(body);
        for (const auto &pack : reply.catalogue(shopBase)) {
            lines << u"%1 %2 %3%4%5%6"_s.arg(pack.slug, pack.name, pack.price,
                                             pack.onSale ? u" on sale"_s : QString(),
                                             pack.isFree ? u" free"_s : QString(),
                                             pack.hasTimeOfDay() ? u" time-of-day"_s : QString());
            for (const auto &colourway : pack.colourways)
                lines << u"  %1 %2 %3 %4"_s.arg(
                    colourway.slug,
                    colourway.artwork(Appearance::Light).value_or(QUrl()).toString(),
                    colourway.artwork(Appearance::Dark).value_or(QUrl()).toString(),
                    colourway.phases.value(u"night"_s).toString());
        }
        for (const auto &pack : reply.packs)
            if (!pack.isReleased())
                lines << u"unreleased "_s + pack.slug;
        for (const auto &phase : reply.allPhases())
            lines << phase.id + u' ' + phase.label;
        for (const auto &pack : reply.freePacks(shopBase))
            describe(lines, pack);
    } catch (const DecodingError &error) {
        return { error.description() };
    }
    return lines;
}

QByteArray librarySince(const char *time)
{
    return R"({"email": "e", "packs": [{"slug": "p", "colourways": [], "since": ")"
        + QByteArray(time) + "\"}]}";
}
} // namespace

// The shape of a reply is strict: any error rejects it whole. Its content is lenient: entries
// that break the content rules are dropped one by one (the fixtures hold one of each kind).
class ShopRepliesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decoding_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QStringList>("expected");

        const QString library = u"library"_s;
        const QString catalogue = u"catalogue"_s;
        const QString lib = u"library.json"_s;
        const QString cat = u"catalogue.json"_s;
        const auto row = [](const char *name, const QString &kind, const QByteArray &body,
                            const QStringList &expected) {
            QTest::newRow(name) << kind << body << expected;
        };

        // The longest slug allowed is kept; later files of an edition win, and each broken light
        // file after the kept one breaks one rule, so one let through would show.
        row("library", library, fixture(lib),
            { u"ada@example.com"_s, u"a123456789"_s.repeated(6) + u"abcd - -"_s,
              u"spring-light-2 2025-03-01T09:30:00.000Z 2025-03-02T10:00:00.500Z"_s,
              u"  dawn appearance f_0123456789ab 9007199254740993 cdef shop"_s,
              u"  dawn time-of-day f_0123456789ac 2 CDEF shop"_s,
              u"  dawn light f_0123456789ad 3 cdef shop"_s,
              u"  dawn dark f_0123456789af 5 cdef shop"_s,
              u"  iPhone Duo: Spring iPhone Duo.zip not-checked shop"_s,
              u"  tv: tv.zip - shop"_s });
        // Only https on the shop's own host survives for free files; http, other hosts and bare
        // paths do not.
        row("catalogue", catalogue, fixture(cat),
            { u"harbour Harbour €4 on sale time-of-day"_s,
              u"  mist https://shop.example/api/app/art/mist-desktop-light.jpg "
              u"https://cdn.example/mist-dark.jpg https://shop.example/art/mist-night.jpg"_s,
              u"  tide https://shop.example/art/tide-dark.jpg "
              u"https://shop.example/art/tide-dark.jpg "_s,
              u"  reef https://shop.example/art/reef-desktop-dark.jpg "
              u"https://shop.example/art/reef-desktop-dark.jpg "_s,
              u"meadow Meadow Free free"_s, u"  clover   "_s, u"empty-free Empty Free free"_s,
              u"unreleased empty-free"_s, u"dawn Dawn"_s, u"night Night"_s, u"empty-free - -"_s,
              u"meadow - 2025-01-01T00:00:00.000Z"_s,
              u"  clover light f_00000000000a 1 cdef https://shop.example/files/clover-light.heic"_s,
              u"  clover dark f_00000000000b 1 cdef https://shop.example/files/clover-dark.heic"_s,
              u"  Mac: Meadow.zip - https://shop.example/archives/meadow-mac.zip"_s });
        row("time with microseconds and an offset", library,
            librarySince("2025-03-01T10:30:00.250999+01:00"),
            { u"e"_s, u"p 2025-03-01T09:30:00.250Z -"_s });

        // A wrong type where a crash or a wrong size could follow.
        row("not JSON", library, fixture(u"not-json.txt"_s), { u"Not JSON"_s });
        row("top level array", catalogue, "[]", { u"The document is not a JSON object."_s });
        row("email missing", library, mutated(lib, R"("email": "ada@example.com",)", {}),
            { u"The key \"email\" is missing."_s });
        // The array becomes the value of another key.
        row("packs not an array", library, mutated(lib, R"("packs": [)", R"("packs": {}, "x": [)"),
            { u"\"packs\""_s });
        const QByteArray bytes = R"("bytes": 9007199254740993)";
        row("string for an integer", library, mutated(lib, bytes, R"("bytes": "12")"),
            { u"\"bytes\""_s });
        row("fraction for an integer", library, mutated(lib, bytes, R"("bytes": 1.5)"),
            { u"\"bytes\""_s });
        row("beyond 64 bits", library, mutated(lib, bytes, R"("bytes": 1e30)"), { u"\"bytes\""_s });
        row("archive not an object", library,
            mutated(lib, R"("archives": [)", R"("archives": ["zip",)"), { u"\"archives\""_s });
        row("desktop art not an object", catalogue,
            mutated(cat, R"("desktop": {"light": "art/mist-desktop-light.jpg"})",
                    R"("desktop": "x")"),
            { u"\"desktop\""_s });
        row("phase art not text", catalogue,
            mutated(cat, R"("dawn": "/art/mist-dawn.jpg")", R"("dawn": 3)"),
            { u"phase picture"_s });
        for (const char *time : { "2025-03-01", "2025-03-01T09:30:00.Z", "2025-02-30T09:30:00Z",
                                  "2025-03-01T09:30:00z" })
            row(time, library, librarySince(time),
                { u"Not an ISO 8601 time: "_s + QLatin1StringView(time) });
    }

    void decoding()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, body);
        QFETCH(QStringList, expected);
        const QStringList lines = decoded(kind, body);
        if (expected.size() == 1 && lines.size() == 1) // a failure: its description, or a part
            QVERIFY2(lines[0].contains(expected[0]), qPrintable(lines[0]));
        else
            QCOMPARE(lines, expected);
    }
};

QTEST_GUILESS_MAIN(ShopRepliesTest)
#include "test_shop_replies.moc"
