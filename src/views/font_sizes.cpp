#include "font_sizes.h"

#include <QEvent>
#include <QFont>
#include <QGuiApplication>

FontSizes::FontSizes(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool FontSizes::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == QCoreApplication::instance() && event->type() == QEvent::ApplicationFontChange)
        Q_EMIT changed();
    return false;
}

qreal FontSizes::base() const
{
    // A font given in pixels has no point size.
    const qreal points = QGuiApplication::font().pointSizeF();
    return points > 0 ? points : 10;
}
