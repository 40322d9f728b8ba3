#include "network_error.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

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
    return { reply.error(), message };
}

NetworkError NetworkError::timedOut()
{
    return { QNetworkReply::TimeoutError,
             QCoreApplication::translate("NetworkError", "Nothing arrived for 60 seconds.") };
}

NetworkError NetworkError::tooLarge(qint64 maxBytes)
{
    return { QNetworkReply::UnknownContentError,
             QCoreApplication::translate("NetworkError",
                                         "The shop sent more than %1 MB at once, more than "
                                         "Quennet reads.")
                 .arg(maxBytes / (qint64(1024) * 1024)) };
}

bool NetworkError::isUnreachable() const
{
    // Qt numbers the failures of the connection itself below 100, and the proxy's below 200.
    return m_code != QNetworkReply::NoError && m_code != QNetworkReply::OperationCanceledError
        && m_code < QNetworkReply::ContentAccessDenied;
}
