#pragma once

#include "views.h"

#include <QQuickView>

// The tray panel's frameless window. It tells its controller when it takes or loses the focus or
// the user presses Escape, and reports the height its content asks for.
class PanelWindow
    : public QQuickView
    , public PanelSurface {
    Q_OBJECT

public:
    PanelWindow(QQmlEngine *engine, Events events);

    // Shows the panel's view; false, with its errors logged, when it does not load.
    [[nodiscard]] bool load(const QUrl &source, const QVariantMap &roots);

    [[nodiscard]] QWindow *window() override { return this; }
    [[nodiscard]] QObject *content() override;
    void fitHeight(int height) override;
    void setOverWorkArea(bool over) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void watchContentHeight();
    void placeContent();
    Q_SLOT void requestClose();

    Events m_events;
    bool m_overWorkArea = false;
    int m_contentHeight = 0;
};
