#include "views_module.h"

#include "logging.h"
#include "module_folders.h"

#include <QFileInfo>
#include <QPluginLoader>

using namespace Qt::Literals::StringLiterals;

std::unique_ptr<Views> ViewsModule::load()
{
    QString path;
    for (const QString &folder : moduleFolders()) {
        path = folder + u"/quennet-views.so"_s;
        if (QFileInfo::exists(path))
            break;
    }
    QPluginLoader loader(path);
    // A symbol the module needs and the program lacks fails here, not at its first call.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    auto *factory = qobject_cast<ViewsFactory *>(loader.instance());
    if (!factory) {
        qCCritical(lcApp).noquote() << "Couldn't load the views:" << loader.errorString();
        return nullptr;
    }
    return std::unique_ptr<Views>(factory->makeViews());
}
