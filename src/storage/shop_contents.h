#pragma once

#include "catalogue_reply.h"
#include "library_reply.h"

#include <QMap>
#include <optional>

// What the store publishes of the catalogue and the library: the packs shown, the phases, and
// the packs the user may use, bought or free.
struct ShopContents {
    QList<Pack> packs;
    QList<Phase> phases;
    QMap<QString, OwnedPack> owned; // bought and free together
    QMap<QString, OwnedPack> bought;
    QMap<QString, OwnedPack> free;

    // Library files come through signed links (no base location), free files from their URLs on
    // the shop's own host. Packs not released yet are listed only when asked for.
    [[nodiscard]] static ShopContents from(const CatalogueReply &catalogue,
                                           const std::optional<LibraryReply> &library,
                                           const QUrl &base, bool showsUnreleased);

    bool operator==(const ShopContents &) const = default;
};
