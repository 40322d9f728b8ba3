#pragma once

namespace httplib {
class Server;
} // namespace httplib

class ShopState;

// The bytes: owned files through signed links (/files/ID), free files at public addresses
// (/public/ID) and artwork (/art/…).
void installFileRoutes(httplib::Server &server, ShopState &state);
