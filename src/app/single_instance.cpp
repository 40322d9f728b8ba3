#include "single_instance.h"

#include "application_folder.h"
#include "logging.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariantMap>

using namespace Qt::Literals::StringLiterals;

bool SingleInstance::claim(const QString &action)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCWarning(lcInstance) << "No session bus: running without the single-instance guard";
        return true;
    }
    const QString name = QLatin1StringView(bundleIdentifier);
    const auto reply =
        bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        return true;
    }
    qCInfo(lcInstance) << "Quennet is already running: handing it this start";
    // The launcher's token lets the running instance's window take the focus on Wayland.
    QVariantMap platformData;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        platformData.insert(u"activation-token"_s, token);
    auto call = QDBusMessage::createMethodCall(
        name, u"/app/quennet/Quennet"_s, u"org.freedesktop.Application"_s,
        action.isEmpty() ? u"Activate"_s : u"ActivateAction"_s);
    if (action.isEmpty())
        call << platformData;
    else
        call << action << QVariantList() << platformData;
    bus.call(call, QDBus::Block, 5000);
    return false;
}
