#include "keychain.h"

#include "application_folder.h"
#include "atomic_file.h"
#include "logging.h"

#include <QCoreApplication>
#include <QCoroDBusPendingCall>
#include <QCoroSignal>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <libsecret/secret.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {
QString secretsName()
{
    return u"org.freedesktop.secrets"_s;
}

// QtKeychain's schema, so that earlier versions' items are found. Not matched by name: items
// stored under the same attributes by other clients (secret-tool) count too.
const SecretSchema *schema()
{
    static const SecretSchema schema {
        .name = "org.qt.keychain",
        .flags = SECRET_SCHEMA_DONT_MATCH_NAME,
        .attributes = { { "user", SECRET_SCHEMA_ATTRIBUTE_STRING },
                        { "server", SECRET_SCHEMA_ATTRIBUTE_STRING },
                        { "type", SECRET_SCHEMA_ATTRIBUTE_STRING } },
    };
    return &schema;
}

struct Unref {
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(GList *items) const { g_list_free_full(items, g_object_unref); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
template<typename T> using Owned = std::unique_ptr<T, Unref>;

Owned<GHashTable> attributesOf(const QByteArray &item)
{
    return Owned<GHashTable>(secret_attributes_build(schema(), "user", item.constData(), "server",
                                                     bundleIdentifier, "type", "plaintext",
                                                     nullptr));
}

// One libsecret call's end, for the task that awaits it. libsecret calls back on the main
// thread's GLib context, which Qt's GLib event dispatcher runs.
class SecretCall : public QObject {
    Q_OBJECT

public:
    SecretCall()
        : m_cancellable(g_cancellable_new())
    {
    }
    ~SecretCall() override
    {
        g_object_unref(m_cancellable);
        if (m_result)
            g_object_unref(m_result);
    }

    [[nodiscard]] GCancellable *cancellable() const { return m_cancellable; }
    [[nodiscard]] GAsyncResult *result() const { return m_result; }
    // The callback's data. It outlives the call, which is gone when its task stopped waiting.
    [[nodiscard]] gpointer data() { return new QPointer<SecretCall>(this); }

    static void finished(GObject * /*source*/, GAsyncResult *result, gpointer data)
    {
        const std::unique_ptr<QPointer<SecretCall>> call(static_cast<QPointer<SecretCall> *>(data));
        if (!*call)
            return;
        (*call)->m_result = static_cast<GAsyncResult *>(g_object_ref(result));
        Q_EMIT(*call)->ended();
    }

Q_SIGNALS:
    void ended();

private:
    GCancellable *m_cancellable;
    GAsyncResult *m_result = nullptr;
};

struct DeleteLater {
    void operator()(QObject *object) const { object->deleteLater(); }
};
// Not deleted at once: the task resumes from a queued call on it.
using Call = std::unique_ptr<SecretCall, DeleteLater>;

// The call's result. A store that takes longer than timeout is cancelled and counts as
// refusing, rather than holding the secret back until D-Bus gives up after 25 s.
QCoro::Task<GAsyncResult *> answered(SecretCall *call, std::chrono::milliseconds timeout)
{
    if (!call->result() && !co_await qCoro(call, &SecretCall::ended, timeout)) {
        g_cancellable_cancel(call->cancellable());
        qCWarning(lcKeychain) << "The secret store didn't answer in time";
        throw Keychain::Failure();
    }
    co_return call->result();
}

void check(GError *error, const char *doing)
{
    if (!error)
        return;
    const Owned<GError> owned(error);
    qCWarning(lcKeychain, "The secret store refused to %s: %s", doing, error->message);
    throw Keychain::Failure();
}

// Whether the session has a secret store, running or started on demand. Without one (no session
// bus, or nothing that owns or can start the name) secrets go to the private file.
QCoro::Task<bool> secretStoreExists(std::chrono::milliseconds timeout)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        co_return false;
    const auto ask = [&bus, timeout](const QString &method, const QVariantList &arguments) {
        auto message =
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, method);
        message.setArguments(arguments);
        return bus.asyncCall(message, int(timeout.count()));
    };
    const auto answer = [](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qCWarning(lcKeychain) << "The session bus didn't answer:" << reply.errorMessage();
            throw Keychain::Failure();
        }
        return reply.arguments().value(0);
    };

    const auto owned = ask(u"NameHasOwner"_s, { secretsName() });
    if (answer(co_await owned).toBool())
        co_return true;
    const auto activatable = ask(u"ListActivatableNames"_s, {});
    co_return answer(co_await activatable).toStringList().contains(secretsName());
}

// Whether a collection of the store is locked. Some stores hide the items of a locked
// collection from a search, so finding nothing then doesn't mean the item is missing.
QCoro::Task<bool> anyCollectionLocked(std::chrono::milliseconds timeout)
{
    const auto bus = QDBusConnection::sessionBus();
    const auto property = [&bus, timeout](const QString &path, const QString &interface,
                                          const QString &name) {
        auto message = QDBusMessage::createMethodCall(
            secretsName(), path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        message << interface << name;
        return bus.asyncCall(message, int(timeout.count()));
    };
    const auto value = [](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qCWarning(lcKeychain) << "The secret store didn't answer:" << reply.errorMessage();
            throw Keychain::Failure();
        }
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    };

    const auto listed = property(u"/org/freedesktop/secrets"_s, u"org.freedesktop.Secret.Service"_s,
                                 u"Collections"_s);
    const auto collections =
        qdbus_cast<QList<QDBusObjectPath>>(value(co_await listed).value<QDBusArgument>());
    for (const auto &collection : collections) {
        const auto locked =
            property(collection.path(), u"org.freedesktop.Secret.Collection"_s, u"Locked"_s);
        const bool isLocked = value(co_await locked).toBool();
        if (isLocked)
            co_return true;
    }
    co_return false;
}

