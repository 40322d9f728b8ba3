#include "gnome_slideshow.h"

#include <QXmlStreamWriter>
#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace GnomeSlideshow {
QByteArray xml(QList<Entry> entries)
{
    constexpr int day = 24 * 60 * 60;
    std::ranges::sort(entries, {}, &Entry::dayFraction);
    // Seconds since midnight of each change, and the picture that shows from it.
    QList<std::pair<int, QString>> changes;
    for (const Entry &entry : std::as_const(entries)) {
        const int at = std::clamp(int(std::lround(entry.dayFraction * day)), 0, day - 1);
        if (!changes.isEmpty() && changes.last().first == at)
            changes.last().second = entry.path;
        else
            changes.append({ at, entry.path });
    }
    if (!changes.isEmpty() && changes.first().first != 0)
        changes.prepend({ 0, changes.last().second });

    QByteArray result;
    QXmlStreamWriter writer(&result);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement("background"_L1);
    writer.writeStartElement("starttime"_L1);
    for (const auto &[name, value] : { std::pair { "year"_L1, 2000 },
                                       { "month"_L1, 1 },
                                       { "day"_L1, 1 },
                                       { "hour"_L1, 0 },
                                       { "minute"_L1, 0 },
                                       { "second"_L1, 0 } })
        writer.writeTextElement(name, QString::number(value));
    writer.writeEndElement();
    for (qsizetype i = 0; i < changes.size(); ++i) {
        const int end = i + 1 < changes.size() ? changes[i + 1].first : day;
        writer.writeStartElement("static"_L1);
        writer.writeTextElement("duration"_L1, QString::number(end - changes[i].first) + u".0"_s);
        writer.writeTextElement("file"_L1, changes[i].second);
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    return result;
}
} // namespace GnomeSlideshow
