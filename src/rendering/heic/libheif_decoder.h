#pragma once

#include "heic_decoder.h"

#include <QByteArray>
#include <QList>

struct heif_context;

// One HEIC file read with libheif.
class LibheifFile final : public HeicFile {
public:
    // Null when the file cannot be read or holds no picture.
    [[nodiscard]] static std::unique_ptr<LibheifFile> open(const QString &path);
    ~LibheifFile() override;

    [[nodiscard]] int pictureCount() const override { return int(m_pictures.size()); }
    [[nodiscard]] int primaryIndex() const override { return m_primary; }
    [[nodiscard]] HeicMetadata metadata() const override;
    [[nodiscard]] QImage picture(int index) const override;
    [[nodiscard]] QImage thumbnail(int index) const override;

    // The XMP packet of the primary picture; empty when it has none.
    [[nodiscard]] QByteArray xmp() const;

private:
    LibheifFile() = default;

    std::unique_ptr<heif_context, void (*)(heif_context *)> m_context { nullptr, nullptr };
    QList<quint32> m_pictures; // libheif item ids
    int m_primary = 0;
};

// The decoder the HEIC module holds. Tests and benchmarks link it directly.
class LibheifDecoder : public HeicDecoder {
public:
    [[nodiscard]] std::unique_ptr<HeicFile> open(const QString &path) const override
    {
        return LibheifFile::open(path);
    }
    [[nodiscard]] bool isAvailable() const override { return true; }
};
