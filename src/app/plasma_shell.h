#pragma once

#include <memory>

class QWindow;
struct org_kde_plasma_shell;
struct org_kde_plasma_surface;
struct wl_event_queue;

// KWin's protocol for windows of the shell. Through it the panel opens under the pointer, which
// is on the tray icon just clicked, and stays out of the task manager and the window switcher.
class PlasmaShell {
public:
    // Null unless Qt runs on Wayland and the compositor offers the protocol.
    [[nodiscard]] static std::unique_ptr<PlasmaShell> connect();
    ~PlasmaShell();

    PlasmaShell(const PlasmaShell &) = delete;
    PlasmaShell &operator=(const PlasmaShell &) = delete;

    // Call right after show(), before the window draws its first frame: the compositor takes a
    // window's place from the pointer only then.
    void openAsPopup(QWindow *window);
    // Call before the window hides: its next show starts afresh.
    void closed();

private:
    PlasmaShell(wl_event_queue *queue, org_kde_plasma_shell *shell);

    wl_event_queue *m_queue;
    org_kde_plasma_shell *m_shell;
    org_kde_plasma_surface *m_surface = nullptr;
};
