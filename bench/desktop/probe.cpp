// The stopwatch of bench/desktop/run: starts a command and reports how long until the desktop
// shows its effect. Plain Xlib and GIO, so that it costs the measured program next to nothing.
//
//   bench_desktop_probe tray TIMEOUT COMMAND...
//       starts COMMAND once no icon sits in trayer's panel, and prints "PID SECONDS" when its
//       icon is embedded (a window inside one of the panel's sockets); COMMAND keeps running
//   bench_desktop_probe tray-gone TIMEOUT
//       waits until the panel holds no icon
//   bench_desktop_probe gsettings SCHEMA KEY TIMEOUT COMMAND...
//       runs COMMAND and prints the SECONDS until the key differs from what it was before

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <gio/gio.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double now()
{
    timespec time {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

int fail(const char *message)
{
    std::fprintf(stderr, "bench_desktop_probe: %s\n", message);
    return 2;
}

pid_t spawn(char **command)
{
    const pid_t pid = fork();
    if (pid == 0) {
        // Our standard output is the answer; the command's goes with its errors.
        dup2(STDERR_FILENO, STDOUT_FILENO);
        execvp(command[0], command);
        std::fprintf(stderr, "bench_desktop_probe: cannot run %s: %s\n", command[0],
                     std::strerror(errno));
        _exit(127);
    }
    return pid;
}

// Which windows are the children of `window`; empty when it is gone.
struct Children {
    Window *windows = nullptr;
    unsigned int count = 0;
    explicit Children(Display *display, Window window)
    {
        Window root = 0;
        Window parent = 0;
        if (XQueryTree(display, window, &root, &parent, &windows, &count) == 0) {
            windows = nullptr;
            count = 0;
        }
    }
    ~Children()
    {
        if (windows != nullptr)
            XFree(windows);
    }
    Children(const Children &) = delete;
    Children &operator=(const Children &) = delete;
};

bool isPanel(Display *display, Window window)
{
    XClassHint hint {};
    if (XGetClassHint(display, window, &hint) == 0)
        return false;
    const bool panel = hint.res_name != nullptr && std::strcmp(hint.res_name, "panel") == 0
        && hint.res_class != nullptr && std::strcmp(hint.res_class, "trayer") == 0;
    XFree(hint.res_name);
    XFree(hint.res_class);
    return panel;
}

Window findPanel(Display *display)
{
    const Children top(display, DefaultRootWindow(display));
    for (unsigned int i = 0; i < top.count; ++i) {
        if (isPanel(display, top.windows[i]))
            return top.windows[i];
    }
    return 0;
}

// Trayer keeps a socket per icon: an icon is embedded once a socket holds the icon's window.
// New sockets are watched as they come, so that the embedding wakes the loop below.
bool hasIcon(Display *display, Window panel)
{
    const Children sockets(display, panel);
    bool found = false;
    for (unsigned int i = 0; i < sockets.count; ++i) {
        XSelectInput(display, sockets.windows[i], SubstructureNotifyMask);
        const Children icons(display, sockets.windows[i]);
        found = found || icons.count > 0;
    }
    return found;
}

// Waits for X events (or 5 ms) until the panel's state is `wanted`.
bool waitForIcon(Display *display, Window panel, bool wanted, double deadline)
{
    XSelectInput(display, panel, SubstructureNotifyMask);
    pollfd connection { .fd = ConnectionNumber(display), .events = POLLIN, .revents = 0 };
    while (hasIcon(display, panel) != wanted) {
        if (now() > deadline)
            return false;
        XFlush(display);
        poll(&connection, 1, 5);
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
        }
    }
    return true;
}

int ignoreErrors(Display *, XErrorEvent *)
{
    return 0; // a socket may go while it is looked at
}

int tray(double timeout, char **command)
{
    Display *display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return fail("cannot open the display");
    XSetErrorHandler(ignoreErrors);
    const Window panel = findPanel(display);
    if (panel == 0)
        return fail("trayer's panel is not on the display");
    if (!waitForIcon(display, panel, false, now() + (command == nullptr ? timeout : 10)))
        return command == nullptr ? 1 : fail("an icon is still in the panel");
    if (command == nullptr)
        return 0;
    const double start = now();
    const pid_t pid = spawn(command);
    if (!waitForIcon(display, panel, true, start + timeout)) {
        std::printf("%d timeout\n", int(pid));
        return 1;
    }
    std::printf("%d %.4f\n", int(pid), now() - start);
    return 0;
}

struct Watch {
    GSettings *settings;
    const char *key;
    GVariant *before;
    GMainLoop *loop;
    bool changed = false;
};

void keyChanged(GSettings *, const char *, gpointer data)
{
    auto *watch = static_cast<Watch *>(data);
    GVariant *value = g_settings_get_value(watch->settings, watch->key);
    if (!g_variant_equal(value, watch->before)) {
        watch->changed = true;
        g_main_loop_quit(watch->loop);
    }
    g_variant_unref(value);
}

gboolean timedOut(gpointer data)
{
    g_main_loop_quit(static_cast<GMainLoop *>(data));
    return G_SOURCE_REMOVE;
}

int gsettings(const char *schema, const char *key, double timeout, char **command)
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    GSettingsSchema *found =
        source != nullptr ? g_settings_schema_source_lookup(source, schema, TRUE) : nullptr;
    if (found == nullptr || !g_settings_schema_has_key(found, key))
        return fail("no such GSettings key");
    g_settings_schema_unref(found);
    Watch watch { .settings = g_settings_new(schema),
                  .key = key,
                  .before = nullptr,
                  .loop = g_main_loop_new(nullptr, FALSE) };
    watch.before = g_settings_get_value(watch.settings, key);
    const std::string signal = std::string("changed::") + key;
    g_signal_connect(watch.settings, signal.c_str(), G_CALLBACK(keyChanged), &watch);
    // Reading the key subscribes to its changes; the value is then current.
    while (g_main_context_iteration(nullptr, FALSE)) { }
    const double start = now();
    const pid_t pid = spawn(command);
    g_timeout_add(guint(timeout * 1000), timedOut, watch.loop);
    g_main_loop_run(watch.loop);
    const double seconds = now() - start;
    int status = 0;
    waitpid(pid, &status, 0);
    if (!watch.changed) {
        std::printf("timeout\n");
        return 1;
    }
    std::printf("%.4f\n", seconds);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "tray" && argc > 3)
        return tray(std::atof(argv[2]), argv + 3);
    if (mode == "tray-gone" && argc == 3)
        return tray(std::atof(argv[2]), nullptr);
    if (mode == "gsettings" && argc > 5)
        return gsettings(argv[2], argv[3], std::atof(argv[4]), argv + 5);
    std::fprintf(stderr,
                 "usage: bench_desktop_probe tray TIMEOUT COMMAND...\n"
                 "       bench_desktop_probe tray-gone TIMEOUT\n"
                 "       bench_desktop_probe gsettings SCHEMA KEY TIMEOUT COMMAND...\n");
    return 2;
}
