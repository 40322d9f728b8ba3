#pragma once

#include "error.h"

#include <QNetworkReply>

// A transport failure (no connection, time-out, TLS, cancellation) passed through as Qt reports
// it: its callers word it.
class NetworkError : public Error {
public:
    NetworkError(QNetworkReply::NetworkError code, QString message);

    // Qt's sentence may hold the request's address: its query (a signature) is cut out.
    [[nodiscard]] static NetworkError fromReply(const QNetworkReply &reply);
    // A body past what Quennet reads into memory, refused before or while it arrived.
    [[nodiscard]] static NetworkError tooLarge(qint64 maxBytes);
    // Nothing moved for the transfer time-out, which Qt reports as a cancellation.
    [[nodiscard]] static NetworkError timedOut();

    [[nodiscard]] QNetworkReply::NetworkError code() const { return m_code; }
    // The shop could not be reached at all: no connection, no name, no answer, no proxy.
    [[nodiscard]] bool isUnreachable() const;
    [[nodiscard]] QString description() const override { return m_message; }

    bool operator==(const NetworkError &other) const
    {
        return m_code == other.m_code && m_message == other.m_message;
    }

private:
    QNetworkReply::NetworkError m_code;
    QString m_message;
};
