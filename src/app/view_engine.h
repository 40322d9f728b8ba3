#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

class QQmlEngine;

// The views' engine, made when a view is first needed and let go, with the views it made, once
// none has been visible for a while: the QML runtime is most of what a session that only sits in
// the tray would otherwise hold.
class ViewEngine : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultIdle = std::chrono::minutes(1);

    // shown: whether any view is visible now. release: deletes every view the engine made, and
    // what only they use.
    ViewEngine(std::chrono::milliseconds idle, std::function<bool()> shown,
               std::function<void()> release, QObject *parent = nullptr);
    ~ViewEngine() override;

    [[nodiscard]] QQmlEngine *engine();

    // A view was shown or hidden: the wait starts over, or stops while one is visible.
    void viewChanged();

private:
    void letGo();

    std::function<bool()> m_shown;
    std::function<void()> m_release;
    QTimer m_idle;
    QQmlEngine *m_engine = nullptr;
};
