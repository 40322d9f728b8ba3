#include "sha256.h"

#include "opened_library.h"

#include <QFile>
#include <openssl/evp.h>
#include <stdexcept>
#include <string>

namespace {
constexpr qint64 chunk = qint64(1024) * 1024;

// OpenSSL's digests, opened at the first hash rather than at start: the library is large, and a
// session that downloads nothing never needs it. The shop's TLS loads the same library.
struct Crypto {
    decltype(&EVP_MD_CTX_new) newContext = nullptr;
    decltype(&EVP_MD_CTX_free) freeContext = nullptr;
    decltype(&EVP_sha256) sha256 = nullptr;
    decltype(&EVP_DigestInit_ex) init = nullptr;
    decltype(&EVP_DigestUpdate) update = nullptr;
    decltype(&EVP_DigestFinal_ex) final = nullptr;
    std::string error;

    static const Crypto &get()
    {
        static const Crypto crypto = load();
        return crypto;
    }

private:
    static Crypto load()
    {
        Crypto found;
        void *library = dlopen("libcrypto.so.3", RTLD_NOW | RTLD_LOCAL);
        if (!library) {
            found.error = dlerror();
            return found;
        }
        if (!resolveFunction(library, found.newContext, "EVP_MD_CTX_new")
            || !resolveFunction(library, found.freeContext, "EVP_MD_CTX_free")
            || !resolveFunction(library, found.sha256, "EVP_sha256")
            || !resolveFunction(library, found.init, "EVP_DigestInit_ex")
            || !resolveFunction(library, found.update, "EVP_DigestUpdate")
            || !resolveFunction(library, found.final, "EVP_DigestFinal_ex")) {
            found.error = dlerror();
            found.newContext = nullptr;
        }
        return found;
    }
};
} // namespace

void Sha256::Free::operator()(evp_md_ctx_st *context) const
{
    Crypto::get().freeContext(context);
}

Sha256::Sha256()
{
    const Crypto &crypto = Crypto::get();
    if (!crypto.newContext)
        throw std::runtime_error("SHA-256 is not available: " + crypto.error);
    m_context.reset(crypto.newContext());
    if (!m_context || crypto.init(m_context.get(), crypto.sha256(), nullptr) != 1)
        throw std::runtime_error("OpenSSL could not start a SHA-256 digest");
}

Sha256::~Sha256() = default;
Sha256::Sha256(Sha256 &&) noexcept = default;
Sha256 &Sha256::operator=(Sha256 &&) noexcept = default;

void Sha256::add(const char *data, qint64 size)
{
    Crypto::get().update(m_context.get(), data, size_t(size));
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
    Crypto::get().final(m_context.get(), digest, &length);
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex());
}
