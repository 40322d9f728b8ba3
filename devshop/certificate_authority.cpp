#include "certificate_authority.h"

#include "atomic_file.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <openssl/bn.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

Q_LOGGING_CATEGORY(lcCertificates, "app.quennet.Quennet.DevShop.Certificates")

using namespace Qt::Literals::StringLiterals;

namespace {
using Certificate = std::shared_ptr<X509>;
using Key = std::shared_ptr<EVP_PKEY>;

constexpr long day = 24 * 60 * 60;

Certificate adopt(X509 *certificate)
{
    return { certificate, X509_free };
}
Key adopt(EVP_PKEY *key)
{
    return { key, EVP_PKEY_free };
}

QString filePath(const QString &dir, const char *name)
{
    return QDir(dir).filePath(QString::fromLatin1(name));
}

template<typename T, typename Read>
std::shared_ptr<T> readPem(const QString &path, Read read, void (*release)(T *))
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray pem = file.readAll();
    std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new_mem_buf(pem.constData(), int(pem.size())),
                                                  BIO_free);
    T *value = read(bio.get(), nullptr, nullptr, nullptr);
    return value ? std::shared_ptr<T>(value, release) : std::shared_ptr<T> {};
}

template<typename Write>
bool writePem(const QString &path, Write write, QFileDevice::Permissions permissions)
{
    std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new(BIO_s_mem()), BIO_free);
    if (!write(bio.get()))
        return false;
    char *data = nullptr;
    const long length = BIO_get_mem_data(bio.get(), &data);
    return writeAtomically(path, QByteArray(data, qsizetype(length)), permissions);
}

bool addExtension(X509 *certificate, X509 *issuer, int nid, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION *extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value);
    if (!extension)
        return false;
    const bool added = X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

Certificate makeCertificate(const char *commonName, EVP_PKEY *key, long days)
{
    Certificate certificate = adopt(X509_new());
    X509_set_version(certificate.get(), 2);
    std::unique_ptr<BIGNUM, decltype(&BN_free)> serial(BN_new(), BN_free);
    BN_rand(serial.get(), 63, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY);
    BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(certificate.get()));
    // An hour back, so a clock that differs a little between peers does not matter.
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), days * day);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME *name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(name, "O", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char *>("Quennet development shop"),
                               -1, -1, 0);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char *>(commonName), -1, -1, 0);
    return certificate;
}
} // namespace

std::optional<CertificateAuthority> CertificateAuthority::loadOrCreate(const QString &stateDir)
{
    CertificateAuthority authority;
    authority.m_stateDir = stateDir;
    authority.m_caPath = filePath(stateDir, "ca.pem");
    if (authority.load())
        return authority;
    if (!QDir().mkpath(stateDir) || !authority.create()) {
        qCWarning(lcCertificates) << "Could not make the certificates in" << stateDir;
        return std::nullopt;
    }
    return authority;
}

bool CertificateAuthority::load()
{
    m_ca = readPem<X509>(m_caPath, PEM_read_bio_X509, X509_free);
    m_caKey = readPem<EVP_PKEY>(filePath(m_stateDir, "ca-key.pem"), PEM_read_bio_PrivateKey,
                                EVP_PKEY_free);
    m_server = readPem<X509>(filePath(m_stateDir, "server.pem"), PEM_read_bio_X509, X509_free);
    m_serverKey = readPem<EVP_PKEY>(filePath(m_stateDir, "server-key.pem"), PEM_read_bio_PrivateKey,
                                    EVP_PKEY_free);
    return m_ca && m_caKey && m_server && m_serverKey
        && X509_check_private_key(m_server.get(), m_serverKey.get()) == 1
        && X509_verify(m_server.get(), m_caKey.get()) == 1
        && X509_cmp_current_time(X509_get0_notAfter(m_server.get())) > 0;
}

bool CertificateAuthority::create()
{
    m_caKey = adopt(EVP_EC_gen("P-256"));
    m_serverKey = adopt(EVP_EC_gen("P-256"));
    if (!m_caKey || !m_serverKey)
        return false;

    m_ca = makeCertificate("Quennet development shop authority", m_caKey.get(), 3650);
    X509_set_issuer_name(m_ca.get(), X509_get_subject_name(m_ca.get()));
    const bool caMade =
        addExtension(m_ca.get(), m_ca.get(), NID_basic_constraints, "critical,CA:TRUE,pathlen:0")
        && addExtension(m_ca.get(), m_ca.get(), NID_key_usage, "critical,keyCertSign,cRLSign")
        && addExtension(m_ca.get(), m_ca.get(), NID_subject_key_identifier, "hash")
        && X509_sign(m_ca.get(), m_caKey.get(), EVP_sha256()) > 0;

    // Browsers refuse server certificates that are valid for longer than about a year.
    m_server = makeCertificate("localhost", m_serverKey.get(), 365);
    X509_set_issuer_name(m_server.get(), X509_get_subject_name(m_ca.get()));
    const bool serverMade =
        addExtension(m_server.get(), m_ca.get(), NID_basic_constraints, "critical,CA:FALSE")
        && addExtension(m_server.get(), m_ca.get(), NID_key_usage, "critical,digitalSignature")
        && addExtension(m_server.get(), m_ca.get(), NID_ext_key_usage, "serverAuth")
        && addExtension(m_server.get(), m_ca.get(), NID_subject_alt_name,
                        "DNS:localhost,IP:127.0.0.1,IP:::1")
        && addExtension(m_server.get(), m_ca.get(), NID_authority_key_identifier, "keyid:always")
        && X509_sign(m_server.get(), m_caKey.get(), EVP_sha256()) > 0;
    if (!caMade || !serverMade)
        return false;

    const auto privateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const auto publicFile = privateFile | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    const auto key = [](EVP_PKEY *k) {
        return [k](BIO *bio) {
            return PEM_write_bio_PrivateKey(bio, k, nullptr, nullptr, 0, nullptr, nullptr) == 1;
        };
    };
    const auto certificate = [](X509 *c) {
        return [c](BIO *bio) { return PEM_write_bio_X509(bio, c) == 1; };
    };
    return writePem(filePath(m_stateDir, "ca-key.pem"), key(m_caKey.get()), privateFile)
        && writePem(filePath(m_stateDir, "server-key.pem"), key(m_serverKey.get()), privateFile)
        && writePem(filePath(m_stateDir, "server.pem"), certificate(m_server.get()), publicFile)
        && writePem(m_caPath, certificate(m_ca.get()), publicFile);
}

bool CertificateAuthority::configure(SSL_CTX &context) const
{
    SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION);
    return SSL_CTX_use_certificate(&context, m_server.get()) == 1
        && SSL_CTX_use_PrivateKey(&context, m_serverKey.get()) == 1
        && SSL_CTX_check_private_key(&context) == 1
        && SSL_CTX_add1_chain_cert(&context, m_ca.get()) == 1;
}
