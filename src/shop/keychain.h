#pragma once

#include "error.h"

#include <QCoroTask>
#include <QObject>
#include <chrono>
#include <optional>

// Where the session's secrets live, as UTF-8 strings under item names. First the desktop's
// Secret Service through libsecret, under the attributes QtKeychain used (so that earlier
// versions' items are found); only when the session has no secret store at all, a private file,
// secrets.json, mode 0600. Reading tries the secret store, then the file; removing clears both.
// Values are never logged.
class Keychain : public QObject {
    Q_OBJECT

public:
    // The secret store exists but refused: locked and not unlocked, access denied, an error, or
    // no answer in time. Never means that the item is missing.
    class Failure : public Error {
    public:
        [[nodiscard]] QString description() const override;
    };

    static constexpr QLatin1StringView sessionToken { "session-token" };
    static constexpr QLatin1StringView pendingRevocation { "pending-revocation" };

    // folder: where the private file goes, normally the application folder.
    explicit Keychain(QString folder, QObject *parent = nullptr);

    [[nodiscard]] QString fallbackPath() const;
    // How long one call to the secret store may take before it counts as a refusal.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

    // None when no store holds the item. Throws Failure when the secret store refuses.
    [[nodiscard]] QCoro::Task<std::optional<QString>> read(QString item);
    // True when stored. A failed save leaves the item as it was.
    [[nodiscard]] QCoro::Task<bool> save(QString value, QString item);
    // Throws Failure when the secret store refuses; the private file is cleared all the same.
    [[nodiscard]] QCoro::Task<> remove(QString item);

private:
    QString m_folder;
    std::chrono::milliseconds m_timeout = std::chrono::seconds(5);
};
