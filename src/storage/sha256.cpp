#include "sha256.h"

#include <QFile>
#include <openssl/evp.h>

namespace {
constexpr qint64 chunk = qint64(1024) * 1024;
} // namespace

void Sha256::Free::operator()(evp_md_ctx_st *context) const
{
    EVP_MD_CTX_free(context);
}

Sha256::Sha256()
    : m_context(EVP_MD_CTX_new())
{
    if (!m_context || EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) != 1)
        qFatal("OpenSSL has no SHA-256");
}

Sha256::~Sha256() = default;
Sha256::Sha256(Sha256 &&) noexcept = default;
Sha256 &Sha256::operator=(Sha256 &&) noexcept = default;

void Sha256::add(const char *data, qint64 size)
{
    EVP_DigestUpdate(m_context.get(), data, size_t(size));
}

bool Sha256::addFile(const QString &path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray buffer(chunk, Qt::Uninitialized);
    qint64 left = bytes < 0 ? file.size() : bytes;
    while (left > 0) {
        const qint64 read = file.read(buffer.data(), std::min(chunk, left));
        if (read <= 0)
            return false;
        add(buffer.constData(), read);
        left -= read;
    }
    return true;
}

QString Sha256::hex()
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_context.get(), digest, &length);
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex());
}
