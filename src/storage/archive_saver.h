#pragma once

#include "error.h"
#include "owned_pack.h"

#include <QCoroTask>
#include <QPointer>

class DownloadThread;
class Transfers;

// Saves the desktop files of a pack into the user's Downloads folder: its archives for desktops
// ("mac" on the wire), or its wallpaper files when it has none. Each lands under a name that is
// free there, and never outside the folder.
class ArchiveSaver {
public:
    // The menu item of the Linux build.
    static constexpr auto label = "Save Desktop Files to Downloads";
    static constexpr auto desktopDevice = "mac";

    // The shop gave no digest to check the archive against.
    class Unverifiable : public Error {
    public:
        [[nodiscard]] QString description() const override;
    };

    // root: the application folder, where archives wait until they are verified.
    ArchiveSaver(Transfers *transfers, DownloadThread *thread, QString root,
                 QString downloadsFolder);

    // Downloads and verifies the archive, then moves it into Downloads; returns where it went.
    // Throws Unverifiable, before any download, for an archive without a well-formed digest.
    [[nodiscard]] QCoro::Task<QString> save(Archive archive) const;
    // Copies a verified local wallpaper file into Downloads under the given name.
    [[nodiscard]] QCoro::Task<QString> copy(QString localPath, QString name) const;

    // The shop's name reduced to a safe last component; "Quennet.zip" when nothing is left.
    [[nodiscard]] static QString fileName(const Archive &archive);

private:
    QPointer<Transfers> m_transfers;
    QPointer<DownloadThread> m_thread;
    QString m_root;
    QString m_downloadsFolder;
};
