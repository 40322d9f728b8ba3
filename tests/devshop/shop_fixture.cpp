#include "shop_fixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace {
DevShop::Options withFolders(DevShop::Options options, const QString &state)
{
    options.contentDir = u"" QUENNET_DEVSHOP_CONTENT ""_s;
    options.stateDir = state;
    return options;
}
} // namespace

ShopFixture::ShopFixture(DevShop::Options options)
    : m_shop(withFolders(std::move(options), m_state.path()))
    , m_curl(QDir(m_state.path()).filePath(u"ca.pem"_s))
{
    m_running = m_shop.start();
}

QString ShopFixture::url(const QString &path) const
{
    return u"https://127.0.0.1:%1%2"_s.arg(m_shop.port()).arg(path);
}

QString ShopFixture::api(const QString &endpoint) const
{
    return url(u"/api/app/v1/"_s + endpoint);
}

QString ShopFixture::bearer(const QString &token)
{
    return u"Authorization: Bearer "_s + token;
}

CurlReply ShopFixture::links(const QString &token,
                             const QList<QPair<QString, QString>> &files) const
{
    QJsonArray wanted;
    for (const auto &[pack, id] : files)
        wanted.append(QJsonObject { { u"pack"_s, pack }, { u"id"_s, id } });
    return m_curl.post(api(u"downloads"_s), { { u"files"_s, wanted } }, { bearer(token) });
}

QString ShopFixture::linkTo(const QString &pack, const QString &id)
{
    const QJsonArray found =
        links(m_shop.issueToken(), { { pack, id } }).json()[u"links"_s].toArray();
    return found.isEmpty() ? QString() : found.first()[u"url"_s].toString();
}

QJsonObject ShopFixture::requestCode(const QString &device) const
{
    return m_curl
        .post(api(u"device/code"_s), { { u"client_id"_s, u"mac-app"_s }, { u"device"_s, device } })
        .json();
}

CurlReply ShopFixture::poll(const QString &deviceCode) const
{
    return m_curl.post(api(u"device/token"_s),
                       { { u"grant_type"_s, u"urn:ietf:params:oauth:grant-type:device_code"_s },
                         { u"device_code"_s, deviceCode },
                         { u"client_id"_s, u"mac-app"_s } });
}

QString sampleFileId(const QString &pack, const QString &colourway, const QString &edition)
{
    QFile file(u"" QUENNET_DEVSHOP_CONTENT "/content.json"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (const QJsonValue &p : QJsonDocument::fromJson(file.readAll())[u"packs"_s].toArray())
        for (const QJsonValue &c : p[u"colourways"_s].toArray())
            for (const QJsonValue &f : c[u"files"_s].toArray())
                if (p[u"slug"_s] == pack && c[u"slug"_s] == colourway && f[u"edition"_s] == edition)
                    return f[u"id"_s].toString();
    return {};
}
