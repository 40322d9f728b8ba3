#pragma once

#include "sample_catalogue.h"
#include "sample_content.h"

#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <functional>

// The per-device zip archives of the sample packs: the pack's HEIC files for "mac", pictures
// shaped for the screen for the other devices. Zipped with the zip tool once the members exist.
class SampleArchives {
public:
    void addMacFile(const QString &pack, const QString &file);
    // Lists a pack's archives (without sizes yet) and adds the jobs that draw their pictures.
    [[nodiscard]] QJsonArray plan(const QDir &dir, const SampleCatalogue::Pack &pack,
                                  SampleContent::Size size, QList<std::function<bool()>> &jobs);
    [[nodiscard]] bool make() const;

private:
    struct Archive {
        QString path;
        QString staging; // the folder of its members; empty for the Mac archive
        QString pack;
    };

    QHash<QString, QStringList> m_macFiles;
    QList<Archive> m_archives;
};
