#pragma once

#include "content_store.h"
#include "device_grant.h"
#include "fault_switches.h"
#include "link_signer.h"
#include "shop_clock.h"

#include <QJsonObject>
#include <atomic>
#include <mutex>

// Everything the shop's request handlers share. Handlers run on the server's threads: each
// member guards itself, or is immutable.
class ShopState {
public:
    struct Settings {
        quint16 port = 0;
        int linkLifetime = 600;
        DeviceGrant::Settings grant;
    };

    ShopState(ContentStore content, Settings settings, QString adminSecret);

    [[nodiscard]] const ContentStore &content() const { return m_content; }
    [[nodiscard]] ShopClock &clock() { return m_clock; }
    [[nodiscard]] DeviceGrant &grant() { return m_grant; }
    [[nodiscard]] FaultSwitches &faults() { return m_faults; }
    [[nodiscard]] const LinkSigner &signer() const { return m_signer; }
    [[nodiscard]] const QString &adminSecret() const { return m_adminSecret; }
    [[nodiscard]] quint16 port() const { return m_settings.port; }
    [[nodiscard]] int linkLifetime() const { return m_settings.linkLifetime; }

    [[nodiscard]] int libraryRevision() const { return m_libraryRevision; }
    // Replaces the fault switches, and changes the library when the document asks for it.
    // Answers what is wrong with a bad document, or an empty string.
    [[nodiscard]] QString setFaults(const QJsonObject &document);

    // Files changed under their ids by "changeFile": the digest of their new bytes, by id.
    [[nodiscard]] QHash<QString, QString> changedFiles() const;
    [[nodiscard]] bool isChanged(const QString &id) const;

    // Slow transfers give up when the server stops.
    [[nodiscard]] bool isStopping() const { return m_stopping; }
    void setStopping() { m_stopping = true; }

    // range: the request's Range header, if it had one.
    void count(const QString &path, const QString &range = {});
    // Body bytes a file's transfers have sent, cut ones included.
    void countSent(const QString &path, qint64 bytes);
    // {"requests": {"PATH": COUNT, …}, "ranges": {"PATH": [RANGE, …]}, "sent": {"PATH": BYTES, …}}
    [[nodiscard]] QJsonObject stats() const;

private:
    ContentStore m_content;
    Settings m_settings;
    QString m_adminSecret;
    ShopClock m_clock;
    DeviceGrant m_grant;
    FaultSwitches m_faults;
    LinkSigner m_signer;
    std::atomic<int> m_libraryRevision { 0 };
    std::atomic<bool> m_stopping { false };
    mutable std::mutex m_changedMutex;
    QHash<QString, QString> m_changed;
    mutable std::mutex m_statsMutex;
    QHash<QString, int> m_requests;
    QHash<QString, QStringList> m_ranges;
    QHash<QString, qint64> m_sent;
};
