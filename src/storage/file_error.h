#pragma once

#include "error.h"

// A file that could not be created, written, moved or read, with the system's reason.
class FileError : public Error {
public:
    FileError(QString path, QString reason);

    [[nodiscard]] QString description() const override;

    bool operator==(const FileError &other) const
    {
        return m_path == other.m_path && m_reason == other.m_reason;
    }

private:
    QString m_path;
    QString m_reason;
};
