#pragma once

#include <QObject>

// One Quennet per session: the first start owns the bus name app.quennet.Quennet; a later start
// asks that one to open its main window and then leaves.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.quennet.Quennet.Application")

public:
    explicit SingleInstance(QObject *parent = nullptr);

    // True when this process is the one instance (also when there is no session bus to ask).
    // False when another instance holds the name; it has been asked to open its main window.
    [[nodiscard]] bool claim();

public Q_SLOTS:
    Q_SCRIPTABLE void OpenMainWindow();

Q_SIGNALS:
    void openMainWindowRequested();
};
