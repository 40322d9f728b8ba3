#pragma once

namespace httplib {
class Server;
} // namespace httplib

class ShopState;

// The app's API under /api/app/v1: device-code sign-in, sign-out, catalogue, library and links.
void installApiRoutes(httplib::Server &server, ShopState &state);
