#include "shop_fixture.h"

#include "test_files.h"

#include <QJsonArray>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto content = u"" QUENNET_DEVSHOP_CONTENT ""_s;

QJsonValue samplePack()
{
    return QJsonDocument::fromJson(readAll(content + u"/content.json"_s))[u"packs"_s][0];
}

QJsonValue sampleFile()
{
    return samplePack()[u"colourways"_s][0][u"files"_s][0];
}
} // namespace

ShopFixture::ShopFixture(DevShop::Options options)
    : shop((options.contentDir = content, options.stateDir = m_state.path(), options))
{
    shop.start();
}

QString ShopFixture::url(const QString &path) const
{
    return u"https://127.0.0.1:%1%2"_s.arg(shop.port()).arg(path);
}

QString ShopFixture::api(const QString &endpoint) const
{
    return url(u"/api/app/v1/"_s + endpoint);
}

QString ShopFixture::bearer(const QString &token)
{
    return u"Authorization: Bearer "_s + token;
}

CurlReply ShopFixture::get(const QString &url, const QStringList &headers,
                           QStringList options) const
{
    for (const QString &header : headers)
        options << u"-H"_s << header;
    const QTemporaryDir dir;
    QProcess curl;
    curl.start(u"curl"_s,
               QStringList { u"-sS"_s, u"--cacert"_s, shop.caPath(), u"--max-time"_s, u"60"_s,
                             u"-D"_s, dir.filePath(u"headers"_s), u"-o"_s, dir.filePath(u"body"_s),
                             u"-w"_s, u"%{http_code}"_s }
                   + options + QStringList { url });
    CurlReply reply;
    if (!curl.waitForFinished(120'000))
        return reply;
    reply.exitCode = curl.exitCode();
    reply.status = curl.readAllStandardOutput().toInt();
    reply.body = readAll(dir.filePath(u"body"_s));
    for (const QByteArray &line : readAll(dir.filePath(u"headers"_s)).split('\n')) {
        if (line.startsWith("HTTP/"))
            reply.headers.clear(); // a redirect followed: keep the last response's
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            reply.headers.insert(QString::fromLatin1(line.left(colon)).toLower(),
                                 QString::fromLatin1(line.mid(colon + 1).trimmed()));
    }
    return reply;
}

CurlReply ShopFixture::post(const QString &url, const QJsonObject &body,
                            const QStringList &headers) const
{
    return get(url, headers + QStringList { u"Content-Type: application/json"_s },
               { u"--data-binary"_s,
                 QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact)) });
}

CurlReply ShopFixture::request(const QString &endpoint, std::optional<QString> token)
{
    const QString authorization = bearer(token ? *token : shop.issueToken());
    if (endpoint == "device/code"_L1)
        return requestCode();
    if (endpoint == "device/token"_L1)
        return poll({});
    if (endpoint == "sign-out"_L1)
        return post(api(endpoint), {}, { authorization });
    if (endpoint == "downloads"_L1)
        return post(api(endpoint), { { u"files"_s, QJsonArray() } }, { authorization });
    if (endpoint == "files"_L1)
        return get(sampleLink());
    if (endpoint == "art"_L1)
        return get(url(u"/art/dunes/rose/light.png"_s));
    return get(api(endpoint), { authorization });
}

QString ShopFixture::sampleLink()
{
    const QJsonObject wanted { { u"pack"_s, samplePack()[u"slug"_s] },
                               { u"id"_s, sampleFile()[u"id"_s] } };
    return post(api(u"downloads"_s), { { u"files"_s, QJsonArray { wanted } } },
                { bearer(shop.issueToken()) })
        .json()[u"links"_s][0][u"url"_s]
        .toString();
}

QByteArray ShopFixture::sampleBytes()
{
    return readAll(content + u'/' + sampleFile()[u"path"_s].toString());
}

CurlReply ShopFixture::requestCode(const QString &device) const
{
    return post(api(u"device/code"_s),
                { { u"client_id"_s, u"mac-app"_s }, { u"device"_s, device } });
}

CurlReply ShopFixture::poll(const QString &deviceCode) const
{
    return post(api(u"device/token"_s),
                { { u"grant_type"_s, u"urn:ietf:params:oauth:grant-type:device_code"_s },
                  { u"device_code"_s, deviceCode },
                  { u"client_id"_s, u"mac-app"_s } });
}
