#pragma once

#include <QLoggingCategory>

// The Do Not Disturb watchers' log.
Q_DECLARE_LOGGING_CATEGORY(lcDoNotDisturb)
