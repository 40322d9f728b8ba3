#include "file_error.h"

using namespace Qt::Literals::StringLiterals;

FileError::FileError(QString path, QString reason)
    : m_path(std::move(path))
    , m_reason(std::move(reason))
{
}

QString FileError::description() const
{
    return u"Couldn't write %1: %2"_s.arg(m_path, m_reason);
}
