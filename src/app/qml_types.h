#pragma once

#include "account.h"

#include <QtQmlIntegration>

// The lower layers' types as the views see them; those layers know nothing of QML.
struct AccountForeign {
    Q_GADGET
    QML_FOREIGN(Account)
    QML_NAMED_ELEMENT(Account)
    QML_UNCREATABLE("made by the application")
};
