#include "module_folders.h"

#include <QCoreApplication>

QStringList moduleFolders()
{
    return { QCoreApplication::applicationDirPath(), QStringLiteral(QUENNET_MODULE_DIR) };
}
