#pragma once

#include <QByteArray>
#include <QObject>
#include <QRect>
#include <optional>

class QSocketNotifier;
struct xcb_connection_t;

// The X root window's background as wallpaper setters leave it: the pixmap named by the
// _XROOTPMAP_ID property, samples of its pixels, and a signal when the property changes. Uses a
// connection of its own, so it works whatever platform plugin Qt runs on.
class X11RootWindow : public QObject {
    Q_OBJECT

public:
    // Connects to $DISPLAY; isValid() tells whether that worked.
    explicit X11RootWindow(QObject *parent = nullptr);
    ~X11RootWindow() override;

    [[nodiscard]] bool isValid() const { return m_root != 0; }
    [[nodiscard]] std::optional<quint32> rootPixmap() const;
    // The window manager's current workspace and workspace count (EWMH _NET_CURRENT_DESKTOP,
    // _NET_NUMBER_OF_DESKTOPS); none without a window manager that keeps them.
    [[nodiscard]] std::optional<quint32> currentDesktop() const;
    [[nodiscard]] std::optional<quint32> numberOfDesktops() const;
    // A grid of pixels of the background inside area: equal samples mean the same picture.
    [[nodiscard]] QByteArray fingerprint(const QRect &area) const;

Q_SIGNALS:
    void rootPixmapChanged();
    void currentDesktopChanged();

private:
    void readEvents();
    void drainLater() const;
    [[nodiscard]] std::optional<quint32> cardinal(quint32 atom) const;

    xcb_connection_t *m_connection = nullptr;
    quint32 m_root = 0;
    quint32 m_atom = 0;
    quint32 m_currentDesktop = 0;
    quint32 m_numberOfDesktops = 0;
    QSocketNotifier *m_notifier = nullptr;
};
