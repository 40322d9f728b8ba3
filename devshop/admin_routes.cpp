#include "admin_routes.h"

#include "shop_http.h"
#include "shop_state.h"

#include <QJsonDocument>
#include <httplib.h>
#include <openssl/crypto.h>

using namespace Qt::Literals::StringLiterals;
using namespace ShopHttp;

namespace {
bool isAdmin(const ShopState &state, const httplib::Request &request)
{
    const QByteArray given = header(request, "X-Devshop-Secret").toUtf8();
    const QByteArray secret = state.adminSecret().toUtf8();
    return given.size() == secret.size()
        && CRYPTO_memcmp(given.constData(), secret.constData(), size_t(secret.size())) == 0;
}

// A handler that runs only for the admin and gets the request's JSON object.
template<typename Handler> auto admin(ShopState &state, Handler handler)
{
    return [&state, handler](const httplib::Request &request, httplib::Response &response) {
        if (!isAdmin(state, request))
            return sendError(response, 403, u"forbidden"_s);
        QJsonParseError error {};
        const QByteArray text = QByteArray::fromStdString(request.body);
        const QJsonDocument body = QJsonDocument::fromJson(text.isEmpty() ? "{}" : text, &error);
        if (error.error != QJsonParseError::NoError || !body.isObject())
            return sendError(response, 400, u"the body is not a JSON object"_s);
        handler(state, body.object(), response);
    };
}

void approve(ShopState &state, const QJsonObject &body, httplib::Response &response)
{
    if (state.grant().decide(body.value("user_code"_L1).toString(), true))
        sendJson(response, 200, {});
    else
        sendError(response, 404, u"unknown_code"_s);
}

void faults(ShopState &state, const QJsonObject &body, httplib::Response &response)
{
    const QString problem = state.setFaults(body);
    if (problem.isEmpty())
        sendJson(response, 200, {});
    else
        sendError(response, 400, problem);
}

void advanceClock(ShopState &state, const QJsonObject &body, httplib::Response &response)
{
    const qint64 seconds = body.value("advance"_L1).toInteger(-1);
    if (seconds < 0)
        return sendError(response, 400, u"\"advance\" is a number of seconds"_s);
    state.clock().advance(std::chrono::seconds(seconds));
    sendJson(response, 200, { { u"now"_s, state.clock().now().toString(Qt::ISODateWithMs) } });
}
} // namespace

void installAdminRoutes(httplib::Server &server, ShopState &state)
{
    server.Post("/_devshop/approve", admin(state, approve));
    server.Post("/_devshop/faults", admin(state, faults));
    server.Post("/_devshop/clock", admin(state, advanceClock));
    server.Post(
        "/_devshop/token",
        admin(state, [](ShopState &state, const QJsonObject &, httplib::Response &response) {
            sendJson(response, 200, { { u"access_token"_s, state.grant().issueToken() } });
        }));
    server.Get("/_devshop/stats",
               admin(state, [](ShopState &state, const QJsonObject &, httplib::Response &response) {
                   sendJson(response, 200, state.stats());
               }));
}
