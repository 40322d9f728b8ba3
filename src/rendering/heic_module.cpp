#include "heic_module.h"

#include "logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

using namespace Qt::Literals::StringLiterals;

HeicModule::HeicModule(QStringList folders)
    : m_folders(std::move(folders))
{
}

std::unique_ptr<HeicFile> HeicModule::open(const QString &path) const
{
    const HeicDecoder *decoder = loaded();
    return decoder ? decoder->open(path) : nullptr;
}

bool HeicModule::isAvailable() const
{
    return loaded();
}

const HeicDecoder *HeicModule::loaded() const
{
    std::call_once(m_loading, [this] {
        QStringList failures;
        for (const QString &folder : m_folders) {
            const QString path = QDir(folder).filePath(u"quennet-heic.so"_s);
            if (!QFile::exists(path))
                continue;
            QPluginLoader loader(path);
            // A missing symbol fails the load here, not as a crash at the first decode.
            loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
            QObject *root = loader.instance();
            if (const auto *decoder = qobject_cast<HeicDecoder *>(root)) {
                // The worker thread that loads it may end before the program does.
                if (QCoreApplication::instance())
                    root->moveToThread(QCoreApplication::instance()->thread());
                qCDebug(lcRendering) << "HEIC decoder from" << path;
                m_decoder = decoder;
                return;
            }
            failures.append(root ? path + u": not a HEIC decoder"_s : loader.errorString());
        }
        if (failures.isEmpty())
            failures.append(u"quennet-heic.so is in none of "_s + m_folders.join(u", "_s));
        qCWarning(lcRendering).noquote()
            << "HEIC files cannot be read, no decoder:" << failures.join(u"; "_s);
    });
    return m_decoder;
}
