#include "file_error.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

FileError::FileError(QString path, QString reason)
    : m_path(std::move(path))
    , m_reason(std::move(reason))
{
}

QString FileError::description() const
{
    return QCoreApplication::translate("FileError", "Couldn't write %1: %2").arg(m_path, m_reason);
}
