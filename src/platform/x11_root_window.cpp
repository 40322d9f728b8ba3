#include "x11_root_window.h"

#include <QSocketNotifier>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace {
template<typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;

template<typename T> Reply<T> reply(T *value)
{
    return { value, &std::free };
}

constexpr int samplesPerSide = 8;
} // namespace

X11RootWindow::X11RootWindow(QObject *parent)
    : QObject(parent)
{
    m_connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(m_connection))
        return;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    if (!screen)
        return;
    const auto intern = [this](const char *name) -> quint32 {
        const auto atom = reply(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, uint16_t(std::strlen(name)), name),
            nullptr));
        return atom ? atom->atom : 0;
    };
    m_atom = intern("_XROOTPMAP_ID");
    m_currentDesktop = intern("_NET_CURRENT_DESKTOP");
    m_numberOfDesktops = intern("_NET_NUMBER_OF_DESKTOPS");
    if (!m_atom)
        return;
    // Our connection's own event mask on the root window: Qt's connection keeps its own.
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, screen->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
    m_root = screen->root;
    m_notifier =
        new QSocketNotifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &X11RootWindow::readEvents);
}

X11RootWindow::~X11RootWindow()
{
    delete m_notifier;
    xcb_disconnect(m_connection);
}

std::optional<quint32> X11RootWindow::rootPixmap() const
{
    if (!isValid())
        return std::nullopt;
    const auto property = reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, m_root, m_atom, XCB_ATOM_PIXMAP, 0, 1),
        nullptr));
    if (!property || property->type != XCB_ATOM_PIXMAP
        || xcb_get_property_value_length(property.get()) != 4)
        return std::nullopt;
    drainLater();
    return *static_cast<const quint32 *>(xcb_get_property_value(property.get()));
}

std::optional<quint32> X11RootWindow::cardinal(quint32 atom) const
{
    if (!isValid() || !atom)
        return std::nullopt;
    const auto property = reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, m_root, atom, XCB_ATOM_CARDINAL, 0, 1),
        nullptr));
    drainLater();
    if (!property || property->type != XCB_ATOM_CARDINAL
        || xcb_get_property_value_length(property.get()) != 4)
        return std::nullopt;
    return *static_cast<const quint32 *>(xcb_get_property_value(property.get()));
}

std::optional<quint32> X11RootWindow::currentDesktop() const
{
    return cardinal(m_currentDesktop);
}

std::optional<quint32> X11RootWindow::numberOfDesktops() const
{
    return cardinal(m_numberOfDesktops);
}

QByteArray X11RootWindow::fingerprint(const QRect &area) const
{
    const auto pixmap = rootPixmap();
    if (!pixmap || area.isEmpty())
        return {};
    // All requests first, then the replies: one round trip for the whole grid.
    QList<xcb_get_image_cookie_t> cookies;
    for (int row = 0; row < samplesPerSide; ++row) {
        for (int column = 0; column < samplesPerSide; ++column) {
            const int x = area.x() + (2 * column + 1) * area.width() / (2 * samplesPerSide);
            const int y = area.y() + (2 * row + 1) * area.height() / (2 * samplesPerSide);
            cookies.append(xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, *pixmap,
                                         int16_t(x), int16_t(y), 1, 1, ~0U));
        }
    }
    QByteArray samples;
    for (const xcb_get_image_cookie_t cookie : std::as_const(cookies)) {
        const auto image = reply(xcb_get_image_reply(m_connection, cookie, nullptr));
        if (!image)
            return {}; // the pixmap went away under us
        samples.append(reinterpret_cast<const char *>(xcb_get_image_data(image.get())),
                       xcb_get_image_data_length(image.get()));
    }
    drainLater();
    return samples;
}

void X11RootWindow::drainLater() const
{
    // Waiting for a reply may have queued events the socket notifier will not report again.
    QMetaObject::invokeMethod(const_cast<X11RootWindow *>(this), &X11RootWindow::readEvents,
                              Qt::QueuedConnection);
}

void X11RootWindow::readEvents()
{
    bool changed = false;
    bool switched = false;
    while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection)) {
        if ((event->response_type & ~0x80) == XCB_PROPERTY_NOTIFY) {
            const auto *notify = reinterpret_cast<xcb_property_notify_event_t *>(event);
            changed = changed || notify->atom == m_atom;
            switched = switched || (m_currentDesktop && notify->atom == m_currentDesktop);
        }
        std::free(event);
    }
    if (changed)
        Q_EMIT rootPixmapChanged();
    if (switched)
        Q_EMIT currentDesktopChanged();
}
