#pragma once

#include <QUrl>

// Where the bytes of a file or archive come from.
class FileSource {
public:
    enum class Kind {
        Local, // a path resolved against a base location
        Public, // fetched directly from its URL
        Shop, // fetched through a short-lived signed link from the shop
    };

    [[nodiscard]] static FileSource local(const QUrl &url) { return { Kind::Local, url }; }
    [[nodiscard]] static FileSource publicUrl(const QUrl &url) { return { Kind::Public, url }; }
    [[nodiscard]] static FileSource shop() { return { Kind::Shop, {} }; }

    [[nodiscard]] Kind kind() const { return m_kind; }
    // Empty for Kind::Shop.
    [[nodiscard]] QUrl url() const { return m_url; }

    bool operator==(const FileSource &) const = default;

private:
    FileSource(Kind kind, QUrl url)
        : m_kind(kind)
        , m_url(std::move(url))
    {
    }

    Kind m_kind;
    QUrl m_url;
};

[[nodiscard]] size_t qHash(const FileSource &source, size_t seed = 0);
