#include "panel_window.h"

#include <QKeyEvent>
#include <QQuickItem>

PanelWindow::PanelWindow(QQmlEngine *engine, QWindow *parent)
    : QQuickView(engine, parent)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setResizeMode(QQuickView::SizeRootObjectToView);
    setColor(Qt::transparent);
    connect(this, &QQuickView::statusChanged, this, &PanelWindow::watchContentHeight);
}

void PanelWindow::fitHeight(int height)
{
    // A Wayland compositor answers a resize with a size of its own, sometimes the old one: the
    // bounds are what it keeps to.
    setMinimumHeight(height);
    setMaximumHeight(height);
    setHeight(height);
}

void PanelWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT cancelled();
        return;
    }
    QQuickView::keyPressEvent(event);
}

void PanelWindow::focusOutEvent(QFocusEvent *event)
{
    QQuickView::focusOutEvent(event);
    // A popup of the panel's own (a combo box's list) takes the focus without leaving the panel.
    if (event->reason() != Qt::PopupFocusReason) {
        Q_EMIT resignedFocus();
    }
}

void PanelWindow::watchContentHeight()
{
    QQuickItem *root = rootObject();
    if (status() != QQuickView::Ready || !root) {
        return;
    }
    connect(root, &QQuickItem::implicitHeightChanged, this,
            [this, root] { Q_EMIT contentHeightChanged(root->implicitHeight()); });
    Q_EMIT contentHeightChanged(root->implicitHeight());
}
