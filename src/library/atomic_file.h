#pragma once

#include <QFileDevice>

// Writes a file whole or not at all: readers see the old content or the new, never a part.
// Creates the folder first. Unbuffered, because a buffered QSaveFile commits a short write
// (a full disk) as success. permissions, when given, apply before the first byte goes in.
[[nodiscard]] bool writeAtomically(const QString &path, const QByteArray &bytes,
                                   QFileDevice::Permissions permissions = {});
