#include "tray_glyph.h"

#include <QPainter>

QColor TrayGlyph::ink(bool panelIsDark)
{
    // The panels' own text colours: GNOME's bar and Breeze's light panel.
    return panelIsDark ? QColor(0xff, 0xff, 0xff) : QColor(0x23, 0x26, 0x29);
}

QIcon TrayGlyph::icon(const QColor &ink)
{
    QIcon icon;
    // Hosts pick the size nearest their panel; drawn at each so that none is scaled down blurred.
    for (const int size : { 16, 22, 24, 32, 48, 64 }) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 64.0, size / 64.0);
        painter.setPen(QPen(ink, 6));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(7, 13, 50, 40), 7, 7);
        painter.setBrush(ink);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(22, 27), 5.5, 5.5);
        painter.drawPolygon(
            QPolygonF({ { 10, 50 }, { 29, 31 }, { 39, 41 }, { 46, 34 }, { 54, 42 }, { 54, 50 } }));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
