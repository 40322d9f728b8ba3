#include "application_folder.h"

#include <QStandardPaths>

QString applicationFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/'
        + QLatin1StringView(bundleIdentifier);
}
