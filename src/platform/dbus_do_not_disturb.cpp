#include "dbus_do_not_disturb.h"

#include "dbus_values.h"
#include "logging.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto notifications = u"org.freedesktop.Notifications"_s;
const auto notificationsPath = u"/org/freedesktop/Notifications"_s;
const auto properties = u"org.freedesktop.DBus.Properties"_s;

const auto xfconf = u"org.xfce.Xfconf"_s;
const auto xfconfPath = u"/org/xfce/Xfconf"_s;
const auto channel = u"xfce4-notifyd"_s;
const auto dndProperty = u"/do-not-disturb"_s;

// Errors that mean there is nothing to read: no server, or no such setting yet. Off.
bool meansOff(const QDBusError &error)
{
    static const QStringList nothing { u"org.freedesktop.DBus.Error.ServiceUnknown"_s,
                                       u"org.freedesktop.DBus.Error.NameHasNoOwner"_s,
                                       u"org.freedesktop.DBus.Error.UnknownProperty"_s,
                                       u"org.freedesktop.DBus.Error.InvalidArgs"_s,
                                       u"org.xfce.Xfconf.Error.PropertyNotFound"_s };
    return nothing.contains(error.name());
}

// Calls a method and hands its first answer to take; nothing to read is off. Any other failure
// leaves the state as it was and asks again a second later, since a busy desktop answers later.
void ask(const QDBusConnection &bus, QDBusMessage message, QObject *receiver,
         std::function<void(const QVariant &)> take, std::function<void()> again)
{
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), receiver);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, receiver,
                     [receiver, take = std::move(take),
                      again = std::move(again)](QDBusPendingCallWatcher *call) {
                         call->deleteLater();
                         const QDBusMessage reply = call->reply();
                         if (reply.type() == QDBusMessage::ReplyMessage) {
                             take(unwrap(reply.arguments().value(0)));
                         } else if (meansOff(QDBusError(reply))) {
                             take(QVariant());
                         } else {
                             qCWarning(lcDoNotDisturb,
                                       "Couldn't read the Do Not Disturb filter: %s",
                                       qUtf8Printable(reply.errorMessage()));
                             QTimer::singleShot(std::chrono::seconds(1), receiver, again);
                         }
                     });
}
} // namespace

NotificationsDoNotDisturb::NotificationsDoNotDisturb(QDBusConnection bus, QObject *parent)
    : DoNotDisturb(parent)
    , m_bus(std::move(bus))
{
    if (!m_bus.isConnected()) {
        qCInfo(lcDoNotDisturb) << "No session bus: Do Not Disturb is never on";
        setOn(false);
        return;
    }
    m_bus.connect(notifications, notificationsPath, properties, u"PropertiesChanged"_s, this,
                  SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    // A server that starts or ends later: Plasma's comes up with the session.
    auto *watcher = new QDBusServiceWatcher(notifications, m_bus,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &NotificationsDoNotDisturb::read);
    read();
}

QString NotificationsDoNotDisturb::name() const
{
    return u"org.freedesktop.Notifications Inhibited"_s;
}

void NotificationsDoNotDisturb::read()
{
    auto message =
        QDBusMessage::createMethodCall(notifications, notificationsPath, properties, u"Get"_s);
    message << notifications << u"Inhibited"_s;
    ask(
        m_bus, message, this, [this](const QVariant &value) { setOn(value.toBool()); },
        [this] { read(); });
}

void NotificationsDoNotDisturb::propertiesChanged(const QString &interface,
                                                  const QVariantMap &changed,
                                                  const QStringList &invalidated)
{
    if (interface != notifications)
        return;
    if (changed.contains(u"Inhibited"_s))
        setOn(unwrap(changed.value(u"Inhibited"_s)).toBool());
    else if (invalidated.contains(u"Inhibited"_s))
        read();
}

XfconfDoNotDisturb::XfconfDoNotDisturb(QDBusConnection bus, QObject *parent)
    : DoNotDisturb(parent)
    , m_bus(std::move(bus))
{
    if (!m_bus.isConnected()) {
        qCInfo(lcDoNotDisturb) << "No session bus: Do Not Disturb is never on";
        setOn(false);
        return;
    }
    // From any sender: xfconfd is started on demand, perhaps after this, and a match on its
    // name would miss it.
    const bool following = m_bus.connect(QString(), xfconfPath, xfconf, u"PropertyChanged"_s, this,
                                         SLOT(propertySignal(QDBusMessage)))
        && m_bus.connect(QString(), xfconfPath, xfconf, u"PropertyRemoved"_s, this,
                         SLOT(propertySignal(QDBusMessage)));
    if (!following)
        qCWarning(lcDoNotDisturb) << "Not told of changes:" << m_bus.lastError().message();
    read();
}

QString XfconfDoNotDisturb::name() const
{
    return u"xfconf xfce4-notifyd /do-not-disturb"_s;
}

void XfconfDoNotDisturb::read()
{
    auto message = QDBusMessage::createMethodCall(xfconf, xfconfPath, xfconf, u"GetProperty"_s);
    message << channel << dndProperty;
    ask(
        m_bus, message, this, [this](const QVariant &value) { setOn(value.toBool()); },
        [this] { read(); });
}

void XfconfDoNotDisturb::propertySignal(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2 || arguments[0].toString() != channel
        || arguments[1].toString() != dndProperty)
        return;
    // PropertyChanged carries the new value; PropertyRemoved leaves it off.
    setOn(message.member() == "PropertyChanged"_L1 && arguments.size() == 3
          && unwrap(arguments[2]).toBool());
}
