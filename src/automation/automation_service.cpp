#include "automation_service.h"

#include "account.h"
#include "automation_adaptor.h"
#include "defaults.h"
#include "error.h"
#include "focus_filter.h"
#include "intents.h"
#include "logging.h"
#include "session_adaptor.h"
#include "shop.h"
#include "shuffle.h"

#include <QCoreApplication>
#include <QDBusMetaType>

using namespace Qt::Literals::StringLiterals;

namespace {
// Any other failure, in its own words.
class Failed : public Error {
public:
    explicit Failed(QString description)
        : m_description(std::move(description))
    {
    }

    [[nodiscard]] QString description() const override { return m_description; }

private:
    QString m_description;
};

// A caller's argument that names nothing Quennet knows. Nothing has been changed when it is thrown.
class InvalidArgument : public Failed {
public:
    using Failed::Failed;
};

// "a, b or c"
QString orList(const QStringList &values)
{
    return values.size() < 2
        ? values.join(QString())
        : QCoreApplication::translate("AutomationService", "%1 or %2")
              .arg(values.first(values.size() - 1).join(u", "_s), values.last());
}

// refusal: a sentence marked with QT_TRANSLATE_NOOP, "%1" the raw value and "%2" the choices.
template<typename Option> Option argument(const QString &raw, const char *refusal)
{
    const auto option = optionFromRawValue<Option>(raw);
    if (!option)
        throw InvalidArgument(QCoreApplication::translate("AutomationService", refusal)
                                  .arg(raw, orList(optionRawValues<Option>())));
    return *option;
}

// "" is the automatic edition.
EditionOption editionArgument(const QString &raw)
{
    return raw.isEmpty()
        ? EditionOption::Automatic
        : argument<EditionOption>(
            raw, QT_TRANSLATE_NOOP("AutomationService", "\"%1\" isn't an edition. Use %2."));
}

// "" leaves the setting as it is.
template<typename Option>
std::optional<Option> settingArgument(const QString &raw, const char *refusal)
{
    return raw.isEmpty() ? std::nullopt : std::optional(argument<Option>(raw, refusal));
}

QString wallpaperArgument(const QString &raw)
{
    if (raw.isEmpty())
        throw InvalidArgument(QCoreApplication::translate("AutomationService",
                                                          "Name a wallpaper as pack/colourway."));
    if (!ColourwayKey::parse(raw))
        throw InvalidArgument(
            QCoreApplication::translate("AutomationService",
                                        "\"%1\" isn't a wallpaper. Name one as pack/colourway.")
                .arg(raw));
    return raw;
}

QString errorName(QLatin1StringView failure)
{
    return u"app.quennet.Quennet.Error."_s + failure;
}

QString accountState(Account::Status status)
{
    switch (status) {
    case Account::Status::Requesting:
        return u"requesting"_s;
    case Account::Status::Waiting:
        return u"waiting"_s;
    case Account::Status::Failed:
        return u"failed"_s;
    case Account::Status::SignedIn:
        return u"signedIn"_s;
    case Account::Status::SignedOut:
        break;
    }
    return u"signedOut"_s;
}
} // namespace

AutomationService::AutomationService(QObject *parent)
    : QObject(parent)
{
    qDBusRegisterMetaType<WallpaperEntity>();
    qDBusRegisterMetaType<QList<WallpaperEntity>>();
    new AutomationAdaptor(this);
    new SessionAdaptor(this);
}

AutomationService::~AutomationService()
{
    if (m_bus)
        m_bus->unregisterObject(objectPath);
}

bool AutomationService::registerOn(QDBusConnection bus)
{
    if (!bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors)) {
        qCWarning(lcAutomation) << "Couldn't offer automation on the bus:"
                                << bus.lastError().message();
        return false;
    }
    m_bus = bus;
    m_announced = sessionProperties();
    return true;
}

void AutomationService::attach(Intents *intents, Account *account, Shop *shop,
                               FocusFilter *focusFilter)
{
    m_intents = intents;
    m_focusFilter = focusFilter;
    m_account = account;
    m_shop = shop;
    connect(account, &Account::stateChanged, this, &AutomationService::announceSession);
    connect(shop, &Shop::stateChanged, this, &AutomationService::announceSession);
    announceSession();
}

AutomationService::DBusError AutomationService::dbusError(std::exception_ptr failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const Intents::Failure &error) {
        static constexpr std::array names { "NotReady"_L1, "NotFound"_L1, "NoWallpaper"_L1,
                                            "Overtaken"_L1 };
        return { errorName(names.at(size_t(error.failure()))), error.description() };
    } catch (const Shuffle::NothingToShuffle &error) {
        return { errorName("NothingToShuffle"_L1), error.description() };
    } catch (const InvalidArgument &error) {
        return { errorName("InvalidArgument"_L1), error.description() };
    } catch (const std::exception &error) {
        return { errorName("Failed"_L1), describe(error) };
    }
}

void AutomationService::requireAttached() const
{
    if (!m_intents)
        throw Intents::Failure(Intents::Failure::Case::NotReady);
}

Intents *AutomationService::intents() const
{
    requireAttached();
    return m_intents;
}

void AutomationService::fail()
{
    const auto [name, text] = dbusError(std::current_exception());
    qCInfo(lcAutomation).noquote() << QDBusContext::message().member() << "failed:" << text;
    sendErrorReply(name, text);
}

void AutomationService::answerLater(QCoro::Task<> work)
{
    setDelayedReply(true);
    answer(connection(), QDBusContext::message(), std::move(work));
}

