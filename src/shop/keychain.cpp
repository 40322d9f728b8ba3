#include "keychain.h"

#include "application_folder.h"
#include "atomic_file.h"

#include <QCoroSignal>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <qt6keychain/keychain.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(lcKeychain, "app.quennet.Quennet.Keychain")

struct DeleteLater {
    void operator()(QObject *object) const { object->deleteLater(); }
};

template<typename Job>
std::unique_ptr<Job, DeleteLater> makeJob(const QString &item)
{
    // Not auto-deleting: its deferred deletion could overtake the queued resumption.
    std::unique_ptr<Job, DeleteLater> job(new Job(QLatin1StringView(bundleIdentifier)));
    job->setAutoDelete(false);
    job->setKey(item);
    return job;
}

QCoro::Task<QKeychain::Error> run(QKeychain::Job *job)
{
    auto finished = qCoro(job, &QKeychain::Job::finished);
    job->start();
    co_await finished;
    co_return job->error();
}

// QtKeychain's answers when there is no session bus, no secret service or no backend at all.
bool isUnreachable(QKeychain::Error error)
{
    return error == QKeychain::NoBackendAvailable || error == QKeychain::NotImplemented
        || error == QKeychain::OtherError;
}

QJsonObject readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool writeFile(const QString &path, const QJsonObject &secrets)
{
    return writeAtomically(path, QJsonDocument(secrets).toJson(QJsonDocument::Compact),
                           QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}
} // namespace

Keychain::Keychain(QString folder, QObject *parent)
    : QObject(parent)
    , m_folder(std::move(folder))
{
}

QString Keychain::fallbackPath() const
{
    return m_folder + u"/secrets.json"_s;
}

QCoro::Task<std::optional<QString>> Keychain::read(QString item)
{
    const auto path = fallbackPath();
    const auto job = makeJob<QKeychain::ReadPasswordJob>(item);
    const auto error = co_await run(job.get());
    if (error == QKeychain::NoError)
        co_return job->textData();
    if (error != QKeychain::EntryNotFound)
        qCDebug(lcKeychain) << "Secret service read of" << item << "failed:" << job->errorString();

    const auto value = readFile(path).value(item);
    if (!value.isString())
        co_return std::nullopt;
    co_return value.toString();
}

QCoro::Task<bool> Keychain::save(QString value, QString item)
{
    const auto path = fallbackPath();
    const auto job = makeJob<QKeychain::WritePasswordJob>(item);
    job->setTextData(value);
    const auto error = co_await run(job.get());
    if (error == QKeychain::NoError)
        co_return true;
    if (!isUnreachable(error)) {
        qCWarning(lcKeychain, "Couldn't save %s: %d", qUtf8Printable(item), int(error));
        co_return false;
    }

    qCDebug(lcKeychain) << "No secret store:" << job->errorString() << "- saving" << item
                        << "in the private file";
    auto secrets = readFile(path);
    secrets.insert(item, value);
    if (!writeFile(path, secrets)) {
        qCWarning(lcKeychain, "Couldn't save %s: %s", qUtf8Printable(item), qUtf8Printable(path));
        co_return false;
    }
    co_return true;
}

QCoro::Task<> Keychain::remove(QString item)
{
    const auto path = fallbackPath();
    const auto job = makeJob<QKeychain::DeletePasswordJob>(item);
    co_await run(job.get());

    auto secrets = readFile(path);
    if (!secrets.contains(item))
        co_return;
    secrets.remove(item);
    if (secrets.isEmpty())
        QFile::remove(path);
    else
        writeFile(path, secrets);
}
