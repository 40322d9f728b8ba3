#pragma once

#include <QString>
#include <QUrl>

// The one status line the panel shows about the shop's background work.
class Notice {
public:
    enum class Kind { Downloading, Saved, Failed };

    [[nodiscard]] static Notice downloading(int count, double fraction);
    [[nodiscard]] static Notice saved(const QUrl &file);
    [[nodiscard]] static Notice failed(const QString &message);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] double fraction() const { return m_fraction; }
    [[nodiscard]] QUrl url() const { return m_url; }
    [[nodiscard]] QString message() const { return m_message; }

    // Tells a new notice from an update of the one shown: progress keeps the same identifier.
    [[nodiscard]] QString identifier() const;

    bool operator==(const Notice &) const = default;

private:
    explicit Notice(Kind kind)
        : m_kind(kind)
    {
    }

    Kind m_kind;
    int m_count = 0;
    double m_fraction = 0;
    QUrl m_url;
    QString m_message;
};
