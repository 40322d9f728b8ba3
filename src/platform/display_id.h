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

// What a person calls the display: its make and model, else its connector.
[[nodiscard]] QString displayName(const DesktopScreen &screen);
