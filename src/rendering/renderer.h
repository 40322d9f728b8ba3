#pragma once

#include "picture_choice.h"

#include <QJsonObject>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class HeicDecoder;

// Decodes the pictures of wallpaper files into "Rendered/" in the application folder, since most
// desktops cannot show HEIC. A rendering is a JPEG, which every desktop shows, made no larger than
// the displays need. It is named after the file's id, the picture's index and, when smaller than
// the picture, its size, and is reused for as long as the file on disk stays the same and it
// covers the displays. Safe to use from worker threads.
class Renderer {
public:
    // folder: the "Rendered" folder. decoder: reads the wallpaper files; none for a renderer that
    // only names and removes renderings.
    explicit Renderer(QString folder, std::shared_ptr<const HeicDecoder> decoder = {});

    [[nodiscard]] QString folder() const { return m_folder; }
    // None when it was given none.
    [[nodiscard]] const HeicDecoder *decoder() const { return m_decoder.get(); }
    // size: empty for a rendering at the picture's own size.
    [[nodiscard]] QString renderingPath(const QString &fileId, int index, QSize size = {}) const;

    // The rendering of one picture of source that covers bounds (device pixels; empty: the
    // picture's own size), made when missing, damaged, smaller or older than source; none when
    // the picture cannot be decoded or written. A larger rendering replaces the smaller ones of
    // its picture. undecodable, when given, says whether source itself is at fault: never when
    // there is no decoder. Decoding a
    // large picture takes seconds: call it off the main thread.
    [[nodiscard]] std::optional<QString> render(const QString &source, const QString &fileId,
                                                int index, QSize bounds = {},
                                                bool *undecodable = nullptr) const;

    // What source holds: its pictures and what its metadata says about them, kept with its
    // renderings so that a file once read is not opened again (which loads the HEIC decoder).
    // None when it cannot be read.
    [[nodiscard]] std::optional<PictureChoice::Pictures> pictures(const QString &source,
                                                                  const QString &fileId) const;

    // The wallpaper file a rendering or a file made from renderings (a slideshow) belongs to;
    // none for other paths.
    [[nodiscard]] std::optional<QString> sourceOf(const QString &path) const;
    // The file id a rendering or companion file is named after.
    [[nodiscard]] static QString fileIdOf(const QString &path);
    // Where a file made from a wallpaper file's renderings goes (suffix: "xml", …).
    [[nodiscard]] QString companionPath(const QString &fileId, const QString &suffix) const;

    // Removes the renderings and companions of every wallpaper file keep() does not claim by its
    // path, and files of no wallpaper file. What a display shows may be needed again: the other
    // pictures of its file, at the next phase or the next change of scheme. What a removed
    // rendering was made of is still known while that file exists.
    void prune(const std::function<bool(const QString &source)> &keep) const;

private:
    // A whole rendering of the picture that covers bounds; damaged ones are removed.
    [[nodiscard]] std::optional<QString> covering(const QString &fileId, int index,
                                                  QSize bounds) const;
    // Every rendering of the picture but keep.
    void removeOthers(const QString &fileId, int index, const QString &keep) const;
    [[nodiscard]] QString recordPath(const QString &fileId) const;
    [[nodiscard]] QJsonObject record(const QString &fileId) const;
    [[nodiscard]] std::optional<QString> sourceOfId(const QString &fileId) const;
    // Whether the renderings of fileId were made from source as it is now; when not, they are
    // removed and source is recorded in their place.
    [[nodiscard]] bool isCurrent(const QString &source, const QString &fileId) const;

    QString m_folder;
    std::shared_ptr<const HeicDecoder> m_decoder;
};
