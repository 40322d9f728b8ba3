#include "single_instance.h"

#include "application_folder.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLoggingCategory>

using namespace Qt::Literals::StringLiterals;

Q_LOGGING_CATEGORY(lcInstance, "app.quennet.Quennet.Instance")

namespace {
constexpr auto objectPath = "/app/quennet/Quennet/Application"_L1;
}

SingleInstance::SingleInstance(QObject *parent)
    : QObject(parent)
{
}

bool SingleInstance::claim()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCWarning(lcInstance) << "No session bus: running without the single-instance guard";
        return true;
    }
    const QString name = QLatin1StringView(bundleIdentifier);
    bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    const auto reply = bus.interface()->registerService(
        name, QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        return true;
    }
    bus.unregisterObject(objectPath);
    qCInfo(lcInstance) << "Quennet is already running: asking it to open its main window";
    auto call = QDBusMessage::createMethodCall(name, objectPath,
                                               "app.quennet.Quennet.Application"_L1,
                                               "OpenMainWindow"_L1);
    bus.call(call, QDBus::Block, 5000);
    return false;
}

void SingleInstance::OpenMainWindow()
{
    Q_EMIT openMainWindowRequested();
}
