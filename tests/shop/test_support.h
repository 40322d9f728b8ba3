#pragma once

#include "await_task.h"
#include "error.h"
#include "shop_content.h"
#include "test_clock.h"

#include <QJsonObject>
#include <QTcpServer>
#include <optional>

// Lists a token for the token check, which looks for it in every test's output.
void recordToken(const QString &token);

// The development shop's faults: `times` replies of this status, with this error, at an endpoint.
[[nodiscard]] QJsonObject statusFault(const char *endpoint, int status, const char *error = nullptr,
                                      int times = 1);

// The address on a loopback port nobody listens on.
[[nodiscard]] QUrl withClosedPort(QUrl url);

// Locks the secret service's login collection, as a screen lock would.
bool lockSecretStore();

// A loopback HTTPS server for the few replies the development shop cannot produce: it answers
// each request with the next canned reply (or holds it), and keeps what it received. It serves
// the certificate of a development shop's state folder; without one, plain HTTP.
class StandInServer : public QObject {
    Q_OBJECT

public:
    using Headers = QList<std::pair<QByteArray, QByteArray>>;
    struct Reply {
        int status = 200;
        QByteArray body;
        Headers headers;
        bool hold = false;
    };
    struct Request {
        QByteArray head; // request line and headers, as sent
        QByteArray body;

        [[nodiscard]] std::optional<QByteArray> header(const QByteArray &name) const;
    };

    explicit StandInServer(const QString &shopState = {}, QObject *parent = nullptr);

    // https://127.0.0.1:PORT/api/app/v1
    [[nodiscard]] QUrl base() const;
    void enqueue(const Reply &reply) { m_replies.append(reply); }
    [[nodiscard]] const QList<Request> &requests() const { return m_requests; }

private:
    bool m_tls = false;
    std::unique_ptr<QTcpServer> m_server;
    QList<Reply> m_replies;
    QList<Request> m_requests;
};
