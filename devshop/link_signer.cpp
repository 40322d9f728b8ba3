#include "link_signer.h"

#include <array>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

using namespace Qt::Literals::StringLiterals;

LinkSigner::LinkSigner()
    : m_key(32, '\0')
{
    RAND_bytes(reinterpret_cast<unsigned char *>(m_key.data()), int(m_key.size()));
}

QByteArray LinkSigner::sign(const QString &id, qint64 expires) const
{
    const QByteArray message = id.toUtf8() + '|' + QByteArray::number(expires);
    std::array<unsigned char, EVP_MAX_MD_SIZE> mac {};
    size_t length = 0;
    EVP_Q_mac(nullptr, "HMAC", nullptr, "SHA256", nullptr, m_key.constData(), size_t(m_key.size()),
              reinterpret_cast<const unsigned char *>(message.constData()), size_t(message.size()),
              mac.data(), mac.size(), &length);
    return QByteArray(reinterpret_cast<const char *>(mac.data()), qsizetype(length)).toHex();
}

QString LinkSigner::query(const QString &id, qint64 expires) const
{
    return u"expires=%1&sig=%2"_s.arg(expires).arg(QString::fromLatin1(sign(id, expires)));
}

LinkSigner::Verdict LinkSigner::check(const QString &id, const QString &expires,
                                      const QString &signature, qint64 nowSeconds) const
{
    bool ok = false;
    const qint64 when = expires.toLongLong(&ok);
    const QByteArray expected = sign(id, when);
    const QByteArray given = signature.toLatin1();
    if (!ok || given.size() != expected.size()
        || CRYPTO_memcmp(given.constData(), expected.constData(), size_t(given.size())) != 0)
        return Verdict::Tampered;
    return nowSeconds > when ? Verdict::Expired : Verdict::Valid;
}
