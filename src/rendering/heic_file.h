#pragma once

#include <QByteArray>
#include <QList>
#include <memory>
#include <optional>

class QImage;
class QString;
struct heif_context;

// One HEIC file read with libheif: its pictures in file order, the XMP packet of its primary
// picture, and decoding a picture or its embedded thumbnail. Qt cannot read HEIC itself.
class HeicFile {
public:
    // None when the file cannot be read or holds no picture.
    [[nodiscard]] static std::optional<HeicFile> open(const QString &path);

    HeicFile(HeicFile &&other) noexcept;
    HeicFile &operator=(HeicFile &&other) noexcept;
    ~HeicFile();

    [[nodiscard]] int pictureCount() const { return int(m_pictures.size()); }
    [[nodiscard]] int primaryIndex() const { return m_primary; }
    // Empty when the primary picture has none.
    [[nodiscard]] QByteArray xmp() const;

    // Null when index is out of range or decoding fails.
    [[nodiscard]] QImage picture(int index) const;
    // The thumbnail stored with a picture, far cheaper than decoding it; null when there is none.
    [[nodiscard]] QImage thumbnail(int index) const;

private:
    HeicFile() = default;

    std::unique_ptr<heif_context, void (*)(heif_context *)> m_context { nullptr, nullptr };
    QList<quint32> m_pictures; // libheif item ids
    int m_primary = 0;
};
