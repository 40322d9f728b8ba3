#pragma once

#include "account.h"
#include "focus_filter.h"
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
