#pragma once

namespace httplib {
class Server;
} // namespace httplib

class ShopState;

// Calls for tests and scripts under /_devshop, each allowed only with the admin secret in
// "X-Devshop-Secret".
void installAdminRoutes(httplib::Server &server, ShopState &state);
