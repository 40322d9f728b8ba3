#pragma once

namespace httplib {
class Server;
} // namespace httplib

class ShopState;

// The shop's web pages: the approval page at the verification address (/activate), where the
// signed-in sample account approves or denies a device code, and a page per pack (/packs/SLUG).
void installShopPages(httplib::Server &server, ShopState &state);
