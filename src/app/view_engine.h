#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

class Views;

// The views, made when one is first needed and let go, with what they made, once none has been
// visible for a while: the QML runtime is most of what a session that only sits in the tray
// would otherwise hold.
class ViewEngine : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultIdle = std::chrono::minutes(1);
    // Makes the views, or returns nullptr, with the reason logged, when they cannot be had.
    using Maker = std::function<std::unique_ptr<Views>()>;

    // shown: whether any view is visible now. release: deletes every window and panel the views
    // made, and what only they use.
    ViewEngine(std::chrono::milliseconds idle, Maker make, std::function<bool()> shown,
               std::function<void()> release, QObject *parent = nullptr);
    ~ViewEngine() override;

    // The views, made now if need be; nullptr when they cannot be had.
    [[nodiscard]] Views *views();

    // A view was shown or hidden: the wait starts over, or stops while one is visible.
    void viewChanged();

private:
    void letGo();

    Maker m_make;
    std::function<bool()> m_shown;
    std::function<void()> m_release;
    QTimer m_idle;
    std::unique_ptr<Views> m_views;
};
