#pragma once

#include "autostart_entry.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <memory>

class CancelToken;
class Clock;
class Defaults;
class HelperProcess;

// The workspace helper as the application sees it: its XDG autostart entry
// (app.quennet.Quennet.helper.desktop), registered while "Use on all workspaces" is on, the
// status of that registration, and the running helper, which hears of every new placement. A
// helper left running by an older build is ended and registered again at start-up.
class SpacesHelper : public QObject {
    Q_OBJECT
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(bool isWanted READ isWanted NOTIFY isWantedChanged)

public:
    enum class Status {
        NotRegistered,
        Enabled,
        RequiresApproval, // turned off in your desktop settings: the user must allow it there
        NotFound, // the entry names a program that is not there
    };
    Q_ENUM(Status)

    struct Services {
        Defaults *defaults = nullptr;
        HelperProcess *process = nullptr;
        std::shared_ptr<Clock> clock;
        QString program; // the quennet-helper executable the entry starts
        QString build; // this build: "helperStartedByBuild" compares with it
        QString autostartFolder; // $XDG_CONFIG_HOME/autostart when empty
    };

    explicit SpacesHelper(Services services, QObject *parent = nullptr);
    ~SpacesHelper() override;

    [[nodiscard]] Status status() const { return m_status; }
    [[nodiscard]] bool isWanted() const { return m_isWanted; }
    [[nodiscard]] QString entryPath() const { return m_entry.path(); }

    // On registers, stores this build under "helperStartedByBuild" and starts the helper; off
    // unregisters and ends it. A failure is logged; the status is read again in every case.
    void setWanted(bool on);
    // Once per launch: a registered helper of another build is stale. It is ended, unregistered,
    // and after 10 s registered again.
    [[nodiscard]] QCoro::Task<> checkRunning();
    // The start-up sequence: checkRunning, then setWanted(wanted). Never throws.
    QCoro::Task<> start(bool wanted);

    void wallpaperSet(const QStringList &displayIds);

Q_SIGNALS:
    void statusChanged();
    void isWantedChanged();

private:
    static QCoro::Task<> checkRunning(QPointer<SpacesHelper> self,
                                      std::shared_ptr<CancelToken> token,
                                      std::shared_ptr<Clock> clock);
    void registerHelper();
    void unregisterHelper();
    void readStatus();

    Services m_services;
    AutostartEntry m_entry;
    Status m_status = Status::NotRegistered;
    bool m_isWanted = false;
    bool m_hasCheckedRunning = false;
    std::shared_ptr<CancelToken> m_token;
};
