#include "file_routes.h"

#include "file_responder.h"
#include "shop_http.h"
#include "shop_state.h"

#include <array>
#include <httplib.h>
#include <regex>

using namespace Qt::Literals::StringLiterals;
using namespace ShopHttp;

namespace {
// The redirect fault sends a download elsewhere once; "hop" marks the second leg.
bool redirected(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    if (request.has_param("hop"))
        return false;
    const FaultSwitches::Redirect redirect = state.faults().takeRedirect();
    if (redirect == FaultSwitches::Redirect::None)
        return false;
    const QString origin = redirect == FaultSwitches::Redirect::SameHost
        ? ShopHttp::origin(request, state.port())
        : otherOrigin(request, state.port());
    const QString target = QString::fromStdString(request.target);
    const QString location = origin + target + (target.contains(u'?') ? u'&' : u'?') + u"hop=1"_s;
    response.set_redirect(location.toStdString(), 302);
    return true;
}

void transfer(ShopState &state, const httplib::Request &request, httplib::Response &response,
              const StoredFile &file)
{
    if (redirected(state, request, response))
        return;
    FaultSwitches::Transfer faults = state.faults().takeTransfer();
    // A changed file is served as its altered bytes under a new tag from then on.
    if (state.isChanged(file.id) && faults.alteration == FaultSwitches::Alteration::None)
        faults.alteration = FaultSwitches::Alteration::NewETag;
    FileResponder::serve(state, request, response, file, faults);
}

void signedFile(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    if (answeredByFault(state, u"files"_s, response))
        return;
    const QString id = QString::fromStdString(request.matches[1]);
    switch (state.signer().check(id, parameter(request, "expires"), parameter(request, "sig"),
                                 state.clock().now().toSecsSinceEpoch())) {
    case LinkSigner::Verdict::Tampered:
        return sendError(response, 403, u"invalid_signature"_s);
    case LinkSigner::Verdict::Expired:
        return sendError(response, 403, u"link_expired"_s);
    case LinkSigner::Verdict::Valid:
        break;
    }
    const StoredFile *file = state.content().file(id);
    if (!file || !state.content().isOwned(*file))
        return sendError(response, 404, u"not_found"_s);
    transfer(state, request, response, *file);
}

void publicFile(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    if (answeredByFault(state, u"files"_s, response))
        return;
    const StoredFile *file = state.content().file(QString::fromStdString(request.matches[1]));
    if (!file || !state.content().isFree(*file))
        return sendError(response, 404, u"not_found"_s);
    transfer(state, request, response, *file);
}

void art(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    if (answeredByFault(state, u"art"_s, response))
        return;
    const StoredFile *file = state.content().art(QString::fromStdString(request.path));
    if (!file)
        return sendError(response, 404, u"not_found"_s);
    FileResponder::serve(state, request, response, *file);
}

struct FileRoute {
    const char *pattern;
    void (*handler)(ShopState &, const httplib::Request &, httplib::Response &);
};

constexpr std::array fileRoutes {
    FileRoute { R"(/files/([fa]_[0-9a-f]+))", signedFile },
    FileRoute { R"(/public/([fa]_[0-9a-f]+))", publicFile },
    FileRoute { R"(/art/.+)", art },
};

// cpp-httplib answers 416 on its own, before any handler runs, to a Range header it cannot parse:
// another unit, several ranges in a form it rejects, a last byte before the first. Such a header
// is to be ignored, so the request goes to its handler without it.
bool servedDespiteRange(ShopState &state, const httplib::Request &request,
                        httplib::Response &response)
{
    // A response of the shop's own has headers; the library's refusal has none.
    if (response.status != 416 || !response.headers.empty()
        || (request.method != "GET" && request.method != "HEAD"))
        return false;
    auto &unparsed = const_cast<httplib::Request &>(request);
    for (const FileRoute &route : fileRoutes) {
        if (!std::regex_match(unparsed.path, unparsed.matches, std::regex(route.pattern)))
            continue;
        unparsed.headers.erase("Range");
        state.count(QString::fromStdString(request.path));
        route.handler(state, request, response);
        return true;
    }
    return false;
}
} // namespace

void installFileRoutes(httplib::Server &server, ShopState &state)
{
    for (const FileRoute &route : fileRoutes)
        server.Get(route.pattern, bound(state, route.handler));
    using Outcome = httplib::Server::HandlerResponse;
    server.set_error_handler(httplib::Server::HandlerWithResponse(
        [&state](const httplib::Request &request, httplib::Response &response) {
            return servedDespiteRange(state, request, response) ? Outcome::Handled
                                                                : Outcome::Unhandled;
        }));
}
