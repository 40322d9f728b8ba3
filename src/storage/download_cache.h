#pragma once

#include <QString>
#include <functional>

struct WallpaperFile;

// Where downloaded wallpapers live in the application folder, which of them are installed, how
// much room they take, and removing them while keeping what must stay.
class DownloadCache {
public:
    // One verified wallpaper file found on disk.
    struct InstalledFile {
        QString path;
        QString key; // the store's file key
        QString id;

        bool operator==(const InstalledFile &) const = default;
    };

    explicit DownloadCache(QString root);

    [[nodiscard]] QString root() const { return m_root; }
    [[nodiscard]] QString wallpaperFolder() const;
    [[nodiscard]] QString shopCachePath() const;
    [[nodiscard]] QString renderingFolder() const;

    // Pure computations: nothing is read or created.
    [[nodiscard]] QString localPath(const WallpaperFile &file) const;
    [[nodiscard]] QString partialPath(const WallpaperFile &file) const;
    [[nodiscard]] static QString validatorPath(const QString &partialPath);
    // The key under which the store tracks a file's download: its path below the wallpaper folder.
    [[nodiscard]] static QString fileKey(const WallpaperFile &file);

    [[nodiscard]] QList<InstalledFile> installedFiles() const;
    [[nodiscard]] qint64 downloadedSize() const;

    // Deletes every installed file that keep() does not claim with the renderings made of it,
    // leftover partial downloads, and pack folders left empty. Only call it while no download
    // runs.
    void removeDownloads(const std::function<bool(const QString &path)> &keep) const;

private:
    QString m_root;
};
