#include "panel_window.h"

#include "logging.h"
#include "panel_rules.h"

#include <QKeyEvent>
#include <QQuickItem>

PanelWindow::PanelWindow(QQmlEngine *engine, Events events)
    : QQuickView(engine, nullptr)
    , m_events(std::move(events))
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setResizeMode(QQuickView::SizeRootObjectToView);
    setColor(Qt::transparent);
    connect(this, &QQuickView::statusChanged, this, &PanelWindow::watchContentHeight);
}

bool PanelWindow::load(const QUrl &source, const QVariantMap &roots)
{
    setInitialProperties(roots);
    setSource(source);
    if (status() != QQuickView::Ready) {
        qCCritical(lcApp) << "Couldn't load the panel:" << errors();
        return false;
    }
    connect(rootObject(), SIGNAL(closeRequested()), this, SLOT(requestClose()));
    return true;
}

QObject *PanelWindow::content()
{
    return rootObject();
}

void PanelWindow::requestClose()
{
    m_events.closeRequested();
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
        m_events.cancelled();
        return;
    }
    QQuickView::keyPressEvent(event);
}

void PanelWindow::focusInEvent(QFocusEvent *event)
{
    QQuickView::focusInEvent(event);
    m_events.focusTaken();
}

void PanelWindow::focusOutEvent(QFocusEvent *event)
{
    QQuickView::focusOutEvent(event);
    // A popup of the panel's own (a combo box's list) takes the focus without leaving the panel.
    if (event->reason() != Qt::PopupFocusReason) {
        m_events.resignedFocus();
    }
}

void PanelWindow::mousePressEvent(QMouseEvent *event)
{
    // A press on the clear part of the window, where nothing is drawn: a click elsewhere. A
    // list, menu or tip of the panel's own may reach out there and is drawn there.
    if (m_overWorkArea && !contentItem()->childAt(event->position().x(), event->position().y())) {
        m_events.cancelled();
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
            [this, root] { m_events.contentHeightChanged(root->implicitHeight()); });
    m_events.contentHeightChanged(root->implicitHeight());
}
