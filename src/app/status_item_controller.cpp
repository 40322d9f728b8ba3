#include "status_item_controller.h"

#include "plasma_shell.h"
#include "portal_setting.h"
#include "views.h"

#include <QApplication>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QMenu>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QWindow>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int openingMs = 200;
constexpr int closingMs = 140;

bool onGnome()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"GNOME"_s);
}

} // namespace

StatusItemController::StatusItemController(Actions actions, const QIcon &icon,
                                           std::function<Views *()> views,
                                           QVariantMap rootProperties, QObject *parent)
    : QObject(parent)
    , m_actions(std::move(actions))
    , m_views(std::move(views))
    , m_rootProperties(std::move(rootProperties))
    , m_tray(new QSystemTrayIcon(icon, this))
    , m_menu(new QMenu)
{
    // GNOME's "enable-animations", as the desktop portal reports it, for the slide that only X11
    // allows: read once and followed, so that opening the panel never waits for the portal. Tests
    // set the answer instead.
    if (qEnvironmentVariableIsSet("QUENNET_REDUCED_MOTION")) {
        m_reducedMotion = qEnvironmentVariableIntValue("QUENNET_REDUCED_MOTION") != 0;
    } else if (QGuiApplication::platformName() == "xcb"_L1) {
        m_animations =
            new PortalSetting(QDBusConnection::sessionBus(), u"org.gnome.desktop.interface"_s,
                              u"enable-animations"_s, this);
    }
    m_tray->setToolTip(u"Quennet"_s);
    // Handed to the tray, so that the shell draws it where the icon is: hosts that speak
    // StatusNotifierItem read it over D-Bus, and no window of ours has to be placed.
    m_menu->addAction(tr("Open Quennet"), this, [this] { m_actions.openMain(); });
    m_menu->addAction(tr("Settings…"), QKeySequence(u"Ctrl+,"_s), this,
                      [this] { m_actions.openSettings(); });
    m_menu->addSeparator();
    m_menu->addAction(tr("Quit Quennet"), QKeySequence::Quit, this, [this] { m_actions.quit(); });
    connect(m_menu, &QMenu::aboutToShow, this, &StatusItemController::closePanel);
    m_tray->setContextMenu(m_menu);
    connect(m_tray, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    leftClicked();
                }
            });
    m_tray->show();
}

StatusItemController::~StatusItemController()
{
    delete m_panel;
    delete m_menu;
}

void StatusItemController::setIcon(const QIcon &icon)
{
    m_tray->setIcon(icon);
}

void StatusItemController::leftClicked()
{
    if (QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier) {
        showMenu();
    } else {
        togglePanel();
    }
}

void StatusItemController::togglePanel()
{
    if (m_shown) {
        closePanel();
    } else if (m_rules.mayOpen(QDateTime::currentDateTimeUtc())) {
        showPanel();
    }
}

bool StatusItemController::preparePanel()
{
    if (m_panel) {
        return true;
    }
    Views *views = m_views();
    if (!views) {
        return false;
    }
    // Only X11 lets the panel put itself next to the icon. KWin puts it under the pointer when
    // asked; GNOME puts new windows where it likes, so the panel covers the work area there.
    // Asked when the panel is first needed: a start at login shows none.
    if (QGuiApplication::platformName() == "wayland"_L1) {
        m_plasmaShell = PlasmaShell::connect();
        m_overWorkArea = !m_plasmaShell && onGnome();
    }
    m_panel =
        views->panel(m_rootProperties,
                     { .focusTaken = [this] { m_rules.focusTaken(); },
                       .resignedFocus =
                           [this] {
                               if (m_shown && m_rules.focusLost(QDateTime::currentDateTimeUtc())) {
                                   closePanel();
                               }
                           },
                       .cancelled = [this] { closePanel(); },
                       .closeRequested = [this] { closePanel(); },
                       .contentHeightChanged = [this](double height) { resizePanel(height); } });
    if (!m_panel) {
        return false;
    }
    m_window = m_panel->window();
    m_panel->setOverWorkArea(m_overWorkArea);
    m_window->setTitle(tr("Quennet Panel"));
    m_animation = new QPropertyAnimation(m_window, "y", this);
    // X11 fades the window, where a compositor shows it; Wayland has no window opacity, so the
    // content fades over the clear window.
    m_fade = QGuiApplication::platformName() == "xcb"_L1
        ? new QPropertyAnimation(m_window, "opacity", this)
        : new QPropertyAnimation(m_panel->content(), "opacity", this);
    m_fade->setDuration(closingMs);
    m_fade->setEasingCurve(QEasingCurve::InQuad);
    m_fade->setEndValue(0.0);
    connect(m_fade, &QPropertyAnimation::finished, this, &StatusItemController::finishClosing);
    return true;
}

