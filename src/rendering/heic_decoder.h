#pragma once

#include "heic_metadata.h"

#include <QImage>
#include <QObject>
#include <memory>

class QString;

// One HEIC file: its pictures in file order, what its metadata says about them, and decoding a
// picture or its embedded thumbnail. Qt cannot read HEIC itself.
class HeicFile {
public:
    virtual ~HeicFile() = default;

    [[nodiscard]] virtual int pictureCount() const = 0;
    [[nodiscard]] virtual int primaryIndex() const = 0;
    // From the XMP packet of the primary picture; empty when it has none.
    [[nodiscard]] virtual HeicMetadata metadata() const = 0;

    // Null when index is out of range or decoding fails.
    [[nodiscard]] virtual QImage picture(int index) const = 0;
    // The thumbnail stored with a picture, far cheaper than decoding it; null when there is none.
    [[nodiscard]] virtual QImage thumbnail(int index) const = 0;
};

// Opens HEIC files, from any thread. The one that reads them lives in a module of its own
// (HeicModule), so that libheif and its codecs load only when a file is read. Defined in the
// header alone: the module needs nothing of the program that loads it.
class HeicDecoder {
public:
    virtual ~HeicDecoder() = default;

    // Null when the file cannot be read or holds no picture, and when there is no decoder.
    [[nodiscard]] virtual std::unique_ptr<HeicFile> open(const QString &path) const = 0;
    // False when files cannot be read at all: a file that does not open is then not to blame.
    [[nodiscard]] virtual bool isAvailable() const = 0;
};

// A change to these two classes changes the version, so an old module is not taken for a new one.
#define QUENNET_HEIC_DECODER_IID "app.quennet.Quennet.HeicDecoder/1"
Q_DECLARE_INTERFACE(HeicDecoder, QUENNET_HEIC_DECODER_IID)
