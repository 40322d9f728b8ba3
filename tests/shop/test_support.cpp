#include "test_support.h"

#include <QJsonObject>
#include <QTcpSocket>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace
{
DevShop::Options withSampleContent(DevShop::Options options, const QString &stateDir)
{
    options.contentDir = QStringLiteral(QUENNET_DEVSHOP_CONTENT);
    options.stateDir = stateDir;
    return options;
}
} // namespace

TestShop::TestShop(DevShop::Options options, const QString &stateDir)
    : m_ownState(stateDir.isEmpty() ? std::optional<QTemporaryDir>(std::in_place) : std::nullopt)
    , m_shop(withSampleContent(std::move(options), m_ownState ? m_ownState->path() : stateDir))
{
    m_running = m_shop.start();
}

QUrl TestShop::baseOnLocalhost() const
{
    auto url = base();
    url.setHost(u"localhost"_s);
    return url;
}

int TestShop::requests(const QString &endpoint) const
{
    const auto counts = m_shop.stats().value("requests"_L1).toObject();
    return counts.value(base().path() + u'/' + endpoint).toInt();
}

QString TestShop::issueToken()
{
    const auto token = m_shop.issueToken();
    recordToken(token);
    return token;
}

QCoro::Task<bool> TestClock::sleep(std::shared_ptr<CancelToken> token,
                                   std::chrono::milliseconds duration)
{
    m_sleeps.append(duration);
    m_sinceBoot += duration;
    m_now = m_now.addMSecs(duration.count());
    if (m_onSleep)
        m_onSleep(duration);
    // Still a trip through the event loop, as a real sleep is.
    return Clock::sleep(std::move(token), 0ms);
}

void TestClock::setOnSleep(std::function<void(std::chrono::milliseconds)> onSleep)
{
    m_onSleep = std::move(onSleep);
}

void recordToken(const QString &token)
{
    const auto path = qEnvironmentVariable("QUENNET_TEST_TOKENS");
    if (path.isEmpty())
        return;
    QFile file(path);
    if (file.open(QIODevice::Append))
        file.write(token.toUtf8() + '\n');
}

std::optional<QByteArray> StandInServer::Request::header(QByteArrayView name) const
{
    for (const auto &[key, value] : headers) {
        if (key == name.toByteArray().toLower())
            return value;
    }
    return std::nullopt;
}

StandInServer::StandInServer(QObject *parent)
    : QObject(parent)
{
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (auto *socket = m_server.nextPendingConnection())
            serve(socket);
    });
}

QUrl StandInServer::base() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/api/app/v1").arg(m_server.serverPort()));
}

void StandInServer::enqueue(Reply reply)
{
    m_replies.append(std::move(reply));
}

void StandInServer::serve(QTcpSocket *socket)
{
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer = QByteArray()]() mutable {
        buffer += socket->readAll();
        const auto headEnd = buffer.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return;
        Request request;
        const auto lines = buffer.left(headEnd).split('\n');
        const auto requestLine = lines.value(0).trimmed().split(' ');
        request.method = requestLine.value(0);
        request.path = requestLine.value(1);
        qsizetype length = 0;
        for (const auto &line : lines.mid(1)) {
            const auto colon = line.indexOf(':');
            const auto name = line.left(colon).trimmed().toLower();
            const auto value = line.mid(colon + 1).trimmed();
            request.headers.append({ name, value });
            if (name == "content-length")
                length = value.toLongLong();
        }
        if (buffer.size() < headEnd + 4 + length)
            return;
        request.body = buffer.mid(headEnd + 4, length);
        m_requests.append(request);

        const Reply reply = m_replies.isEmpty() ? Reply { .status = 500 } : m_replies.takeFirst();
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
}
