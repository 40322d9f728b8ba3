#include "shuffle_displays.h"

#include <QFileInfo>

ShuffleDisplays::ShuffleDisplays(QObject *parent)
    : QObject(parent)
{
}

bool ShuffleDisplays::canRestore(const QString &path,
                                 const std::optional<Placement> & /*placement*/) const
{
    return !path.isEmpty() && QFileInfo::exists(path);
}
