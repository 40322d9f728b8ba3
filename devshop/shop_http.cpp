#include "shop_http.h"

#include "shop_state.h"

#include <QJsonDocument>
#include <QUrl>
#include <httplib.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace ShopHttp {
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

namespace {
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

void oversize(httplib::Response &response, const FaultSwitches::Oversize &fault)
{
    // The real reply first: JSON allows the spaces after it, so only the size is wrong.
    auto body = std::make_shared<std::string>(std::move(response.body));
    response.body.clear();
    const auto total = size_t(std::max<qint64>(fault.bytes, qint64(body->size())));
    const auto write = [body, total](size_t offset, httplib::DataSink &sink) {
        static const std::string spaces(64 * 1024, ' ');
        if (offset < body->size())
            return sink.write(body->data() + offset, body->size() - offset);
        if (offset >= total) {
            sink.done();
            return true;
        }
        return sink.write(spaces.data(), std::min(spaces.size(), total - offset));
    };
    // Not the bare "application/json" the server library gzips on its own: the spaces would
    // shrink to nothing on the way, and the client would meet a few KB.
    const std::string type = response.get_header_value("Content-Type") + "; charset=utf-8";
    response.headers.erase("Content-Type"); // the providers set it again
    if (fault.chunked)
        response.set_chunked_content_provider(type, write);
    else
        response.set_content_provider(total, type,
                                      [write](size_t offset, size_t, httplib::DataSink &sink) {
                                          return write(offset, sink);
                                      });
}

void reply(ShopState &state, const QString &endpoint, httplib::Response &response, int status,
           const QJsonObject &body)
{
    if (!state.faults().isMalformed(endpoint)) {
        sendJson(response, status, body);
        if (const auto fault = state.faults().takeOversize(endpoint))
            oversize(response, *fault);
        return;
    }
    // Half a document: it starts like the real reply and never closes.
    const QByteArray json = QJsonDocument(body).toJson(QJsonDocument::Compact);
    send(response, status, json.left(json.size() / 2), "application/json");
}
} // namespace ShopHttp
