#include "error.h"

QString describe(const std::exception &error)
{
    if (const auto *known = dynamic_cast<const Error *>(&error))
        return known->description();
    return QString::fromUtf8(error.what());
}

const char *Error::what() const noexcept
{
    m_what = description().toUtf8();
    return m_what.constData();
}

DecodingError::DecodingError(QString description)
    : m_description(std::move(description))
{
}
