#pragma once

#include "account.h"
#include "app_delegate.h"
#include "art_cache.h"
#include "displays.h"
#include "favourites.h"
#include "feedback_sounds.h"
#include "focus_filter.h"
#include "greeting.h"
#include "library_status.h"
#include "login_item.h"
#include "notice_presenter.h"
#include "session_actions.h"
#include "shop.h"
#include "shuffle.h"
#include "shuffle_view.h"
#include "spaces_helper.h"
#include "wallpaper_actions.h"

#include <QtQmlIntegration>

// The application's types as the views see them; the application knows nothing of QML.
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

struct AppDelegateForeign {
    Q_GADGET
    QML_FOREIGN(AppDelegate)
    QML_NAMED_ELEMENT(AppDelegate)
    QML_UNCREATABLE("made by the application")
};

struct ArtCacheForeign {
    Q_GADGET
    QML_FOREIGN(ArtCache)
    QML_NAMED_ELEMENT(ArtCache)
    QML_UNCREATABLE("made by the application")
};

struct FeedbackSoundsForeign {
    Q_GADGET
    QML_FOREIGN(FeedbackSounds)
    QML_NAMED_ELEMENT(FeedbackSounds)
    QML_UNCREATABLE("made by the application")
};

struct GreetingForeign {
    Q_GADGET
    QML_FOREIGN(Greeting)
    QML_NAMED_ELEMENT(Greeting)
    QML_UNCREATABLE("made by the application")
};

struct LibraryStatusForeign {
    Q_GADGET
    QML_FOREIGN(LibraryStatus)
    QML_NAMED_ELEMENT(LibraryStatus)
    QML_UNCREATABLE("made by the application")
};

struct NoticePresenterForeign {
    Q_GADGET
    QML_FOREIGN(NoticePresenter)
    QML_NAMED_ELEMENT(NoticePresenter)
    QML_UNCREATABLE("made by the application")
};

struct SessionActionsForeign {
    Q_GADGET
    QML_FOREIGN(SessionActions)
    QML_NAMED_ELEMENT(SessionActions)
    QML_UNCREATABLE("made by the application")
};

struct ShuffleViewForeign {
    Q_GADGET
    QML_FOREIGN(ShuffleView)
    QML_NAMED_ELEMENT(ShuffleView)
    QML_UNCREATABLE("made by the application")
};

struct WallpaperActionsForeign {
    Q_GADGET
    QML_FOREIGN(WallpaperActions)
    QML_NAMED_ELEMENT(WallpaperActions)
    QML_UNCREATABLE("made by the application")
};
