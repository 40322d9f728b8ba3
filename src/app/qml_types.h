#pragma once

#include "account.h"
#include "displays.h"
#include "favourites.h"
#include "focus_filter.h"
#include "login_item.h"
#include "shop.h"
#include "shuffle.h"
#include "spaces_helper.h"

#include <QtQmlIntegration>

// The lower layers' types as the views see them; those layers know nothing of QML.
struct AccountForeign {
    Q_GADGET
    QML_FOREIGN(Account)
    QML_NAMED_ELEMENT(Account)
    QML_UNCREATABLE("made by the application")
};

// The workspace helper's status, for "SpacesHelper.RequiresApproval" and the like.
struct SpacesHelperForeign {
    Q_GADGET
    QML_FOREIGN(SpacesHelper)
    QML_NAMED_ELEMENT(SpacesHelper)
    QML_UNCREATABLE("made by the application")
};

struct FocusFilterForeign {
    Q_GADGET
    QML_FOREIGN(FocusFilter)
    QML_NAMED_ELEMENT(FocusFilter)
    QML_UNCREATABLE("made by the application")
};

struct ShopForeign {
    Q_GADGET
    QML_FOREIGN(Shop)
    QML_NAMED_ELEMENT(Shop)
    QML_UNCREATABLE("made by the application")
};

struct DisplaysForeign {
    Q_GADGET
    QML_FOREIGN(Displays)
    QML_NAMED_ELEMENT(Displays)
    QML_UNCREATABLE("made by the application")
};

struct FavouritesForeign {
    Q_GADGET
    QML_FOREIGN(Favourites)
    QML_NAMED_ELEMENT(Favourites)
    QML_UNCREATABLE("made by the application")
};

struct ShuffleForeign {
    Q_GADGET
    QML_FOREIGN(Shuffle)
    QML_NAMED_ELEMENT(Shuffle)
    QML_UNCREATABLE("made by the application")
};

struct LoginItemForeign {
    Q_GADGET
    QML_FOREIGN(LoginItem)
    QML_NAMED_ELEMENT(LoginItem)
    QML_UNCREATABLE("made by the application")
};
