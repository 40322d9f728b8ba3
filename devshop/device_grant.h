#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <mutex>
#include <optional>

class ShopClock;

// The device-code sign-in (RFC 8628) of the sample account and the access tokens it hands out.
// Called from the server's threads, so every member is guarded by one mutex. Tokens are kept
// as hashes in the state folder, so a restarted shop still knows its signed-in clients.
class DeviceGrant {
public:
    struct Settings {
        int interval = 5; // seconds a client must wait between polls
        int lifetime = 900; // seconds a code stays valid
        QString tokenFile;
    };

    struct Code {
        QString deviceCode;
        QString userCode;
        int interval = 0;
        int expiresIn = 0;
    };

    enum class Outcome { Pending, SlowDown, Denied, Expired, Invalid, Token };
    struct Poll {
        Outcome outcome = Outcome::Invalid;
        QString token; // with Outcome::Token only
    };

    DeviceGrant(const ShopClock &clock, Settings settings);

    [[nodiscard]] Code start(const QString &device);
    [[nodiscard]] Poll poll(const QString &deviceCode);
    // Approves or denies a code that is still waiting; false for unknown, decided or expired codes.
    bool decide(const QString &userCode, bool approve);
    // The name of the device that asked for a waiting code.
    [[nodiscard]] std::optional<QString> waitingDevice(const QString &userCode) const;

    [[nodiscard]] QString issueToken();
    [[nodiscard]] bool isValid(const QString &token) const;
    bool revoke(const QString &token);

    // "wdjb mjht" and "WDJB-MJHT" are the same code.
    [[nodiscard]] static QString normalisedUserCode(const QString &text);

private:
    enum class State { Waiting, Approved, Denied };
    struct Pending {
        QString userCode;
        QString device;
        qint64 expiresMs = 0;
        qint64 lastPollMs = -1;
        int interval = 0;
        State state = State::Waiting;
    };

    // The device code of a user code that still waits for a decision, or an empty string.
    [[nodiscard]] QString waitingDeviceCode(const QString &userCode) const;
    [[nodiscard]] QString newToken();
    void saveTokens() const;

    const ShopClock &m_clock;
    Settings m_settings;
    mutable std::mutex m_mutex;
    QHash<QString, Pending> m_codes; // by device code
    QHash<QString, QString> m_deviceCodes; // by normalised user code
    QSet<QByteArray> m_tokenHashes;
};
