#pragma once

#include <QString>

// One Quennet per session: the first start owns the bus name app.quennet.Quennet; a later start
// hands what it was asked to do to that one, as a launcher would, and then leaves.
class SingleInstance {
public:
    // True when this process is the one instance (also when there is no session bus to ask).
    // False when another instance holds the name; it has been asked to open its main window, or
    // to run the desktop action named (such as "settings").
    [[nodiscard]] static bool claim(const QString &action = {});
};
