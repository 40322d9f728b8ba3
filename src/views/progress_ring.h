#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration>

// A small ring that fills clockwise from the top as a fraction grows. Drawn as coloured
// triangles, the material plain rectangles use: a textured item (a Canvas, a painted item) makes
// the scene graph build a pipeline of its own the first time a download shows, and on a
// software OpenGL that stalls the window for tens of milliseconds.
class ProgressRing : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal fraction READ fraction WRITE setFraction NOTIFY fractionChanged)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY coloursChanged)
    Q_PROPERTY(QColor fillColor MEMBER m_fillColor NOTIFY coloursChanged)

public:
    explicit ProgressRing(QQuickItem *parent = nullptr);

    [[nodiscard]] qreal fraction() const { return m_fraction; }
    void setFraction(qreal fraction);

Q_SIGNALS:
    void fractionChanged();
    void coloursChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    qreal m_fraction = 0;
    QColor m_trackColor = Qt::gray;
    QColor m_fillColor = Qt::blue;
};
