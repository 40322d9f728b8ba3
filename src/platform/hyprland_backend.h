#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

#include <chrono>

class QLocalSocket;

// Hyprland with hyprpaper, through their IPC sockets in $XDG_RUNTIME_DIR/hypr/SIGNATURE/
// ($HYPRLAND_INSTANCE_SIGNATURE): monitors from Hyprland's "j/monitors", pictures by hyprpaper's
// "preload FILE" then "wallpaper MONITOR,FILE" (what `hyprctl hyprpaper` sends), and workspace
// events from Hyprland's event socket. hyprpaper cannot say what it shows, so the answer is what
// this backend set. Only hyprpaper releases that take these text commands are understood; any
// other answer than "ok" is a failure. Every request is awaited: monitors are read at start and
// again on Hyprland's monitor events and Qt's screen changes, and screens() answers from the
// last reading.
class HyprlandBackend : public DesktopBackend {
    Q_OBJECT

public:
    // folder: Hyprland's instance folder; stateFile: where what was set is kept across restarts.
    HyprlandBackend(QString folder, const QString &stateFile, QObject *parent = nullptr);
    ~HyprlandBackend() override;

    // The instance folder of the running Hyprland; empty when there is none.
    [[nodiscard]] static QString instanceFolder();

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] QList<DesktopScreen> screens() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

    // How long Hyprland and hyprpaper may take to answer before a request fails.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

private:
    void readEvents();
    QCoro::Task<> readMonitors();

    QString m_folder;
    ShownPictures m_shown;
    QLocalSocket *m_events;
    QByteArray m_buffer;
    // None until Hyprland has listed them.
    std::optional<QList<DesktopScreen>> m_monitors;
    bool m_reading = false;
    bool m_readAgain = false;
    std::chrono::milliseconds m_timeout = std::chrono::seconds(5);
};
