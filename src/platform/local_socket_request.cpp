#include "local_socket_request.h"

#include "desktop_backend.h"

#include <QCoreApplication>
#include <QCoroLocalSocket>
#include <QDeadlineTimer>
#include <QLocalSocket>

using namespace Qt::Literals::StringLiterals;

namespace {
DesktopError timedOut(const QString &who, std::chrono::milliseconds timeout)
{
    return DesktopError(
        u"%1 did not answer within %2 seconds."_s.arg(who).arg(double(timeout.count()) / 1000));
}

std::chrono::milliseconds remaining(const QDeadlineTimer &deadline)
{
    return std::chrono::milliseconds(std::max<qint64>(deadline.remainingTime(), 0));
}
} // namespace

QCoro::Task<QByteArray> localSocketRequest(QString socket, QByteArray request, QString who,
                                           std::chrono::milliseconds timeout,
                                           std::function<bool(const QByteArray &)> isWhole)
{
    const QDeadlineTimer deadline(timeout);
    QLocalSocket connection;
    connection.connectToServer(socket);
    // A local connection fails at once when nothing listens; QCoro would wait out the timeout
    // for a failure that has already happened.
    if (connection.state() == QLocalSocket::UnconnectedState)
        throw DesktopError(
            QCoreApplication::translate("DesktopError", "Cannot reach %1: nothing answers at %2.")
                .arg(who, socket));
    if (!co_await qCoro(connection).waitForConnected(remaining(deadline)))
        throw timedOut(who, timeout);
    connection.write(request);
    QByteArray answer;
    for (;;) {
        if (connection.bytesAvailable() > 0)
            answer += connection.readAll();
        if (isWhole && isWhole(answer))
            co_return answer;
        // Once closed, QCoro reports data ready at once and for ever.
        if (connection.state() != QLocalSocket::ConnectedState)
            break;
        if (deadline.hasExpired())
            throw timedOut(who, timeout);
        co_await qCoro(connection).waitForReadyRead(remaining(deadline));
    }
    if (isWhole || answer.isEmpty())
        throw DesktopError(u"%1 closed the connection without answering."_s.arg(who));
    co_return answer;
}
