#pragma once

#include <QString>
#include <functional>
#include <optional>

// Decodes the pictures of wallpaper files into "Rendered/" in the application folder, since most
// desktops cannot show HEIC. A rendering is named after the file's id and the picture's index and
// is reused for as long as the file on disk stays the same. Safe to use from worker threads.
class Renderer {
public:
    // folder: the "Rendered" folder.
    explicit Renderer(QString folder);

    [[nodiscard]] QString folder() const { return m_folder; }
    [[nodiscard]] QString renderingPath(const QString &fileId, int index) const;

    // The rendering of one picture of source, made when missing, damaged or older than source;
    // none when the picture cannot be decoded or written. undecodable, when given, says whether
    // source itself is at fault. Decoding a large picture takes seconds: call it off the main
    // thread.
    [[nodiscard]] std::optional<QString> render(const QString &source, const QString &fileId,
                                                int index, bool *undecodable = nullptr) const;

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
    [[nodiscard]] QString recordPath(const QString &fileId) const;
    [[nodiscard]] std::optional<QString> sourceOfId(const QString &fileId) const;
    // Whether the renderings of fileId were made from source as it is now; when not, they are
    // removed and source is recorded in their place.
    [[nodiscard]] bool isCurrent(const QString &source, const QString &fileId) const;

    QString m_folder;
};
