#pragma once

#include "fault_switches.h"

#include <QJsonObject>
#include <QString>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

class ShopState;

// Small helpers shared by the shop's request handlers.
namespace ShopHttp {
[[nodiscard]] QString header(const httplib::Request &request, const char *name);
[[nodiscard]] QString parameter(const httplib::Request &request, const char *name);
// The token of an "Authorization: Bearer …" header, or an empty string.
[[nodiscard]] QString bearerToken(const httplib::Request &request);
// "https://host:port" as the client addressed the shop, so that every address in a reply stays
// on the client's own host name; unknown host names fall back to 127.0.0.1.
[[nodiscard]] QString origin(const httplib::Request &request, quint16 port);
// The loopback name that is not the one the client used: localhost and 127.0.0.1 swap.
[[nodiscard]] QString otherOrigin(const httplib::Request &request, quint16 port);

void send(httplib::Response &response, int status, const QByteArray &body, const char *contentType);
void sendJson(httplib::Response &response, int status, const QJsonObject &body);
void sendError(httplib::Response &response, int status, const QString &error);

// A server handler that calls handler(state, request, response).
template<typename Handler> [[nodiscard]] auto bound(ShopState &state, Handler handler)
{
    return [&state, handler](const httplib::Request &request, httplib::Response &response) {
        handler(state, request, response);
    };
}

// Answers the status an endpoint fault asks for; true when it did.
bool answeredByFault(ShopState &state, const QString &endpoint, httplib::Response &response);
// Pads the body already in response with spaces, as the "oversized" fault asks.
void oversize(httplib::Response &response, const FaultSwitches::Oversize &fault);
// Sends a JSON reply of an endpoint, broken when the "malformed" fault names it.
void reply(ShopState &state, const QString &endpoint, httplib::Response &response, int status,
           const QJsonObject &body);
} // namespace ShopHttp
