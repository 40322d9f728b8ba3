#pragma once

#include "catalogue_reply.h"
#include "library_reply.h"

#include <functional>
#include <optional>

// The disk copy of the last good catalogue and library, "shop-cache.json", so that Quennet
// starts with the user's packs while offline.
namespace Cache {
struct Saved {
    CatalogueReply catalogue;
    std::optional<LibraryReply> library; // absent when signed out
    std::optional<QString> account;
    std::optional<QUrl> base; // what relative URLs in the replies resolve against

    bool operator==(const Saved &) const = default;
};

// Any failure to read or decode means there is no copy.
[[nodiscard]] std::optional<Saved> load(const QString &path);
[[nodiscard]] bool save(const QString &path, const Saved &saved);
// Loads (or starts from an empty record), applies the change, saves.
bool update(const QString &path, const std::function<void(Saved &)> &change);
} // namespace Cache
