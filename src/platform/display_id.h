#pragma once

#include <QList>
#include <QString>

struct DesktopScreen;

// A display's identifier that survives reconnection and restarts: a name-based UUID (version 5)
// of its EDID manufacturer, model and serial number, else of its connector name.
[[nodiscard]] QString displayId(const DesktopScreen &screen);

// The identifiers of a whole screen list: two screens that would share one (identical monitors
// without serial numbers) are told apart by their connectors.
[[nodiscard]] QList<QString> displayIds(const QList<DesktopScreen> &screens);

// What people call each display of a screen list: its make and model as the monitor reports them,
// "Built-in display" for a laptop's own panel, else its connector. Displays that would share a
// name have their connector after it.
[[nodiscard]] QList<QString> displayNames(const QList<DesktopScreen> &screens);
