#pragma once

#include "dev_shop.h"
#include "test_files.h"

#include <QJsonArray>
#include <QList>
#include <QTemporaryDir>
#include <optional>

// Content for the development shop made to measure: files of chosen sizes filled with random
// bytes, large enough to cut, resume and report progress, and archives with any names.
struct ContentFile {
    QString colourway;
    QString edition;
    qint64 bytes = 0;
    QString id; // filled in when empty
    QString sha256; // filled in
    QString copyOf; // a file whose bytes to serve instead of random ones; bytes filled in
};

struct ContentArchive {
    QString device;
    QString filename;
    qint64 bytes = 0;
    QString id;
    QString sha256;
    bool listsDigest = true;
};

struct ContentPack {
    QString slug;
    bool owned = true;
    bool free = false;
    bool released = true;
    QList<ContentFile> files;
    QList<ContentArchive> archives;
};

// Writes the packs' files and "content.json" into dir; returns the packs with ids and digests.
// No packs is one small one.
QList<ContentPack> writeContent(const QString &dir, QList<ContentPack> packs);

// A development shop on port 0 over made-to-measure content, for one test case. Shops given one
// state folder share its certificate authority, which is slow to make.
class ContentShop {
public:
    explicit ContentShop(QList<ContentPack> packs = {}, DevShop::Options options = {},
                         const QString &stateDir = {});

    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] DevShop &shop() { return *m_shop; }
    [[nodiscard]] QUrl baseUrl() const { return m_shop->baseUrl(); }
    // Where its certificates are, for a StandInServer.
    [[nodiscard]] QString stateDir() const { return m_stateDir; }
    // A token of the shop's account, listed for the token check.
    [[nodiscard]] QString issueToken();
    // The shop changes its content: stopped, given the new packs, and started again on the same
    // port with the same state, so that tokens stay valid.
    bool restart(QList<ContentPack> packs);
    [[nodiscard]] const QList<ContentPack> &packs() const { return m_packs; }

    // The bytes the shop serves for a file or archive id.
    [[nodiscard]] QByteArray bytes(const QString &id) const;
    // Its public address, for files of free packs.
    [[nodiscard]] QUrl publicUrl(const QString &id) const;
    // Requests the shop has seen for a path below the service root ("library"), or for a file
    // id's signed or public address.
    [[nodiscard]] int requests(const QString &endpoint) const;
    [[nodiscard]] int fileRequests(const QString &id) const { return int(count("requests", id)); }
    // Body bytes the shop has sent of a file, cut transfers included.
    [[nodiscard]] qint64 sent(const QString &id) const { return count("sent", id); }
    // The Range headers the file's requests carried.
    [[nodiscard]] QStringList ranges(const QString &id) const;
    bool setFaults(const char *json);

private:
    // One kind of the shop's statistics for a file's signed and public address.
    [[nodiscard]] QJsonArray fileStats(const char *kind, const QString &id) const;
    [[nodiscard]] qint64 count(const char *kind, const QString &id) const;

    QTemporaryDir m_content;
    std::optional<QTemporaryDir> m_ownState;
    QString m_stateDir;
    DevShop::Options m_options;
    QList<ContentPack> m_packs;
    std::optional<DevShop> m_shop;
    bool m_running = false;
};
