#include "shop_http.h"

#include "shop_state.h"

#include <QJsonDocument>
#include <QUrl>

#include <httplib.h>

using namespace Qt::Literals::StringLiterals;

namespace ShopHttp
{
QString header(const httplib::Request &request, const char *name)
{
    return QString::fromStdString(request.get_header_value(name));
}

QString parameter(const httplib::Request &request, const char *name)
{
    return QString::fromStdString(request.get_param_value(name));
}

QString bearerToken(const httplib::Request &request)
{
    const QString authorization = header(request, "Authorization");
    return authorization.startsWith("Bearer "_L1) ? authorization.mid(7) : QString();
}

namespace
{
QString host(const httplib::Request &request)
{
    const QUrl url(u"https://"_s + header(request, "Host"));
    const QString name = url.host();
    return name == "localhost"_L1 || name == "127.0.0.1"_L1 || name == "::1"_L1 ? name
                                                                                : u"127.0.0.1"_s;
}

QString originOf(const QString &host, quint16 port)
{
    QUrl url;
    url.setScheme(u"https"_s);
    url.setHost(host);
    url.setPort(port);
    return url.toString();
}
} // namespace

QString origin(const httplib::Request &request, quint16 port)
{
    return originOf(host(request), port);
}

QString otherOrigin(const httplib::Request &request, quint16 port)
{
    return originOf(host(request) == "localhost"_L1 ? u"127.0.0.1"_s : u"localhost"_s, port);
}

void send(httplib::Response &response, int status, const QByteArray &body, const char *contentType)
{
    response.status = status;
    response.set_content(body.toStdString(), contentType);
}

void sendJson(httplib::Response &response, int status, const QJsonObject &body)
{
    send(response, status, QJsonDocument(body).toJson(QJsonDocument::Compact), "application/json");
}

void sendError(httplib::Response &response, int status, const QString &error)
{
    sendJson(response, status, { { u"error"_s, error } });
}

bool answeredByFault(ShopState &state, const QString &endpoint, httplib::Response &response)
{
    const auto fault = state.faults().takeStatus(endpoint);
    if (!fault)
        return false;
    if (fault->error.isEmpty())
        send(response, fault->code, {}, "text/plain");
    else
        sendError(response, fault->code, fault->error);
    return true;
}

void reply(ShopState &state, const QString &endpoint, httplib::Response &response, int status,
           const QJsonObject &body)
{
    if (!state.faults().isMalformed(endpoint))
        return sendJson(response, status, body);
    // Half a document: it starts like the real reply and never closes.
    const QByteArray json = QJsonDocument(body).toJson(QJsonDocument::Compact);
    send(response, status, json.left(json.size() / 2), "application/json");
}
} // namespace ShopHttp