void StatusItemController::releasePanel()
{
    if (!m_panel || m_shown) {
        return;
    }
    // A fade still running ends as it would have.
    if (m_fade && m_fade->state() == QAbstractAnimation::Running) {
        finishClosing();
    }
    delete std::exchange(m_animation, nullptr);
    delete std::exchange(m_fade, nullptr);
    m_window = nullptr;
    delete std::exchange(m_panel, nullptr);
}

QRect StatusItemController::availableArea() const
{
    const QRect icon = m_tray->geometry();
    QScreen *screen = icon.isEmpty() ? nullptr : QGuiApplication::screenAt(icon.center());
    if (!screen) {
        screen = QGuiApplication::primaryScreen();
    }
    return screen ? screen->availableGeometry() : QRect();
}

bool StatusItemController::reducedMotion() const
{
    if (!m_animations) {
        return m_reducedMotion;
    }
    // Animations are on while nobody says otherwise.
    const QVariant enabled = m_animations->value();
    return enabled.metaType() == QMetaType::fromType<bool>() && !enabled.toBool();
}

void StatusItemController::showPanel()
{
    if (m_shown || !preparePanel()) {
        return;
    }
    m_shown = true;
    Q_EMIT shownChanged();
    // Shown again while it faded: it stays.
    m_fade->stop();
    m_fade->targetObject()->setProperty("opacity", 1.0);
    const QRect frame =
        PanelRules::frame(m_tray->geometry(), availableArea(), int(std::lround(m_contentHeight)));
    m_animation->stop();
    m_panel->fitHeight(frame.height());
    if (m_overWorkArea) {
        m_window->showMaximized();
        m_window->requestActivate();
        finishOpening();
        return;
    }
    // Only a window that can move itself slides into place.
    if (QGuiApplication::platformName() != "xcb"_L1 || reducedMotion()) {
        m_window->setGeometry(frame);
        m_window->show();
        if (m_plasmaShell) {
            m_plasmaShell->openAsPopup(m_window);
        }
        m_window->requestActivate();
        finishOpening();
        return;
    }
    m_opening = true;
    m_window->setGeometry(frame.translated(0, -PanelRules::openingLift));
    m_window->setOpacity(0);
    m_window->show();
    m_window->requestActivate();
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({ 0.2, 0.9 }, { 0.3, 1.0 }, { 1.0, 1.0 });
    m_animation->setDuration(openingMs);
    m_animation->setEasingCurve(curve);
    m_animation->setStartValue(m_window->y());
    m_animation->setEndValue(frame.y());
    disconnect(m_animation, &QPropertyAnimation::finished, nullptr, nullptr);
    connect(m_animation, &QPropertyAnimation::valueChanged, m_window,
            [this] { m_window->setOpacity(m_animation->currentTime() / double(openingMs)); });
    connect(m_animation, &QPropertyAnimation::finished, this, &StatusItemController::finishOpening);
    m_animation->start();
}

void StatusItemController::finishOpening()
{
    m_opening = false;
    m_window->setOpacity(1);
    disconnect(m_animation, nullptr, m_window, nullptr);
    // A height that arrived while the panel moved is applied now.
    if (PanelRules::resizes(m_window->height(), m_contentHeight)) {
        m_panel->fitHeight(int(std::lround(m_contentHeight)));
    }
}

void StatusItemController::closePanel()
{
    if (!m_shown) {
        return;
    }
    m_shown = false;
    m_opening = false;
    Q_EMIT shownChanged();
    m_animation->stop();
    disconnect(m_animation, nullptr, m_window, nullptr);
    if (reducedMotion()) {
        finishClosing();
        return;
    }
    m_fade->setStartValue(m_fade->targetObject()->property("opacity"));
    m_fade->start();
}

void StatusItemController::finishClosing()
{
    if (m_shown) {
        return;
    }
    m_fade->stop();
    if (m_plasmaShell) {
        m_plasmaShell->closed();
    }
    m_window->hide();
    m_rules.hidden();
    m_fade->targetObject()->setProperty("opacity", 1.0);
}

void StatusItemController::resizePanel(double height)
{
    if (height <= 0) {
        return;
    }
    m_contentHeight = height;
    if (m_opening || !m_panel || !m_shown) {
        return;
    }
    if (PanelRules::resizes(m_window->height(), height)) {
        // The top edge stays where it is: the panel hangs from the tray.
        m_panel->fitHeight(int(std::lround(height)));
    }
}

void StatusItemController::showMenu()
{
    closePanel();
    // Only X11 lets a client put a menu where it likes; on Wayland the tray shows it.
    if (QGuiApplication::platformName() == "xcb"_L1) {
        const QRect icon = m_tray->geometry();
        m_menu->popup(icon.isEmpty() ? QCursor::pos() : icon.bottomLeft());
    }
}
