#pragma once

#include <QHash>
#include <QJsonObject>
#include <QStringList>

// One answer as curl saw it.
struct CurlReply {
    int exitCode = -1; // curl's own: 0, or 18 for a short body, 28 for a time-out, …
    int status = 0;
    QHash<QString, QString> headers; // of the last response, names in lower case
    QByteArray body;

    [[nodiscard]] QString header(const QString &name) const
    {
        return headers.value(name.toLower());
    }
    [[nodiscard]] QJsonObject json() const;
};

// The curl program as an independent client of the development shop: it trusts the shop's
// authority and nothing else.
class Curl {
public:
    explicit Curl(QString caPath);

    [[nodiscard]] CurlReply get(const QString &url, const QStringList &headers = {},
                                const QStringList &options = {}) const;
    [[nodiscard]] CurlReply post(const QString &url, const QJsonObject &body,
                                 const QStringList &headers = {}) const;
    [[nodiscard]] CurlReply run(const QStringList &arguments) const;

private:
    QString m_caPath;
};
