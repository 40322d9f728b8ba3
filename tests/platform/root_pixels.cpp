#include "root_pixels.h"

#include <QProcess>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

QColor rootPixel(int x, int y)
{
    QProcess import;
    import.start(u"import"_s,
                 { u"-window"_s, u"root"_s, u"-crop"_s, u"1x1+%1+%2"_s.arg(x).arg(y), u"-depth"_s,
                   u"8"_s, u"txt:-"_s });
    if (!import.waitForFinished(30000))
        return {};
    const auto match =
        QRegularExpression(u"#([0-9A-Fa-f]{6})"_s).match(QString::fromLatin1(import.readAll()));
    return match.hasMatch() ? QColor(u'#' + match.captured(1)) : QColor();
}
