#pragma once

#include "panel_rules.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

class PanelSurface;
class PlasmaShell;
class PortalSetting;
class QIcon;
class QMenu;
class QPropertyAnimation;
class QSystemTrayIcon;
class QWindow;
class Views;

// Quennet's presence in the tray: a left click opens or closes the panel below the icon, a right
// click or Control-click shows the status menu.
class StatusItemController : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)

public:
    struct Actions {
        std::function<void()> openMain;
        std::function<void()> openSettings;
        std::function<void()> quit;
    };

    // The panel is made by the views the first time it opens; rootProperties are given to it
    // then. The views are asked for only then, so that they can be made late too.
    StatusItemController(Actions actions, const QIcon &icon, std::function<Views *()> views,
                         QVariantMap rootProperties, QObject *parent = nullptr);
    ~StatusItemController() override;

    [[nodiscard]] bool isShown() const { return m_shown; }
    [[nodiscard]] QSystemTrayIcon *trayIcon() const { return m_tray; }
    void setIcon(const QIcon &icon);

    void showPanel();
    void togglePanel();
    void showMenu();
    // The panel's content asked for this height.
    void resizePanel(double height);
    // Makes the panel's view now, without showing it (the self-test checks that it loads).
    [[nodiscard]] bool preparePanel();
    // Deletes the hidden panel's view; the next showPanel() makes it again.
    void releasePanel();

public Q_SLOTS:
    void closePanel();

Q_SIGNALS:
    void shownChanged();

private:
    void leftClicked();
    [[nodiscard]] QRect availableArea() const;
    [[nodiscard]] bool reducedMotion() const;
    void finishOpening();
    void finishClosing();

    Actions m_actions;
    std::function<Views *()> m_views;
    QVariantMap m_rootProperties;
    QSystemTrayIcon *m_tray;
    QMenu *m_menu;
    std::unique_ptr<PlasmaShell> m_plasmaShell;
    bool m_overWorkArea = false;
    PortalSetting *m_animations = nullptr;
    bool m_reducedMotion = false;
    PanelSurface *m_panel = nullptr;
    QWindow *m_window = nullptr; // the panel's
    QPropertyAnimation *m_animation = nullptr;
    QPropertyAnimation *m_fade = nullptr;
    PanelRules m_rules;
    bool m_shown = false;
    bool m_opening = false;
    double m_contentHeight = PanelRules::initialHeight;
};
