#pragma once

#include <QJsonObject>
#include <QString>
#include <QUrl>
#include <chrono>
#include <memory>
#include <thread>

namespace httplib {
class SSLServer;
} // namespace httplib

class ShopState;

// The development shop in-process: the shop's whole HTTPS API on 127.0.0.1, served on its own
// threads from a folder of sample content, with its certificates and secrets in a state folder.
// Tests start one per case on port 0; `quennet-devshop serve` is a thin wrapper around it.
class DevShop {
public:
    struct Options {
        QString contentDir;
        QString stateDir;
        quint16 port = 0; // 0 picks a free one
        int pollInterval = 5; // seconds, the device code's "interval"
        int codeLifetime = 900; // seconds, the device code's "expires_in"
        int linkLifetime = 600; // seconds a download link stays valid
    };

    explicit DevShop(Options options);
    ~DevShop();

    DevShop(const DevShop &) = delete;
    DevShop &operator=(const DevShop &) = delete;

    // Listens on 127.0.0.1 and writes "ca.pem", "port" and "admin-secret" into the state folder.
    // False, with a log line, when the content, the certificates or the port are unusable.
    bool start();
    void stop();

    [[nodiscard]] quint16 port() const { return m_port; }
    // https://127.0.0.1:PORT/api/app/v1
    [[nodiscard]] QUrl baseUrl() const;
    [[nodiscard]] QString caPath() const { return m_caPath; }
    [[nodiscard]] QString adminSecret() const { return m_adminSecret; }

    // What the approval page's Approve does; false for an unknown, decided or expired code.
    bool approve(const QString &userCode);
    // The document of POST /_devshop/faults; false, changing nothing, when it is not valid.
    bool setFaults(const QJsonObject &faults);
    // As GET /_devshop/stats: {"requests": {"PATH": COUNT, …}}
    [[nodiscard]] QJsonObject stats() const;
    // A valid access token of the sample account, without the device-code sign-in.
    [[nodiscard]] QString issueToken();
    // Moves the shop's clock on, so codes and links expire without waiting.
    void advanceClock(std::chrono::seconds by);

private:
    Options m_options;
    std::unique_ptr<ShopState> m_state;
    std::unique_ptr<httplib::SSLServer> m_server;
    std::thread m_thread;
    quint16 m_port = 0;
    QString m_caPath;
    QString m_adminSecret;
};
