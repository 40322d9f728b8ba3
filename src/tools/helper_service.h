#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>

class WorkspaceKeeper;

// The helper's own D-Bus interface (app.quennet.Quennet.Helper): the application tells it of new
// placements, and a newer build ends it with Quit.
class HelperService : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.quennet.Quennet.Helper")

public:
    HelperService(QObject *owner, WorkspaceKeeper *keeper);

public Q_SLOTS:
    void Quit();
    void PlacementsChanged(const QStringList &displayIds);

private:
    WorkspaceKeeper *m_keeper;
};
