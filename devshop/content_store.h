#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QString>
#include <optional>

// One servable file of the content folder.
struct StoredFile {
    QString id; // empty for artwork
    QString pack;
    QString path; // absolute
    QString contentType;
    qint64 bytes = 0;
    QString sha256;
};

// The sample content as the shop serves it: read once from the folder's "content.json" and
// turned into catalogue and library replies on demand. Immutable after loading, so the server's
// threads share it freely.
class ContentStore {
public:
    [[nodiscard]] static std::optional<ContentStore> load(const QString &dir);

    // The catalogue reply, with every address on the given origin ("https://host:port").
    [[nodiscard]] QJsonObject catalogue(const QString &origin) const;
    // The sample account's library reply. Each revision moves every "updatedAt" on a second;
    // digests replaces the "sha256" of files by id.
    [[nodiscard]] QJsonObject library(int revision,
                                      const QHash<QString, QString> &digests = {}) const;

    [[nodiscard]] QString email() const { return m_email; }
    [[nodiscard]] std::optional<QJsonObject> pack(const QString &slug) const;

    // A wallpaper file or archive by id.
    [[nodiscard]] const StoredFile *file(const QString &id) const;
    [[nodiscard]] bool isOwned(const StoredFile &file) const { return m_owned.contains(file.pack); }
    [[nodiscard]] bool isFree(const StoredFile &file) const { return m_free.contains(file.pack); }
    // Artwork by its path on the server ("/art/…").
    [[nodiscard]] const StoredFile *art(const QString &path) const;

private:
    ContentStore() = default;

    [[nodiscard]] bool addFiles(const QString &dir, const QString &pack, const QJsonArray &entries);

    QString m_email;
    QJsonArray m_account; // owned packs: slug and since
    QJsonArray m_phases;
    QJsonArray m_packs;
    QSet<QString> m_owned;
    QSet<QString> m_free;
    QHash<QString, StoredFile> m_files;
    QHash<QString, StoredFile> m_art;
};
