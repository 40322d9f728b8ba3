#include "panel_window.h"

#include "panel_rules.h"

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
    m_contentHeight = height;
    if (m_overWorkArea) {
        placeContent();
        return;
    }
    // A Wayland compositor answers a resize with a size of its own, sometimes the old one: the
    // bounds are what it keeps to.
    setMinimumHeight(height);
    setMaximumHeight(height);
    setHeight(height);
}

void PanelWindow::setOverWorkArea(bool over)
{
    m_overWorkArea = over;
}

void PanelWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT cancelled();
        return;
    }
    QQuickView::keyPressEvent(event);
}

void PanelWindow::focusInEvent(QFocusEvent *event)
{
    QQuickView::focusInEvent(event);
    Q_EMIT focusTaken();
}

void PanelWindow::focusOutEvent(QFocusEvent *event)
{
    QQuickView::focusOutEvent(event);
    // A popup of the panel's own (a combo box's list) takes the focus without leaving the panel.
    if (event->reason() != Qt::PopupFocusReason) {
        Q_EMIT resignedFocus();
    }
}

void PanelWindow::mousePressEvent(QMouseEvent *event)
{
    // A press on the clear part of the window, where nothing is drawn: a click elsewhere. A
    // list, menu or tip of the panel's own may reach out there and is drawn there.
    if (m_overWorkArea && !contentItem()->childAt(event->position().x(), event->position().y())) {
        Q_EMIT cancelled();
        return;
    }
    QQuickView::mousePressEvent(event);
}

void PanelWindow::resizeEvent(QResizeEvent *event)
{
    QQuickView::resizeEvent(event);
    if (m_overWorkArea) {
        placeContent();
    }
}

void PanelWindow::placeContent()
{
    QQuickItem *root = rootObject();
    if (!root) {
        return;
    }
    const QRect frame = PanelRules::frame({}, QRect({}, size()), m_contentHeight);
    root->setPosition(frame.topLeft());
    root->setSize(frame.size());
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
