#include "file_digest.h"

#include <QFile>
#include <memory>
#include <openssl/evp.h>

namespace FileDigest {
std::optional<QString> sha256(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          EVP_MD_CTX_free);
    EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr);
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    qint64 read = 0;
    while ((read = file.read(buffer.data(), buffer.size())) > 0)
        EVP_DigestUpdate(context.get(), buffer.constData(), size_t(read));
    if (read < 0)
        return std::nullopt;
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_DigestFinal_ex(context.get(), digest, &length);
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex());
}
} // namespace FileDigest
