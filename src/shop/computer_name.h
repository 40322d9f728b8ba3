#pragma once

#include <QString>

// The name this computer goes by when it asks to be approved: the pretty host name, else the
// host name, else "Computer".
[[nodiscard]] QString computerName();

// PRETTY_HOSTNAME of a machine-info file (shell-style KEY=VALUE lines), or an empty string.
[[nodiscard]] QString prettyHostName(const QByteArray &machineInfo);
