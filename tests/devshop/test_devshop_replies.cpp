#include "catalogue_reply.h"
#include "content_rules.h"
#include "library_reply.h"
#include "shop_fixture.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}
} // namespace

// What the shop answers, read back with the client's own decoders, and the downloads behind it.
class TestDevshopReplies : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void catalogueDecodes_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("127.0.0.1") << u"127.0.0.1"_s;
        QTest::newRow("localhost") << u"localhost"_s;
    }

    void catalogueDecodes()
    {
        QFETCH(QString, host);
        ShopFixture fixture;
        QUrl base = fixture.shop().baseUrl();
        base.setHost(host);
        const CurlReply reply = fixture.curl().get(base.toString() + u"/catalogue"_s);
        QCOMPARE(reply.status, 200);
        const CatalogueReply catalogue = CatalogueReply::decode(reply.body);

        QVERIFY(catalogue.packs.size() >= 5);
        const QList<Pack> packs = catalogue.catalogue(base);
        QCOMPARE(packs.size(), catalogue.packs.size());
        const QList<Phase> phases = catalogue.allPhases();
        QVERIFY(phases.size() >= 4);
        for (const Pack &pack : packs) {
            QCOMPARE(pack.url.host(), host);
            QVERIFY(!pack.colourways.isEmpty());
            for (const Colourway &colourway : pack.colourways) {
                QCOMPARE(colourway.thumbnails.size(), 2);
                QCOMPARE(colourway.desktop.size(), 2);
                QCOMPARE(colourway.phases.size(), phases.size());
                for (const QUrl &art : colourway.desktop)
                    QCOMPARE(fixture.curl().get(art.toString()).header(u"Content-Type"_s),
                             u"image/png"_s);
            }
        }

        QStringList unreleased;
        for (const CatalogueReply::PackReply &pack : catalogue.packs)
            if (!pack.isReleased())
                unreleased.append(pack.slug);
        QCOMPARE(unreleased, QStringList { u"glacier"_s });

        // The free pack's files come from public addresses on the shop's own host.
        const QMap<QString, OwnedPack> free = catalogue.freePacks(base);
        QCOMPARE(free.keys(), QStringList { u"meadow"_s });
        const QList<WallpaperFile> files = free[u"meadow"_s].allFiles();
        QCOMPARE(files.size(), 8);
        QCOMPARE(free[u"meadow"_s].archives.size(), 4);
        for (const WallpaperFile &file : files) {
            QCOMPARE(file.source.kind(), FileSource::Kind::Public);
            const CurlReply download = fixture.curl().get(file.source.url().toString());
            QCOMPARE(download.status, 200);
            QCOMPARE(sha256(download.body), file.sha256->toLatin1());
        }
    }

    void libraryTagGivesNotModified_data()
    {
        QTest::addColumn<QString>("ifNoneMatch");
        QTest::addColumn<int>("status");
        QTest::newRow("among others") << uR"("old", TAG)"_s << 304;
        QTest::newRow("weak form") << u"W/TAG"_s << 304;
        QTest::newRow("any") << u"*"_s << 304;
        QTest::newRow("another tag") << uR"("0123")"_s << 200;
    }

    void libraryTagGivesNotModified()
    {
        QFETCH(QString, ifNoneMatch);
        QFETCH(int, status);
        ShopFixture fixture;
        const QString bearer = ShopFixture::bearer(fixture.shop().issueToken());
        const CurlReply first = fixture.curl().get(fixture.api(u"library"_s), { bearer });
        const QString tag = first.header(u"ETag"_s);
        QCOMPARE(tag, u'"' + QString::fromLatin1(sha256(first.body)) + u'"');

        const CurlReply second = fixture.curl().get(
            fixture.api(u"library"_s),
            { bearer, u"If-None-Match: "_s + QString(ifNoneMatch).replace(u"TAG"_s, tag) });
        QCOMPARE(second.status, status);
        QCOMPARE(second.header(u"ETag"_s), tag);
        QCOMPARE(second.body.isEmpty(), status == 304);
    }

    void linksForOwnedFilesOnly()
    {
        ShopFixture fixture;
        const QString owned = sampleFileId(u"aurora"_s, u"emerald"_s, u"light"_s);
        const CurlReply reply =
            fixture.links(fixture.shop().issueToken(),
                          { { u"aurora"_s, owned },
                            { u"harbour"_s, sampleFileId(u"harbour"_s, u"slate"_s, u"light"_s) },
                            { u"meadow"_s, sampleFileId(u"meadow"_s, u"spring"_s, u"dark"_s) },
                            { u"dunes"_s, owned },
                            { u"aurora"_s, u"f_000000000000"_s } });
        QCOMPARE(reply.status, 200);
        const QJsonArray links = reply.json()[u"links"_s].toArray();
        QCOMPARE(links.size(), 1);
        const QJsonObject link = links.first().toObject();
        QCOMPARE(link[u"pack"_s].toString(), u"aurora"_s);
        QCOMPARE(link[u"id"_s].toString(), owned);
        QCOMPARE(QUrl(link[u"url"_s].toString()).host(), u"127.0.0.1"_s);
        const QDateTime expires =
            QDateTime::fromString(link[u"expiresAt"_s].toString(), Qt::ISODate);
        QVERIFY(expires > QDateTime::currentDateTimeUtc());
        QCOMPARE(fixture.curl()
                     .post(fixture.api(u"downloads"_s), { { u"files"_s, u"all"_s } },
                           { ShopFixture::bearer(fixture.shop().issueToken()) })
                     .status,
                 400);
    }

    // The library as the client reads it, and every owned file and archive through its link.
    void libraryDownloads()
    {
        ShopFixture fixture;
        const QString token = fixture.shop().issueToken();
        const LibraryReply library = LibraryReply::decode(
            fixture.curl().get(fixture.api(u"library"_s), { ShopFixture::bearer(token) }).body);
        const QMap<QString, OwnedPack> owned = library.ownedPacks(SourceRule::pathRule());
        QCOMPARE(owned.keys(), (QStringList { u"aurora"_s, u"dunes"_s, u"glacier"_s }));
        // Not released yet: listed with its colourways, but without files.
        QCOMPARE(library.packs.last().colourways.size(), 2);
        QVERIFY(owned[u"glacier"_s].files.isEmpty());

        QHash<QString, QString> digests;
        QList<QPair<QString, QString>> wanted;
        const auto want = [&](const QString &pack, const QString &id, const QString &sha256) {
            wanted.append({ pack, id });
            digests.insert(id, sha256);
        };
        for (const OwnedPack &pack : owned) {
            for (const WallpaperFile &file : pack.allFiles())
                want(pack.slug, file.id, *file.sha256);
            for (const Archive &archive : pack.archives)
                want(pack.slug, archive.id, *archive.sha256);
        }
        QCOMPARE(wanted.size(), 2 * (8 + 4));
        const QJsonArray links = fixture.links(token, wanted).json()[u"links"_s].toArray();
        QCOMPARE(links.size(), wanted.size());
        for (const QJsonValue &link : links) {
            const CurlReply download = fixture.curl().get(link[u"url"_s].toString());
            QCOMPARE(download.status, 200);
            QCOMPARE(QString::fromLatin1(sha256(download.body)),
                     digests.value(link[u"id"_s].toString()));
        }
    }

    void linkRefusals_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("error");
        QTest::newRow("expired") << u"expire"_s << u"link_expired"_s;
        QTest::newRow("signature changed") << u"signature"_s << u"invalid_signature"_s;
        QTest::newRow("another file") << u"file"_s << u"invalid_signature"_s;
        QTest::newRow("unsigned") << u"unsigned"_s << u"invalid_signature"_s;
    }

    void linkRefusals()
    {
        QFETCH(QString, change);
        QFETCH(QString, error);
        ShopFixture fixture({ .linkLifetime = 60 });
        QUrl link(fixture.linkTo(u"aurora"_s, sampleFileId(u"aurora"_s, u"emerald"_s, u"dark"_s)));
        QCOMPARE(fixture.curl().get(link.toString()).status, 200);

        QUrlQuery query(link);
        const auto replace = [&query](const QString &key, const QString &value) {
            query.removeQueryItem(key);
            query.addQueryItem(key, value);
        };
        const QString signature = query.queryItemValue(u"sig"_s);
        if (change == "expire"_L1)
            fixture.shop().advanceClock(61s);
        if (change == "signature"_L1)
            replace(u"sig"_s, (signature.startsWith(u'0') ? u"1"_s : u"0"_s) + signature.mid(1));
        if (change == "expiry"_L1)
            replace(u"expires"_s,
                    QString::number(query.queryItemValue(u"expires"_s).toLongLong() + 3600));
        if (change == "file"_L1)
            link.setPath(u"/files/"_s + sampleFileId(u"aurora"_s, u"emerald"_s, u"light"_s));
        if (change == "unsigned"_L1)
            query.clear();
        link.setQuery(query);

        const CurlReply reply = fixture.curl().get(link.toString());
        QCOMPARE(reply.status, 403);
        QCOMPARE(reply.json()[u"error"_s].toString(), error);
    }
};

QTEST_GUILESS_MAIN(TestDevshopReplies)
#include "test_devshop_replies.moc"
