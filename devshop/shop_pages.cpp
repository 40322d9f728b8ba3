#include "shop_pages.h"

#include "shop_http.h"
#include "shop_state.h"

#include <QUrlQuery>
#include <httplib.h>

using namespace Qt::Literals::StringLiterals;
using namespace ShopHttp;

namespace {
const auto style = R"(
body { font-family: system-ui, sans-serif; max-width: 34rem; margin: 4rem auto; padding: 0 1rem;
       color: #1d1d1f; background: #fbfbfd; }
h1 { font-weight: 600; }
input { font: 1.6rem ui-monospace, monospace; letter-spacing: .15em; text-transform: uppercase;
        width: 100%; box-sizing: border-box; padding: .4rem .6rem; margin: .5rem 0 1rem; }
button { font-size: 1rem; padding: .55rem 1.6rem; margin-right: .6rem; border-radius: .5rem;
         border: 1px solid #888; background: #fff; cursor: pointer; }
#approve { background: #0a66d8; border-color: #0a66d8; color: #fff; }
.muted { color: #6e6e73; }
.notice { padding: .7rem 1rem; border-radius: .5rem; background: #eef4ff; }
.problem { background: #fff0f0; }
)"_L1;

QString page(const QString &title, const QString &body)
{
    return u"<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
           u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
           u"<title>%1 · Quennet shop</title><style>%2</style></head>\n"
           u"<body>\n%3</body></html>\n"_s.arg(title.toHtmlEscaped(), style, body);
}

QString approvalForm(ShopState &state, const QString &code, const QString &notice)
{
    QString body =
        u"<h1>Sign in to Quennet</h1>\n"
        u"<p class=\"muted\">Signed in to the shop as <strong id=\"email\">%1</strong></p>\n"_s.arg(
            state.content().email().toHtmlEscaped());
    if (const auto device = state.grant().waitingDevice(code))
        body +=
            u"<p id=\"device\">Quennet on <strong>%1</strong> is asking to use your "
            u"account.</p>\n"_s.arg(device->isEmpty() ? u"a computer"_s : device->toHtmlEscaped());
    body += notice;
    body += u"<form method=\"post\" action=\"/activate\">\n"
            u"<label for=\"user_code\">Enter the code that Quennet shows</label>\n"
            u"<input id=\"user_code\" name=\"user_code\" value=\"%1\" autocomplete=\"off\" "
            u"autofocus required>\n"
            u"<button id=\"approve\" name=\"action\" value=\"approve\" type=\"submit\">Approve"
            u"</button>\n"
            u"<button id=\"deny\" name=\"action\" value=\"deny\" type=\"submit\">Deny</button>\n"
            u"</form>\n"_s.arg(code.toHtmlEscaped());
    return page(u"Sign in to Quennet"_s, body);
}

void showApproval(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString code = parameter(request, "user_code");
    send(response, 200, approvalForm(state, code, {}).toUtf8(), "text/html; charset=utf-8");
}

void decide(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QUrlQuery form(QString::fromStdString(request.body).replace(u'+', u' '));
    const QString code = form.queryItemValue(u"user_code"_s, QUrl::FullyDecoded);
    const QString action = form.queryItemValue(u"action"_s);
    const bool approve = action == "approve"_L1;
    if ((approve || action == "deny"_L1) && state.grant().decide(code, approve)) {
        const QString result = approve
            ? u"<p id=\"result\" class=\"notice\">Approved. You can go back to Quennet now.</p>\n"_s
            : u"<p id=\"result\" class=\"notice\">Denied. Quennet was not signed in.</p>\n"_s;
        send(response, 200,
             page(u"Sign in to Quennet"_s, u"<h1>Sign in to Quennet</h1>\n"_s + result).toUtf8(),
             "text/html; charset=utf-8");
        return;
    }
    const QString problem = u"<p id=\"error\" class=\"notice problem\">That code isn't valid: it "
                            u"may have expired or been used already.</p>\n"_s;
    send(response, 400, approvalForm(state, code, problem).toUtf8(), "text/html; charset=utf-8");
}

void packPage(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const auto pack = state.content().pack(QString::fromStdString(request.matches[1]));
    if (!pack)
        return sendError(response, 404, u"not_found"_s);
    const QString name = pack->value("name"_L1).toString();
    const QString body = u"<h1>%1</h1>\n<p>%2</p>\n<p><strong>%3</strong></p>\n"_s.arg(
        name.toHtmlEscaped(), pack->value("line"_L1).toString().toHtmlEscaped(),
        pack->value("price"_L1).toString().toHtmlEscaped());
    send(response, 200, page(name, body).toUtf8(), "text/html; charset=utf-8");
}
} // namespace

void installShopPages(httplib::Server &server, ShopState &state)
{
    server.Get("/activate", bound(state, showApproval));
    server.Post("/activate", bound(state, decide));
    server.Get(R"(/packs/([a-z0-9-]+))", bound(state, packPage));
}
