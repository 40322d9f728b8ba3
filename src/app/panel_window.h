#pragma once

#include <QQuickView>

// The tray panel's frameless window. It tells its controller when it takes or loses the focus or
// the user presses Escape, and reports the height its content asks for.
class PanelWindow : public QQuickView {
    Q_OBJECT

public:
    PanelWindow(QQmlEngine *engine, QWindow *parent = nullptr);

    // The panel is as tall as its content, and only the content changes that.
    void fitHeight(int height);

    // Shown maximised over the work area, clear but for the panel at its top right, so that a
    // click anywhere else closes it: for a shell that places windows itself and tells a window
    // nothing of a click on the desktop.
    void setOverWorkArea(bool over);

Q_SIGNALS:
    void focusTaken();
    void resignedFocus();
    void cancelled();
    void contentHeightChanged(double height);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void watchContentHeight();
    void placeContent();

    bool m_overWorkArea = false;
    int m_contentHeight = 0;
};
