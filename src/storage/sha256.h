#pragma once

#include <QString>
#include <memory>

struct evp_md_ctx_st;

// A SHA-256 digest through OpenSSL's EVP, fed piece by piece: a download hashes each block as it
// writes it, so that verifying it needs no second pass over the file.
class Sha256 {
public:
    Sha256();
    ~Sha256();
    Sha256(Sha256 &&other) noexcept;
    Sha256 &operator=(Sha256 &&other) noexcept;

    void add(const char *data, qint64 size);
    // The first `bytes` bytes of a file (all of it when negative), read in 1 MiB chunks. False
    // when the file cannot be read that far.
    bool addFile(const QString &path, qint64 bytes = -1);
    // Lowercase hexadecimal. Ends the digest.
    [[nodiscard]] QString hex();

private:
    struct Free {
        void operator()(evp_md_ctx_st *context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
};
