#pragma once

#include <QLoggingCategory>

// The shuffle's log: its schedule and its picks.
Q_DECLARE_LOGGING_CATEGORY(lcShuffle)
