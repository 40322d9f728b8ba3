#pragma once

#include <QByteArray>
#include <QString>

// Signs and checks the expiring download addresses of owned files. The key lives only as long
// as the process, so links do not survive a restart of the shop, as with a real one.
class LinkSigner {
public:
    enum class Verdict { Valid, Expired, Tampered };

    LinkSigner();

    // The query of a link to the file that expires at the given second since 1970.
    [[nodiscard]] QString query(const QString &id, qint64 expires) const;
    [[nodiscard]] Verdict check(const QString &id, const QString &expires, const QString &signature,
                                qint64 nowSeconds) const;

private:
    [[nodiscard]] QByteArray sign(const QString &id, qint64 expires) const;

    QByteArray m_key;
};
