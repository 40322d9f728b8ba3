#pragma once

#include <QVariant>

// The value inside the variants a D-Bus reply or signal wraps it in: the portal's Read() and
// Properties.Get wrap it once more than their change signals do.
[[nodiscard]] QVariant unwrap(QVariant value);
