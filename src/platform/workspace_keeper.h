#pragma once

#include "placement_records.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <memory>

class CancelToken;
class Clock;
class DesktopBackend;

// What quennet-helper does. On desktops that keep one picture per workspace (XFCE without its
// single-workspace mode), it puts each display's placement from "placements.json" on the
// workspace switched to, while "Use on all workspaces" is on; when the user chooses another
// picture for a display in the desktop's settings, it lets that placement go and says so in
// "released.json". Where the desktop shares one picture across workspaces it does nothing.
class WorkspaceKeeper : public QObject {
    Q_OBJECT

public:
    WorkspaceKeeper(DesktopBackend *backend, PlacementRecords records, std::shared_ptr<Clock> clock,
                    QObject *parent = nullptr);
    ~WorkspaceKeeper() override;

    // The helper's first look: reads what the desktop shows, then puts back what is missing.
    QCoro::Task<> start();

    // Quennet has set new placements: a picture change it causes is not the user's.
    void placementsChanged();

    // Puts every display's placement back where the workspace shows something else. Never
    // throws: a refusal is logged.
    QCoro::Task<> reapply();
    // Lets go of the placements whose display now shows a picture the user chose.
    void releaseChosen();

Q_SIGNALS:
    void reapplied(const QString &displayId);
    void released(const QString &displayId);

private:
    static QCoro::Task<> settleThenCheck(QPointer<WorkspaceKeeper> self,
                                         std::shared_ptr<CancelToken> token,
                                         std::shared_ptr<Clock> clock);
    [[nodiscard]] bool isKeeping(const PlacementFile &file) const;
    void picturesChanged();

    DesktopBackend *m_backend;
    PlacementRecords m_records;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<CancelToken> m_settling;
    bool m_reapplying = false;
};