// The store's items under the item's attributes; doing names the operation in a refusal.
QCoro::Task<Owned<GList>> search(QByteArray item, SecretSearchFlags flags,
                                 std::chrono::milliseconds timeout, const char *doing)
{
    const auto attributes = attributesOf(item);
    const Call call(new SecretCall);
    secret_service_search(nullptr, schema(), attributes.get(), flags, call->cancellable(),
                          &SecretCall::finished, call->data());
    GError *error = nullptr;
    Owned<GList> items(
        secret_service_search_finish(nullptr, co_await answered(call.get(), timeout), &error));
    check(error, doing);
    if (items)
        co_return items;
    const bool locked = co_await anyCollectionLocked(timeout);
    if (locked) {
        qCWarning(lcKeychain, "The secret store is locked: couldn't %s %s", doing,
                  item.constData());
        throw Keychain::Failure();
    }
    co_return items;
}

// The item's value, none when the store holds no such item. libsecret's own lookup reports an
// item that stays locked as missing; here it is a refusal.
QCoro::Task<std::optional<QString>> lookUp(QByteArray item, std::chrono::milliseconds timeout)
{
    const Owned<GList> items = co_await search(
        item, static_cast<SecretSearchFlags>(SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS),
        timeout, "read");
    if (!items)
        co_return std::nullopt;

    auto *found = static_cast<SecretItem *>(items->data);
    const Owned<SecretValue> value(secret_item_get_locked(found) ? nullptr
                                                                 : secret_item_get_secret(found));
    if (!value) {
        qCWarning(lcKeychain) << "The secret store kept" << item << "locked";
        throw Keychain::Failure();
    }
    gsize length = 0;
    const gchar *bytes = secret_value_get(value.get(), &length);
    co_return QString::fromUtf8(bytes, qsizetype(length));
}

QCoro::Task<> store(QString value, QByteArray item, std::chrono::milliseconds timeout)
{
    const auto attributes = attributesOf(item);
    const auto bytes = value.toUtf8();
    const Owned<SecretValue> secret(
        secret_value_new(bytes.constData(), bytes.size(), "text/plain"));
    const QByteArray label = "Quennet " + item;
    const Call call(new SecretCall);
    secret_service_store(nullptr, schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
                         label.constData(), secret.get(), call->cancellable(),
                         &SecretCall::finished, call->data());
    GError *error = nullptr;
    secret_service_store_finish(nullptr, co_await answered(call.get(), timeout), &error);
    check(error, "save");
}

// libsecret's clear passes over locked items in silence: they are unlocked first, and one that
// stays locked is a refusal.
QCoro::Task<> clear(QByteArray item, std::chrono::milliseconds timeout)
{
    const Owned<GList> items = co_await search(
        item, static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK), timeout,
        "remove");
    if (!items)
        co_return;
    for (const GList *each = items.get(); each; each = each->next) {
        if (secret_item_get_locked(static_cast<SecretItem *>(each->data))) {
            qCWarning(lcKeychain) << "The secret store kept" << item << "locked";
            throw Keychain::Failure();
        }
    }

    const auto attributes = attributesOf(item);
    const Call deletion(new SecretCall);
    secret_service_clear(nullptr, schema(), attributes.get(), deletion->cancellable(),
                         &SecretCall::finished, deletion->data());
    GError *error = nullptr;
    secret_service_clear_finish(nullptr, co_await answered(deletion.get(), timeout), &error);
    check(error, "remove");
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

void removeFromFile(const QString &path, const QString &item)
{
    auto secrets = readFile(path);
    if (!secrets.contains(item))
        return;
    secrets.remove(item);
    if (secrets.isEmpty())
        QFile::remove(path);
    else
        writeFile(path, secrets);
}
} // namespace

QString Keychain::Failure::description() const
{
    return QCoreApplication::translate("Keychain",
                                       "The desktop's secret store is locked or refused access.");
}

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
    const auto timeout = m_timeout;
    if (co_await secretStoreExists(timeout)) {
        if (auto value = co_await lookUp(item.toUtf8(), timeout))
            co_return value;
    }
    const auto value = readFile(path).value(item);
    if (!value.isString())
        co_return std::nullopt;
    co_return value.toString();
}

QCoro::Task<bool> Keychain::save(QString value, QString item)
{
    const auto path = fallbackPath();
    const auto timeout = m_timeout;
    try {
        if (co_await secretStoreExists(timeout)) {
            co_await store(value, item.toUtf8(), timeout);
            // A copy saved while there was no secret store doesn't stay behind in the file.
            removeFromFile(path, item);
            co_return true;
        }
    } catch (const Failure &) {
        qCWarning(lcKeychain, "Couldn't save %s in the secret store", qUtf8Printable(item));
        co_return false;
    }

    qCDebug(lcKeychain) << "No secret store: saving" << item << "in the private file";
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
    const auto timeout = m_timeout;
    removeFromFile(fallbackPath(), item);
    if (co_await secretStoreExists(timeout))
        co_await clear(item.toUtf8(), timeout);
}

#include "keychain.moc"
