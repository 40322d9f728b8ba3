#pragma once

#include <QCoroTask>
#include <QObject>

#include <optional>

// Where the session's secrets live, as UTF-8 strings under item names. First the desktop's
// secret service through QtKeychain (service = bundle identifier, key = item); only when no
// secret store can be reached, a private file, secrets.json, mode 0600. Reading tries the secret
// service, then the file; removing clears both. Values are never logged.
class Keychain : public QObject
{
    Q_OBJECT

public:
    static constexpr QLatin1StringView sessionToken{"session-token"};
    static constexpr QLatin1StringView pendingRevocation{"pending-revocation"};

    // folder: where the private file goes, normally the application folder.
    explicit Keychain(QString folder, QObject *parent = nullptr);

    [[nodiscard]] QString fallbackPath() const;

    [[nodiscard]] QCoro::Task<std::optional<QString>> read(QString item);
    // True when stored. A failed save leaves the item as it was.
    [[nodiscard]] QCoro::Task<bool> save(QString value, QString item);
    [[nodiscard]] QCoro::Task<> remove(QString item);

private:
    QString m_folder;
};