QCoro::Task<> AutomationService::answer(QDBusConnection bus, QDBusMessage call, QCoro::Task<> work)
{
    try {
        co_await std::move(work);
        bus.send(call.createReply());
    } catch (...) {
        const auto [name, text] = dbusError(std::current_exception());
        qCInfo(lcAutomation).noquote() << call.member() << "failed:" << text;
        bus.send(call.createErrorReply(name, text));
    }
}

void AutomationService::ShuffleWallpaper()
{
    try {
        answerLater(intents()->shuffleWallpaper());
    } catch (...) {
        fail();
    }
}

void AutomationService::SetWallpaper(const QString &wallpaper, const QString &edition)
{
    try {
        const QString id = wallpaperArgument(wallpaper);
        const EditionOption option = editionArgument(edition);
        answerLater(intents()->setWallpaper(id, option));
    } catch (...) {
        fail();
    }
}

QString AutomationService::GetWallpaper(QString &name, QString &packName)
{
    try {
        const WallpaperEntity current = intents()->currentWallpaper();
        name = current.name;
        packName = current.packName;
        return current.id;
    } catch (...) {
        fail();
    }
    return {};
}

void AutomationService::SetShuffle(bool isOn, const QString &interval, const QString &source)
{
    try {
        const auto every = settingArgument<ShuffleIntervalOption>(
            interval,
            QT_TRANSLATE_NOOP("AutomationService", "\"%1\" isn't a shuffle interval. Use %2."));
        const auto from = settingArgument<ShuffleSourceOption>(
            source,
            QT_TRANSLATE_NOOP("AutomationService", "\"%1\" isn't a shuffle source. Use %2."));
        intents()->setShuffle(isOn, every, from);
    } catch (...) {
        fail();
    }
}

void AutomationService::FavouriteWallpaper()
{
    try {
        intents()->favouriteCurrentWallpaper();
    } catch (...) {
        fail();
    }
}

QList<WallpaperEntity> AutomationService::FindWallpapers(const QString &text)
{
    try {
        Intents *automation = intents();
        if (!automation->isReady())
            throw Intents::Failure(Intents::Failure::Case::NotReady);
        return automation->query().entities(text);
    } catch (...) {
        fail();
    }
    return {};
}

void AutomationService::SetFocusFilter(const QString &wallpaper, const QString &edition)
{
    try {
        const EditionOption option = editionArgument(edition);
        Intents *automation = intents();
        if (!wallpaper.isEmpty()) {
            wallpaperArgument(wallpaper);
            if (!automation->isReady())
                throw Intents::Failure(Intents::Failure::Case::NotReady);
            if (!automation->query().entity(wallpaper))
                throw Intents::Failure(Intents::Failure::Case::NotFound);
        }
        if (!m_focusFilter->setFilter(wallpaper, option))
            throw Defaults::NotSaved();
    } catch (...) {
        fail();
    }
}

void AutomationService::SignIn()
{
    try {
        requireAttached();
        // A sign-in under way goes on with its code, so that a second caller can approve it.
        if (m_account->status() == Account::Status::SignedOut
            || m_account->status() == Account::Status::Failed)
            m_account->signIn();
    } catch (...) {
        fail();
    }
}

void AutomationService::CancelSignIn()
{
    try {
        requireAttached();
        m_account->cancelSignIn();
    } catch (...) {
        fail();
    }
}

void AutomationService::SignOut()
{
    try {
        requireAttached();
        answerLater(m_account->signOut());
    } catch (...) {
        fail();
    }
}

void AutomationService::Refresh()
{
    try {
        requireAttached();
        answerLater(refresh(m_shop));
    } catch (...) {
        fail();
    }
}

QCoro::Task<> AutomationService::refresh(QPointer<Shop> shop)
{
    const auto failure = co_await shop->refresh();
    if (failure)
        throw Failed(*failure);
}

QString AutomationService::state() const
{
    return m_account ? accountState(m_account->status()) : u"signedOut"_s;
}

QString AutomationService::userCode() const
{
    return m_account ? m_account->userCode() : QString();
}

QString AutomationService::verificationURI() const
{
    return m_account ? m_account->verificationURI().toString() : QString();
}

QString AutomationService::signInMessage() const
{
    return m_account ? m_account->message() : QString();
}

QString AutomationService::libraryState() const
{
    if (m_shop) {
        switch (m_shop->status()) {
        case Shop::Status::Ready:
            return u"ready"_s;
        case Shop::Status::Failed:
            return u"failed"_s;
        case Shop::Status::Loading:
            break;
        }
    }
    return u"loading"_s;
}

QVariantMap AutomationService::sessionProperties() const
{
    return { { u"State"_s, state() },
             { u"UserCode"_s, userCode() },
             { u"VerificationURI"_s, verificationURI() },
             { u"Message"_s, signInMessage() },
             { u"LibraryState"_s, libraryState() } };
}

void AutomationService::announceSession()
{
    const QVariantMap now = sessionProperties();
    QVariantMap changed;
    for (auto it = now.cbegin(); it != now.cend(); ++it) {
        if (m_announced.value(it.key()) != it.value())
            changed.insert(it.key(), it.value());
    }
    m_announced = now;
    if (changed.isEmpty() || !m_bus)
        return;
    auto signal = QDBusMessage::createSignal(objectPath, u"org.freedesktop.DBus.Properties"_s,
                                             u"PropertiesChanged"_s);
    signal << QString(sessionInterface) << changed << QStringList();
    m_bus->send(signal);
}
