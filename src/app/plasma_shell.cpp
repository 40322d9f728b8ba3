#include "plasma_shell.h"

#include "plasma-shell-client-protocol.h"

#include <QGuiApplication>
#include <QWindow>
#include <cstring>
#include <qpa/qplatformnativeinterface.h>

namespace {

// open_under_cursor came with this version.
constexpr uint32_t neededVersion = 7;

wl_display *qtDisplay()
{
    if (QGuiApplication::platformName() != QLatin1String("wayland")) {
        return nullptr;
    }
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    return native ? static_cast<wl_display *>(native->nativeResourceForIntegration("wl_display"))
                  : nullptr;
}

void announced(void *data, wl_registry *registry, uint32_t name, const char *interface,
               uint32_t version)
{
    if (std::strcmp(interface, org_kde_plasma_shell_interface.name) == 0
        && version >= neededVersion) {
        *static_cast<org_kde_plasma_shell **>(data) = static_cast<org_kde_plasma_shell *>(
            wl_registry_bind(registry, name, &org_kde_plasma_shell_interface, neededVersion));
    }
}

void withdrawn(void * /*data*/, wl_registry * /*registry*/, uint32_t /*name*/) { }

constexpr wl_registry_listener registryListener { announced, withdrawn };

} // namespace

std::unique_ptr<PlasmaShell> PlasmaShell::connect()
{
    wl_display *display = qtDisplay();
    if (!display) {
        return nullptr;
    }
    // A queue of our own, so that the round trip dispatches none of Qt's events.
    wl_event_queue *queue = wl_display_create_queue(display);
    auto *wrapped = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapped), queue);
    wl_registry *registry = wl_display_get_registry(wrapped);
    wl_proxy_wrapper_destroy(wrapped);
    org_kde_plasma_shell *shell = nullptr;
    wl_registry_add_listener(registry, &registryListener, &shell);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    if (!shell) {
        wl_event_queue_destroy(queue);
        return nullptr;
    }
    return std::unique_ptr<PlasmaShell>(new PlasmaShell(queue, shell));
}

PlasmaShell::PlasmaShell(wl_event_queue *queue, org_kde_plasma_shell *shell)
    : m_queue(queue)
    , m_shell(shell)
{
}

PlasmaShell::~PlasmaShell()
{
    closed();
    org_kde_plasma_shell_destroy(m_shell);
    wl_event_queue_destroy(m_queue);
}

void PlasmaShell::openAsPopup(QWindow *window)
{
    closed();
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    auto *surface = static_cast<wl_surface *>(native->nativeResourceForWindow("surface", window));
    if (!surface) {
        return;
    }
    m_surface = org_kde_plasma_shell_get_surface(m_shell, surface);
    org_kde_plasma_surface_set_skip_taskbar(m_surface, 1);
    org_kde_plasma_surface_set_skip_switcher(m_surface, 1);
    org_kde_plasma_surface_open_under_cursor(m_surface);
}

void PlasmaShell::closed()
{
    if (m_surface) {
        org_kde_plasma_surface_destroy(m_surface);
        m_surface = nullptr;
    }
}
