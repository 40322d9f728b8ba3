#pragma once

#include <QStringList>

// What the store tells the workspace helper: a wallpaper was just set on these displays, for it
// to keep on every workspace when the user wants that. The placement layer implements it.
class WorkspaceHelper {
public:
    virtual ~WorkspaceHelper() = default;

    virtual void wallpaperSet(const QStringList &displayIds) = 0;
};
