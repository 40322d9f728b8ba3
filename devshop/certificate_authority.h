#pragma once

#include <QString>
#include <memory>
#include <optional>

struct ssl_ctx_st;
struct x509_st;
struct evp_pkey_st;

// The throwaway certificate authority of one state folder and the server certificate it signs
// for localhost, 127.0.0.1 and ::1. Clients trust the authority's "ca.pem" and nothing else.
class CertificateAuthority {
public:
    // Loads the files of an earlier start, or makes new ones when any is missing or unreadable.
    [[nodiscard]] static std::optional<CertificateAuthority> loadOrCreate(const QString &stateDir);

    // Puts the server certificate, its key and the authority into a server's TLS context.
    bool configure(ssl_ctx_st &context) const;

    [[nodiscard]] QString caPath() const { return m_caPath; }

private:
    CertificateAuthority() = default;

    [[nodiscard]] bool load();
    [[nodiscard]] bool create();

    QString m_caPath;
    QString m_stateDir;
    std::shared_ptr<x509_st> m_ca;
    std::shared_ptr<evp_pkey_st> m_caKey;
    std::shared_ptr<x509_st> m_server;
    std::shared_ptr<evp_pkey_st> m_serverKey;
};
