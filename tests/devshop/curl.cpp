#include "curl.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

QJsonObject CurlReply::json() const
{
    return QJsonDocument::fromJson(body).object();
}

Curl::Curl(QString caPath)
    : m_caPath(std::move(caPath))
{
}

CurlReply Curl::get(const QString &url, const QStringList &headers,
                    const QStringList &options) const
{
    QStringList arguments = options;
    for (const QString &header : headers)
        arguments << u"-H"_s << header;
    return run(arguments << url);
}

CurlReply Curl::post(const QString &url, const QJsonObject &body, const QStringList &headers) const
{
    QStringList arguments { u"-H"_s, u"Content-Type: application/json"_s, u"--data-binary"_s,
                            QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact)) };
    for (const QString &header : headers)
        arguments << u"-H"_s << header;
    return run(arguments << url);
}

CurlReply Curl::run(const QStringList &arguments) const
{
    QTemporaryDir dir;
    const QString headerFile = dir.filePath(u"headers"_s);
    const QString bodyFile = dir.filePath(u"body"_s);
    QProcess curl;
    curl.start(u"curl"_s,
               QStringList { u"-sS"_s, u"--cacert"_s, m_caPath, u"--max-time"_s, u"60"_s, u"-D"_s,
                             headerFile, u"-o"_s, bodyFile, u"-w"_s, u"%{http_code}"_s }
                   + arguments);
    CurlReply reply;
    if (!curl.waitForFinished(120'000))
        return reply;
    reply.exitCode = curl.exitCode();
    reply.status = curl.readAllStandardOutput().toInt();
    QFile body(bodyFile);
    if (body.open(QIODevice::ReadOnly))
        reply.body = body.readAll();
    QFile headers(headerFile);
    if (headers.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : headers.readAll().split('\n')) {
            if (line.startsWith("HTTP/"))
                reply.headers.clear(); // a redirect followed: keep the last response's
            const qsizetype colon = line.indexOf(':');
            if (colon > 0)
                reply.headers.insert(QString::fromLatin1(line.left(colon)).toLower(),
                                     QString::fromLatin1(line.mid(colon + 1).trimmed()));
        }
    }
    return reply;
}
