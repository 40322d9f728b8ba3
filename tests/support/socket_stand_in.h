#pragma once

#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <functional>
#include <optional>

// A local socket server on the test's own thread, so that a client waiting on its socket would
// never hear it. Each request is answered a little later, or never, or the connection is closed
// at once, as `manner` says.
class SocketStandIn : public QLocalServer {
public:
    enum class Manner { Answers, Silent, Closes };
    // Takes a request off the socket: the reply, or nothing while the request is not whole. A
    // server without one only listens.
    using Answer = std::function<std::optional<QByteArray>(QLocalSocket &socket)>;

    SocketStandIn(const QString &path, Answer answer, bool closesAfterReply = false)
        : m_answer(std::move(answer))
        , m_closesAfterReply(closesAfterReply)
    {
        listen(path);
        connect(this, &QLocalServer::newConnection, this, &SocketStandIn::accept);
    }

    // Sends every connection the same bytes unasked, as events.
    void sendToAll(const QByteArray &bytes)
    {
        for (QLocalSocket *socket : findChildren<QLocalSocket *>())
            socket->write(bytes);
    }

    Manner manner = Manner::Answers;

private:
    void accept()
    {
        while (QLocalSocket *socket = nextPendingConnection()) {
            if (manner == Manner::Closes)
                socket->disconnectFromServer();
            if (manner == Manner::Answers && m_answer)
                connect(socket, &QLocalSocket::readyRead, this, [this, socket] { answer(socket); });
        }
    }

    void answer(QLocalSocket *socket)
    {
        const std::optional<QByteArray> reply = m_answer(*socket);
        if (!reply)
            return;
        QTimer::singleShot(50, socket, [this, socket, reply = *reply] {
            socket->write(reply);
            if (m_closesAfterReply)
                socket->disconnectFromServer();
        });
    }

    Answer m_answer;
    bool m_closesAfterReply;
};
