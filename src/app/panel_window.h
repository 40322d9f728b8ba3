#pragma once

#include <QQuickView>

// The tray panel's frameless window. It tells its controller when it loses focus or the user
// presses Escape, and reports the height its content asks for.
class PanelWindow : public QQuickView
{
    Q_OBJECT

public:
    PanelWindow(QQmlEngine *engine, QWindow *parent = nullptr);

    // The panel is as tall as its content, and only the content changes that.
    void fitHeight(int height);

Q_SIGNALS:
    void resignedFocus();
    void cancelled();
    void contentHeightChanged(double height);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void watchContentHeight();
};
