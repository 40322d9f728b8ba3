#include "test_support.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

void recordToken(const QString &token)
{
    QFile file(qEnvironmentVariable("QUENNET_TEST_TOKENS"));
    if (!file.fileName().isEmpty() && file.open(QIODevice::Append))
        file.write(token.toUtf8() + '\n');
}

QJsonObject statusFault(const char *endpoint, int status, const char *error, int times)
{
    QJsonObject fault { { u"endpoint"_s, QLatin1StringView(endpoint) },
                        { u"status"_s, status },
                        { u"times"_s, times } };
    if (error)
        fault.insert(u"error"_s, QLatin1StringView(error));
    return { { u"statuses"_s, QJsonArray { fault } } };
}

QUrl withClosedPort(QUrl url)
{
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    url.setPort(closed.serverPort());
    return url;
}

bool lockSecretStore()
{
    auto lock =
        QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                       u"org.freedesktop.Secret.Service"_s, u"Lock"_s);
    lock << QVariant::fromValue(
        QList { QDBusObjectPath(u"/org/freedesktop/secrets/collection/login"_s) });
    return QDBusConnection::sessionBus().call(lock).type() == QDBusMessage::ReplyMessage;
}

std::optional<QByteArray> StandInServer::Request::header(const QByteArray &name) const
{
    for (const auto &line : head.split('\n')) {
        const auto colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name.toLower())
            return line.mid(colon + 1).trimmed();
    }
    return std::nullopt;
}

StandInServer::StandInServer(const QString &shopState, QObject *parent)
    : QObject(parent)
    , m_tls(!shopState.isEmpty())
    , m_server(m_tls ? std::unique_ptr<QTcpServer>(new QSslServer) : std::make_unique<QTcpServer>())
{
    if (m_tls) {
        auto tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate::fromPath(shopState + u"/server.pem"_s).value(0));
        QFile key(shopState + u"/server-key.pem"_s);
        if (key.open(QIODevice::ReadOnly))
            tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        static_cast<QSslServer *>(m_server.get())->setSslConfiguration(tls);
    }
    m_server->listen(QHostAddress::LocalHost);
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        auto *socket = m_server->nextPendingConnection();
        connect(
            socket, &QTcpSocket::readyRead, this, [this, socket, data = QByteArray()]() mutable {
                data += socket->readAll();
                const auto headEnd = data.indexOf("\r\n\r\n");
                const Request request { data.left(headEnd), data.mid(headEnd + 4) };
                const auto length = request.header("Content-Length").value_or("0").toLongLong();
                if (headEnd < 0 || request.body.size() < length)
                    return;
                m_requests.append(request);
                const auto reply =
                    m_replies.isEmpty() ? Reply { .status = 500 } : m_replies.takeFirst();
                if (reply.hold)
                    return;
                QByteArray response = "HTTP/1.1 " + QByteArray::number(reply.status) + " Reply\r\n";
                for (const auto &[name, value] : reply.headers)
                    response += name + ": " + value + "\r\n";
                response += "Content-Length: " + QByteArray::number(reply.body.size())
                    + "\r\nConnection: close\r\n\r\n" + reply.body;
                socket->write(response);
                socket->disconnectFromHost();
            });
    });
}

QUrl StandInServer::base() const
{
    return QUrl(u"%1://127.0.0.1:%2/api/app/v1"_s.arg(m_tls ? u"https"_s : u"http"_s)
                    .arg(m_server->serverPort()));
}
