#include "device_grant.h"

#include "atomic_file.h"
#include "shop_clock.h"

#include <QFile>
#include <openssl/evp.h>
#include <openssl/rand.h>

using namespace Qt::Literals::StringLiterals;

namespace {
// RFC 8628 section 6.1: consonants only, so no code spells a word, and none that look alike.
constexpr char userCodeLetters[] = "BCDFGHJKLMNPQRSTVWXZ";

QByteArray randomBytes(int count)
{
    QByteArray bytes(count, '\0');
    RAND_bytes(reinterpret_cast<unsigned char *>(bytes.data()), count);
    return bytes;
}

QByteArray tokenHash(const QString &token)
{
    const QByteArray utf8 = token.toUtf8();
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(utf8.constData(), size_t(utf8.size()), digest, &length, EVP_sha256(), nullptr);
    return QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex();
}
} // namespace

DeviceGrant::DeviceGrant(const ShopClock &clock, Settings settings)
    : m_clock(clock)
    , m_settings(std::move(settings))
{
    QFile file(m_settings.tokenFile);
    if (file.open(QIODevice::ReadOnly))
        for (const QByteArray &line : file.readAll().split('\n'))
            if (!line.isEmpty())
                m_tokenHashes.insert(line);
}

QString DeviceGrant::normalisedUserCode(const QString &text)
{
    QString letters;
    for (const QChar c : text)
        if (c.isLetterOrNumber())
            letters.append(c.toUpper());
    return letters;
}

DeviceGrant::Code DeviceGrant::start(const QString &device)
{
    const std::lock_guard lock(m_mutex);
    const qint64 now = m_clock.nowMs();
    // Forget codes that expired long ago; an expired one is still answered for a while.
    for (auto it = m_codes.begin(); it != m_codes.end();) {
        if (it->expiresMs + 3'600'000 < now) {
            m_deviceCodes.remove(it->userCode);
            it = m_codes.erase(it);
        } else {
            ++it;
        }
    }

    QString userCode;
    do {
        userCode.clear();
        for (const char byte : randomBytes(8))
            userCode.append(QLatin1Char(userCodeLetters[quint8(byte) % 20]));
    } while (m_deviceCodes.contains(userCode));
    const QString deviceCode = QString::fromLatin1(
        randomBytes(32).toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));

    m_codes.insert(deviceCode,
                   Pending {
                       .userCode = userCode,
                       .device = device,
                       .expiresMs = now + qint64(m_settings.lifetime) * 1000,
                       .interval = m_settings.interval,
                   });
    m_deviceCodes.insert(userCode, deviceCode);
    return { deviceCode, userCode.left(4) + u'-' + userCode.mid(4), m_settings.interval,
             m_settings.lifetime };
}

DeviceGrant::Poll DeviceGrant::poll(const QString &deviceCode)
{
    const std::lock_guard lock(m_mutex);
    const auto it = m_codes.find(deviceCode);
    if (it == m_codes.end())
        return { Outcome::Invalid, {} };
    const qint64 now = m_clock.nowMs();
    if (now >= it->expiresMs)
        return { Outcome::Expired, {} };
    switch (it->state) {
    case State::Denied:
        return { Outcome::Denied, {} };
    case State::Approved: {
        // A device code is good for one token.
        m_deviceCodes.remove(it->userCode);
        m_codes.erase(it);
        return { Outcome::Token, newToken() };
    }
    case State::Waiting:
        break;
    }
    // Timers may fire a little early; a tenth of the interval is forgiven.
    const bool tooSoon = it->lastPollMs >= 0 && (now - it->lastPollMs) * 10 < it->interval * 9000LL;
    it->lastPollMs = now;
    if (tooSoon) {
        it->interval += 5;
        return { Outcome::SlowDown, {} };
    }
    return { Outcome::Pending, {} };
}

QString DeviceGrant::waitingDeviceCode(const QString &userCode) const
{
    const QString deviceCode = m_deviceCodes.value(normalisedUserCode(userCode));
    const auto it = m_codes.constFind(deviceCode);
    if (it == m_codes.cend() || it->state != State::Waiting || m_clock.nowMs() >= it->expiresMs)
        return {};
    return deviceCode;
}

bool DeviceGrant::decide(const QString &userCode, bool approve)
{
    const std::lock_guard lock(m_mutex);
    const QString deviceCode = waitingDeviceCode(userCode);
    if (deviceCode.isEmpty())
        return false;
    m_codes[deviceCode].state = approve ? State::Approved : State::Denied;
    return true;
}

std::optional<QString> DeviceGrant::waitingDevice(const QString &userCode) const
{
    const std::lock_guard lock(m_mutex);
    const QString deviceCode = waitingDeviceCode(userCode);
    if (deviceCode.isEmpty())
        return std::nullopt;
    return m_codes.value(deviceCode).device;
}

QString DeviceGrant::issueToken()
{
    const std::lock_guard lock(m_mutex);
    return newToken();
}

QString DeviceGrant::newToken()
{
    const QString token = u"qdt_"_s + QString::fromLatin1(randomBytes(24).toHex());
    m_tokenHashes.insert(tokenHash(token));
    saveTokens();
    return token;
}

bool DeviceGrant::isValid(const QString &token) const
{
    const std::lock_guard lock(m_mutex);
    return !token.isEmpty() && m_tokenHashes.contains(tokenHash(token));
}

bool DeviceGrant::revoke(const QString &token)
{
    const std::lock_guard lock(m_mutex);
    const bool known = m_tokenHashes.remove(tokenHash(token));
    if (known)
        saveTokens();
    return known;
}

void DeviceGrant::saveTokens() const
{
    if (m_settings.tokenFile.isEmpty())
        return;
    QByteArray text;
    for (const QByteArray &hash : m_tokenHashes)
        text += hash + '\n';
    // Unsaved tokens only fail to outlive a restart of the shop.
    (void)writeAtomically(m_settings.tokenFile, text);
}
