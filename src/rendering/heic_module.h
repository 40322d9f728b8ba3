#pragma once

#include "heic_decoder.h"
#include "module_folders.h"

#include <QStringList>
#include <mutex>

// The HEIC decoder from its module (quennet-heic.so), loaded at the first file opened: libheif
// and its codecs cost every start about 10 ms and 2 MiB, and a start at login may read no HEIC
// file at all. Without the module no file opens, and that is logged once.
class HeicModule final : public HeicDecoder {
public:
    // folders: where to look, in order.
    explicit HeicModule(QStringList folders = moduleFolders());

    [[nodiscard]] std::unique_ptr<HeicFile> open(const QString &path) const override;
    [[nodiscard]] bool isAvailable() const override;

private:
    [[nodiscard]] const HeicDecoder *loaded() const;

    QStringList m_folders;
    mutable std::once_flag m_loading;
    mutable const HeicDecoder *m_decoder = nullptr;
};
