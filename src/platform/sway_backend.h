#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

#include <chrono>

class QLocalSocket;

// sway, through its IPC socket ($SWAYSOCK): outputs with their EDID names, "output NAME bg FILE
// fill" per output, and workspace events. sway cannot say what swaybg shows, so the
// answer is what this backend set. Every request is awaited: the outputs are read at start and
// again on workspace events and Qt's screen changes, and screens() answers from the last reading.
class SwayBackend : public DesktopBackend {
    Q_OBJECT

public:
    // socket: $SWAYSOCK; stateFile: where what was set is kept across restarts.
    SwayBackend(QString socket, const QString &stateFile, QObject *parent = nullptr);
    ~SwayBackend() override;

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] QList<DesktopScreen> screens() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

    // How long sway may take to answer before a request fails.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

private:
    void readEvents();
    QCoro::Task<> readOutputs();

    QString m_socket;
    ShownPictures m_shown;
    QLocalSocket *m_events = nullptr;
    QByteArray m_buffer;
    QList<DesktopScreen> m_screens;
    bool m_reading = false;
    bool m_readAgain = false;
    std::chrono::milliseconds m_timeout = std::chrono::seconds(5);
};
