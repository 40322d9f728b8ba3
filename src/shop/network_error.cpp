#include "network_error.h"

NetworkError::NetworkError(QNetworkReply::NetworkError code, QString message)
    : m_code(code)
    , m_message(std::move(message))
{
}

NetworkError NetworkError::fromReply(const QNetworkReply &reply)
{
    auto message = reply.errorString();
    const auto url = reply.url();
    if (url.hasQuery())
        message.replace(url.toString(), url.toString(QUrl::RemoveQuery));
    return NetworkError(reply.error(), message);
}
