#include "helper_service.h"

#include "workspace_keeper.h"

#include <QCoreApplication>

HelperService::HelperService(QObject *owner, WorkspaceKeeper *keeper)
    : QDBusAbstractAdaptor(owner)
    , m_keeper(keeper)
{
}

void HelperService::Quit()
{
    QCoreApplication::quit();
}

void HelperService::PlacementsChanged(const QStringList & /*displayIds*/)
{
    m_keeper->placementsChanged();
    m_keeper->reapply();
}
