#include "error.h"

const char *Error::what() const noexcept
{
    m_what = description().toUtf8();
    return m_what.constData();
}

DecodingError::DecodingError(QString description)
    : m_description(std::move(description))
{
}
