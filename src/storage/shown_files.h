#pragma once

#include <QString>

// What the store must ask the displays before it deletes a download (the keep rule): whether a
// display shows the file, or is about to. The placement layer implements it; the composition
// root connects the two.
class ShownFiles {
public:
    virtual ~ShownFiles() = default;

    // Whether a display shows this local file or a picture rendered from it, or a set of it is
    // under way.
    [[nodiscard]] virtual bool isShown(const QString &localPath) const = 0;
};
