#include "shop_contents.h"

#include "content_rules.h"

#include <QSet>

ShopContents ShopContents::from(const CatalogueReply &catalogue,
                                const std::optional<LibraryReply> &library, const QUrl &base,
                                bool showsUnreleased)
{
    ShopContents contents;
    QSet<QString> unreleased;
    for (const auto &pack : catalogue.packs) {
        if (!pack.isReleased())
            unreleased.insert(pack.slug);
    }
    for (auto &pack : catalogue.catalogue(base)) {
        if (showsUnreleased || !unreleased.contains(pack.slug))
            contents.packs.append(std::move(pack));
    }
    contents.phases = catalogue.allPhases();
    contents.free = catalogue.freePacks(base);
    if (library)
        contents.bought = library->ownedPacks(SourceRule::pathRule());
    contents.owned = contents.free;
    // A pack both bought and free is used as bought: its files come with the account.
    contents.owned.insert(contents.bought);
    return contents;
}
