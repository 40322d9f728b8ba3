#include "cancel_token.h"

CancelToken::CancelToken(QObject *parent)
    : QObject(parent)
{
}

void CancelToken::cancel()
{
    if (m_cancelled)
        return;
    m_cancelled = true;
    Q_EMIT cancelled();
}
