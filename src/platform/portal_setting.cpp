#include "portal_setting.h"

#include "dbus_values.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

using namespace Qt::Literals::StringLiterals;

namespace {
const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;
const auto interface = u"org.freedesktop.portal.Settings"_s;
} // namespace

PortalSetting::PortalSetting(QDBusConnection bus, QString group, QString key, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_group(std::move(group))
    , m_key(std::move(key))
{
    if (!m_bus.isConnected()) {
        m_known = true;
        return;
    }
    m_bus.connect(service, path, interface, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QDBusMessage)));
    read();
}

void PortalSetting::read()
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    message << m_group << m_key;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                const QDBusMessage reply = call->reply();
                // A change heard meanwhile is newer than this answer. Without a portal, or with
                // one that does not know the setting, the answer is that there is none.
                if (m_heard)
                    return;
                const bool answered =
                    reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
                take(answered ? reply.arguments().constFirst() : QVariant());
            });
}

void PortalSetting::settingChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() != 3 || arguments[0].toString() != m_group
        || arguments[1].toString() != m_key)
        return;
    m_heard = true;
    take(arguments[2]);
}

void PortalSetting::take(const QVariant &value)
{
    const QVariant unwrapped = unwrap(value);
    if (unwrapped == m_value && m_known)
        return;
    m_value = unwrapped;
    m_known = true;
    Q_EMIT changed();
}
