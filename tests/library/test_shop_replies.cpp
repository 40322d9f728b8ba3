#include "catalogue_reply.h"
#include "content_rules.h"
#include "json_fields.h"
#include "library_reply.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
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

// The value at a slash-separated path ("packs/0/slug") replaced, or removed when undefined.
QJsonValue replaced(const QJsonValue &value, QStringList path, const QJsonValue &replacement)
{
    if (path.isEmpty())
        return replacement;
    const QString step = path.takeFirst();
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        const int index = step.toInt();
        array[index] = replaced(array[index], path, replacement);
        return array;
    }
    QJsonObject object = value.toObject();
    if (path.isEmpty() && replacement.isUndefined())
        object.remove(step);
    else
        object[step] = replaced(object[step], path, replacement);
    return object;
}

QByteArray mutated(const QString &name, const QString &path, const QJsonValue &replacement)
{
    const QJsonValue document = QJsonDocument::fromJson(fixture(name)).object();
    return QJsonDocument(replaced(document, path.split(u'/'), replacement).toObject()).toJson();
}

QString decodingFailure(const QString &kind, const QByteArray &body)
{
    try {
        if (kind == "library"_L1)
            (void)LibraryReply::decode(body);
        else
            (void)CatalogueReply::decode(body);
    } catch (const DecodingError &error) {
        return error.description();
    }
    return {};
}

QDateTime utc(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs).toUTC();
}
} // namespace

class ShopRepliesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Any shape error rejects the whole reply.
    void shapeFailures_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("expected"); // the description, or a part of it

        const QJsonValue removed = QJsonValue(QJsonValue::Undefined);
        const auto row = [](const char *name, const QString &kind, const QByteArray &body,
                            const QString &expected) {
            QTest::newRow(name) << kind << body << expected;
        };
        const QString library = u"library"_s;
        const QString catalogue = u"catalogue"_s;
        const QString lib = u"library.json"_s;
        const QString cat = u"catalogue.json"_s;

        row("not JSON", library, fixture(u"not-json.txt"_s), u"Not JSON"_s);
        row("top level array", catalogue, "[]", u"not a JSON object"_s);
        row("email missing", library, mutated(lib, u"email"_s, removed), u"\"email\" is missing"_s);
        row("packs not an array", library, mutated(lib, u"packs"_s, QJsonObject()), u"\"packs\""_s);
        row("number for a string", library, mutated(lib, u"packs/0/slug"_s, 5), u"\"slug\""_s);
        row("string for an integer", library,
            mutated(lib, u"packs/0/colourways/0/files/0/bytes"_s, u"12"_s), u"\"bytes\""_s);
        row("fraction for an integer", library,
            mutated(lib, u"packs/0/colourways/0/files/0/bytes"_s, 1.5), u"\"bytes\""_s);
        row("beyond 64 bits", library, mutated(lib, u"packs/0/colourways/0/files/0/bytes"_s, 1e30),
            u"\"bytes\""_s);
        row("archive not an object", library, mutated(lib, u"packs/0/archives/0"_s, u"zip"_s),
            u"\"archives\""_s);
        row("date only", library, mutated(lib, u"packs/0/since"_s, u"2025-03-01"_s),
            u"Not an ISO 8601 time: 2025-03-01"_s);
        row("phases missing", catalogue, mutated(cat, u"phases"_s, removed), u"\"phases\""_s);
        row("onSale a string", catalogue, mutated(cat, u"packs/0/onSale"_s, u"true"_s),
            u"\"onSale\""_s);
        row("desktop art not an object", catalogue,
            mutated(cat, u"packs/0/colourways/0/art/desktop"_s, u"x"_s), u"\"desktop\""_s);
        row("phase art not text", catalogue,
            mutated(cat, u"packs/0/colourways/0/art/phases/dawn"_s, 3), u"phase picture"_s);
    }

    void shapeFailures()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, body);
        QFETCH(QString, expected);

        const QString failure = decodingFailure(kind, body);
        QVERIFY2(!failure.isEmpty(), "the reply decoded");
        QVERIFY2(failure.contains(expected), qPrintable(failure));
    }

    void times_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>(
            "expected"); // ISO with milliseconds in UTC, or empty for a failure

        QTest::newRow("whole seconds")
            << u"2025-03-01T09:30:00Z"_s << u"2025-03-01T09:30:00.000Z"_s;
        QTest::newRow("microseconds")
            << u"2025-03-01T09:30:00.250999Z"_s << u"2025-03-01T09:30:00.250Z"_s;
        QTest::newRow("offset") << u"2025-03-01T10:30:00+01:00"_s << u"2025-03-01T09:30:00.000Z"_s;
        QTest::newRow("date only") << u"2025-03-01"_s << QString();
        QTest::newRow("no zone") << u"2025-03-01T09:30:00"_s << QString();
        QTest::newRow("empty fraction") << u"2025-03-01T09:30:00.Z"_s << QString();
        QTest::newRow("no such day") << u"2025-02-30T09:30:00Z"_s << QString();
        QTest::newRow("lowercase z") << u"2025-03-01T09:30:00z"_s << QString();
        QTest::newRow("trailing text") << u"2025-03-01T09:30:00Zx"_s << QString();
    }

    void times()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        if (expected.isEmpty()) {
            try {
                (void)JsonFields::parseTime(text);
                QFAIL("parsed");
            } catch (const DecodingError &error) {
                QCOMPARE(error.description(), u"Not an ISO 8601 time: "_s + text);
            }
        } else {
            QCOMPARE(JsonFields::parseTime(text), utc(expected));
            QCOMPARE(JsonFields::formatTime(JsonFields::parseTime(text)), expected);
        }
    }

    void sourceRules_data()
    {
        QTest::addColumn<int>("rule"); // 1 path with base, 2 URL, 3 URL local
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("kind"); // FileSource::Kind, or -1 for no source
        QTest::addColumn<QString>("resolved");

        const int local = int(FileSource::Kind::Local), pub = int(FileSource::Kind::Public),
                  shop = int(FileSource::Kind::Shop);
        // Hosts, schemes and bare paths of public files are in freePacks.
        QTest::newRow("path with base")
            << 1 << u"/f/a.heic"_s << QString() << local << u"https://shop.example/f/a.heic"_s;
        QTest::newRow("no path with base") << 1 << QString() << QString() << shop << QString();
        QTest::newRow("scheme case")
            << 2 << QString() << u"HTTPS://shop.example/x"_s << pub << u"https://shop.example/x"_s;
        QTest::newRow("host case")
            << 2 << QString() << u"https://SHOP.example/x"_s << pub << u"https://shop.example/x"_s;
        QTest::newRow("local switch")
            << 3 << QString() << u"https://cdn.example/x"_s << local << u"https://cdn.example/x"_s;
    }

    void sourceRules()
    {
        QFETCH(int, rule);
        QFETCH(QString, path);
        QFETCH(QString, url);
        QFETCH(int, kind);
        QFETCH(QString, resolved);

        const SourceRule sourceRule =
            rule == 1 ? SourceRule::pathRule(shopBase) : SourceRule::urlRule(shopBase, rule == 3);
        const auto optional = [](const QString &text) {
            return text.isNull() ? std::nullopt : std::optional(text);
        };
        const auto source = sourceRule.source(optional(path), optional(url));
        QCOMPARE(source ? int(source->kind()) : -1, kind);
        if (source)
            QCOMPARE(source->url(), QUrl(resolved));
    }

    void libraryContent()
    {
        const auto reply = LibraryReply::decode(fixture(u"library.json"_s));
        QCOMPARE(reply.email, u"ada@example.com"_s);
        const auto owned = reply.ownedPacks(SourceRule::pathRule());

        const QString longest = u"a123456789"_s.repeated(6) + u"abcd"_s;
        QCOMPARE(owned.keys(), (QStringList { longest, u"spring-light-2"_s }));
        QVERIFY(owned[longest].archives.isEmpty());

        const OwnedPack &pack = owned[u"spring-light-2"_s];
        QCOMPARE(pack.since, utc(u"2025-03-01T09:30:00Z"_s));
        QCOMPARE(pack.updatedAt, utc(u"2025-03-02T10:00:00.500Z"_s));
        // "Dusk" breaks the slug rule; "noon" has no files left.
        QCOMPARE(pack.files.keys(), QStringList { u"dawn"_s });

        const auto &dawn = pack.files[u"dawn"_s];
        QCOMPARE(dawn.keys(),
                 (QList { Edition::Automatic, Edition::TimeOfDay, Edition::Light, Edition::Dark }));
        QCOMPARE(dawn[Edition::Automatic].bytes, 9007199254740993LL);
        QCOMPARE(dawn[Edition::TimeOfDay].sha256, u"0123456789ABCDEF"_s.repeated(4));
        // Each later light file breaks an id or digest rule; one let through would win.
        QCOMPARE(dawn[Edition::Light].id, u"f_0123456789ad"_s);
        QCOMPARE(dawn[Edition::Dark].id, u"f_0123456789af"_s); // the later one wins
        for (const auto &file : pack.allFiles()) {
            QCOMPARE(file.source, FileSource::shop());
            QCOMPARE(file.pack, u"spring-light-2"_s);
            QCOMPARE(file.colourway, u"dawn"_s);
        }

        QCOMPARE(pack.archives.size(), 2);
        QCOMPARE(pack.archives[0].deviceLabel(), u"iPhone Duo"_s);
        QCOMPARE(pack.archives[0].sha256, u"not-checked"_s);
        QCOMPARE(pack.archives[1].device, u"tv"_s);
        QCOMPARE(pack.archives[1].source, FileSource::shop());
    }

    void catalogueContent()
    {
        const auto reply = CatalogueReply::decode(fixture(u"catalogue.json"_s));
        const auto packs = reply.catalogue(shopBase);

        QStringList slugs;
        for (const auto &pack : packs)
            slugs.append(pack.slug);
        QCOMPARE(slugs, (QStringList { u"harbour"_s, u"meadow"_s, u"empty-free"_s }));

        const Pack &harbour = packs[0];
        QCOMPARE(harbour.name, u"Harbour"_s); // the first of two equal slugs is kept
        QCOMPARE(harbour.price, u"€4"_s);
        QVERIFY(harbour.onSale);
        QVERIFY(!harbour.isFree);
        QVERIFY(harbour.hasTimeOfDay());
        QCOMPARE(harbour.colourways.size(), 3);

        const Colourway &mist = harbour.colourways[0];
        QCOMPARE(mist.thumbnails[Appearance::Light],
                 QUrl(u"https://shop.example/art/mist-light.jpg"_s));
        QCOMPARE(mist.thumbnails[Appearance::Dark], QUrl(u"https://cdn.example/mist-dark.jpg"_s));
        QCOMPARE(mist.desktop,
                 (QMap<Appearance, QUrl> {
                     { Appearance::Light,
                       QUrl(u"https://shop.example/api/app/art/mist-desktop-light.jpg"_s) } }));
        QCOMPARE(mist.phases[u"night"_s], QUrl(u"https://shop.example/art/mist-night.jpg"_s));
        // The picture shown: full size before thumbnail, the own appearance's thumbnail before the
        // other's full size, and that before the other's thumbnail.
        QCOMPARE(mist.artwork(Appearance::Light).value_or(QUrl()), mist.desktop[Appearance::Light]);
        QCOMPARE(mist.artwork(Appearance::Dark).value_or(QUrl()),
                 mist.thumbnails[Appearance::Dark]);
        const Colourway &reef = harbour.colourways[2];
        QCOMPARE(reef.artwork(Appearance::Light).value_or(QUrl()), reef.desktop[Appearance::Dark]);

        QVERIFY(packs[1].isFree);
        QVERIFY(!packs[1].hasTimeOfDay());
        QVERIFY(packs[2].isFree);
        QVERIFY(reply.packs[1].isReleased());
        QVERIFY(!reply.packs[2].isReleased());

        QCOMPARE(reply.allPhases(),
                 (QList<Phase> { { u"dawn"_s, u"Dawn"_s }, { u"night"_s, u"Night"_s } }));
    }

    void freePacks()
    {
        const auto free = CatalogueReply::decode(fixture(u"catalogue.json"_s)).freePacks(shopBase);
        QCOMPARE(free.keys(), (QStringList { u"empty-free"_s, u"meadow"_s }));
        QVERIFY(free[u"empty-free"_s].files.isEmpty());

        const OwnedPack &meadow = free[u"meadow"_s];
        QVERIFY(!meadow.since);
        QCOMPARE(meadow.updatedAt, utc(u"2025-01-01T00:00:00Z"_s));
        // Only https on the shop's own host survives; http, other hosts and bare paths do not.
        const auto &clover = meadow.files[u"clover"_s];
        QCOMPARE(clover.keys(), (QList { Edition::Light, Edition::Dark }));
        QCOMPARE(clover[Edition::Light].source,
                 FileSource::publicUrl(QUrl(u"https://shop.example/files/clover-light.heic"_s)));
        QCOMPARE(meadow.archives.size(), 1);
        QCOMPARE(meadow.archives[0].source,
                 FileSource::publicUrl(QUrl(u"https://shop.example/archives/meadow-mac.zip"_s)));
    }
};

QTEST_GUILESS_MAIN(ShopRepliesTest)
#include "test_shop_replies.moc"
