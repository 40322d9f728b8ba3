#include "keychain.h"

#include "application_folder.h"
#include "atomic_file.h"
#include "logging.h"
#include "opened_library.h"

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

// libsecret, opened at the first secret rather than linked: it and the GIO it needs would
// otherwise load before the tray icon shows, and a session without a secret store never uses it.
struct Libsecret {
    decltype(&secret_attributes_build) buildAttributes = nullptr;
    decltype(&secret_service_search) search = nullptr;
    decltype(&secret_service_search_finish) searchFinish = nullptr;
    decltype(&secret_service_store) store = nullptr;
    decltype(&secret_service_store_finish) storeFinish = nullptr;
    decltype(&secret_service_clear) clear = nullptr;
    decltype(&secret_service_clear_finish) clearFinish = nullptr;
    decltype(&secret_item_get_locked) isLocked = nullptr;
    decltype(&secret_item_get_secret) secretOf = nullptr;
    decltype(&secret_value_new) newValue = nullptr;
    decltype(&secret_value_get) valueBytes = nullptr;
    decltype(&secret_value_unref) unrefValue = nullptr;
    decltype(&g_cancellable_new) newCancellable = nullptr;
    decltype(&g_cancellable_cancel) cancel = nullptr;
    decltype(&g_object_ref) refObject = nullptr;
    decltype(&g_object_unref) unrefObject = nullptr;

    // Throws Keychain::Failure when the library cannot be opened: there is a secret store, and
    // the secrets must not go to the file instead.
    static const Libsecret &get()
    {
        static const std::optional<Libsecret> library = load();
        if (!library)
            throw Keychain::Failure();
        return *library;
    }

private:
    static std::optional<Libsecret> load()
    {
        void *library = dlopen("libsecret-1.so.0", RTLD_NOW | RTLD_LOCAL);
        Libsecret found;
        // GIO's and GObject's functions come with libsecret, which links them.
        if (library && resolveFunction(library, found.buildAttributes, "secret_attributes_build")
            && resolveFunction(library, found.search, "secret_service_search")
            && resolveFunction(library, found.searchFinish, "secret_service_search_finish")
            && resolveFunction(library, found.store, "secret_service_store")
            && resolveFunction(library, found.storeFinish, "secret_service_store_finish")
            && resolveFunction(library, found.clear, "secret_service_clear")
            && resolveFunction(library, found.clearFinish, "secret_service_clear_finish")
            && resolveFunction(library, found.isLocked, "secret_item_get_locked")
            && resolveFunction(library, found.secretOf, "secret_item_get_secret")
            && resolveFunction(library, found.newValue, "secret_value_new")
            && resolveFunction(library, found.valueBytes, "secret_value_get")
            && resolveFunction(library, found.unrefValue, "secret_value_unref")
            && resolveFunction(library, found.newCancellable, "g_cancellable_new")
            && resolveFunction(library, found.cancel, "g_cancellable_cancel")
            && resolveFunction(library, found.refObject, "g_object_ref")
            && resolveFunction(library, found.unrefObject, "g_object_unref"))
            return found;
        qCWarning(lcKeychain) << "Could not open libsecret:" << dlerror();
        return std::nullopt;
    }
};

struct Unref {
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(GList *items) const { g_list_free_full(items, Libsecret::get().unrefObject); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(SecretValue *value) const { Libsecret::get().unrefValue(value); }
};
template<typename T> using Owned = std::unique_ptr<T, Unref>;

Owned<GHashTable> attributesOf(const QByteArray &item)
{
    return Owned<GHashTable>(Libsecret::get().buildAttributes(schema(), "user", item.constData(),
                                                              "server", bundleIdentifier, "type",
                                                              "plaintext", nullptr));
}

// One libsecret call's end, for the task that awaits it. libsecret calls back on the main
// thread's GLib context, which Qt's GLib event dispatcher runs.
class SecretCall : public QObject {
    Q_OBJECT

public:
    SecretCall()
        : m_cancellable(Libsecret::get().newCancellable())
    {
    }
    ~SecretCall() override
    {
        const Libsecret &secret = Libsecret::get();
        secret.unrefObject(m_cancellable);
        if (m_result)
            secret.unrefObject(m_result);
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
        (*call)->m_result = static_cast<GAsyncResult *>(Libsecret::get().refObject(result));
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
        Libsecret::get().cancel(call->cancellable());
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
    const Libsecret &secret = Libsecret::get();
    const auto attributes = attributesOf(item);
    const Call call(new SecretCall);
    secret.search(nullptr, schema(), attributes.get(), flags, call->cancellable(),
                  &SecretCall::finished, call->data());
    GError *error = nullptr;
    Owned<GList> items(
        secret.searchFinish(nullptr, co_await answered(call.get(), timeout), &error));
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

    const Libsecret &secret = Libsecret::get();
    auto *found = static_cast<SecretItem *>(items->data);
    const Owned<SecretValue> value(secret.isLocked(found) ? nullptr : secret.secretOf(found));
    if (!value) {
        qCWarning(lcKeychain) << "The secret store kept" << item << "locked";
        throw Keychain::Failure();
    }
    gsize length = 0;
    const gchar *bytes = secret.valueBytes(value.get(), &length);
    co_return QString::fromUtf8(bytes, qsizetype(length));
}

QCoro::Task<> store(QString value, QByteArray item, std::chrono::milliseconds timeout)
{
    const Libsecret &library = Libsecret::get();
    const auto attributes = attributesOf(item);
    const auto bytes = value.toUtf8();
    const Owned<SecretValue> secret(
        library.newValue(bytes.constData(), bytes.size(), "text/plain"));
    const QByteArray label = "Quennet " + item;
    const Call call(new SecretCall);
    library.store(nullptr, schema(), attributes.get(), SECRET_COLLECTION_DEFAULT, label.constData(),
                  secret.get(), call->cancellable(), &SecretCall::finished, call->data());
    GError *error = nullptr;
    library.storeFinish(nullptr, co_await answered(call.get(), timeout), &error);
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
    const Libsecret &secret = Libsecret::get();
    for (const GList *each = items.get(); each; each = each->next) {
        if (secret.isLocked(static_cast<SecretItem *>(each->data))) {
            qCWarning(lcKeychain) << "The secret store kept" << item << "locked";
            throw Keychain::Failure();
        }
    }

    const auto attributes = attributesOf(item);
    const Call deletion(new SecretCall);
    secret.clear(nullptr, schema(), attributes.get(), deletion->cancellable(),
                 &SecretCall::finished, deletion->data());
    GError *error = nullptr;
    secret.clearFinish(nullptr, co_await answered(deletion.get(), timeout), &error);
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
