#include "ini_text.h"

#include <QDataStream>
#include <QIODevice>
#include <QPoint>
#include <QRect>
#include <QSize>

using namespace Qt::Literals::StringLiterals;

namespace {
bool isHexDigit(char16_t ch)
{
    return (ch >= u'0' && ch <= u'9') || (ch >= u'a' && ch <= u'f') || (ch >= u'A' && ch <= u'F');
}

QByteArray hex(uint value, int width)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(width, '0');
}

// Within a group '/' becomes '\'; anything but letters, digits and "_-." is %XX or %UXXXX.
QByteArray escapedKey(QStringView key)
{
    QByteArray out;
    for (const QChar c : key) {
        const char16_t ch = c.unicode();
        if (ch == u'/')
            out += '\\';
        else if ((ch < 0x80 && c.isLetterOrNumber()) || ch == u'_' || ch == u'-' || ch == u'.')
            out += char(ch);
        else if (ch <= 0xFF)
            out += '%' + hex(ch, 2);
        else
            out += "%U" + hex(ch, 4);
    }
    return out;
}

QByteArray sectionLine(const QString &group)
{
    if (group.isEmpty())
        return "[General]\n";
    const QByteArray name = escapedKey(group);
    // A group of that name must not be taken for the keys outside any group.
    if (name.compare("general", Qt::CaseInsensitive) == 0)
        return "[%" + name + "]\n";
    return '[' + name + "]\n";
}

QString variantText(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return u"@Invalid()"_s;
    case QMetaType::QByteArray:
        return "@ByteArray("_L1 + QLatin1StringView(value.toByteArray()) + u')';
    case QMetaType::QString:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Bool:
    case QMetaType::Float:
    case QMetaType::Double: {
        QString text = value.toString();
        if (text.contains(QChar::Null))
            return "@String("_L1 + text + u')';
        if (text.startsWith(u'@'))
            text.prepend(u'@');
        return text;
    }
    case QMetaType::QRect: {
        const QRect r = value.toRect();
        return QString::asprintf("@Rect(%d %d %d %d)", r.x(), r.y(), r.width(), r.height());
    }
    case QMetaType::QSize: {
        const QSize s = value.toSize();
        return QString::asprintf("@Size(%d %d)", s.width(), s.height());
    }
    case QMetaType::QPoint: {
        const QPoint p = value.toPoint();
        return QString::asprintf("@Point(%d %d)", p.x(), p.y());
    }
    default:
        break;
    }
    // The stream versions QSettings reads these with.
    const bool dateTime = value.typeId() == QMetaType::QDateTime;
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream.setVersion(dateTime ? QDataStream::Qt_5_6 : QDataStream::Qt_4_0);
    stream << value;
    return (dateTime ? "@DateTime("_L1 : "@Variant("_L1) + QLatin1StringView(data) + u')';
}

// Quoted where the reader would split or trim it. The reader takes every hex digit after "\x",
// so a hex digit right after such an escape is escaped as well. Binary values are Latin-1
// text, which goes through UTF-8 unharmed.
QByteArray escapedText(const QString &text)
{
    QString out;
    bool quoted = text.startsWith(u' ') || text.endsWith(u' ');
    bool afterEscape = false;
    for (const QChar c : text) {
        const char16_t ch = c.unicode();
        if (ch == u';' || ch == u',' || ch == u'=')
            quoted = true;
        if (afterEscape && isHexDigit(ch)) {
            out += R"(\x)"_L1 + QString::number(ch, 16);
            continue;
        }
        afterEscape = false;
        if (ch == u'"' || ch == u'\\') {
            out += u'\\';
            out += c;
        } else if (ch <= 0x1F) {
            out += R"(\x)"_L1 + QString::number(ch, 16);
            afterEscape = true;
        } else {
            out += c;
        }
    }
    if (quoted)
        out = u'"' + out + u'"';
    return out.toUtf8();
}

QByteArray valueText(const QVariant &value)
{
    // QSettings' own rule: a list of one item is written as that item.
    const bool list = value.typeId() == QMetaType::QStringList
        || (value.typeId() == QMetaType::QVariantList && value.toList().size() != 1);
    if (!list)
        return escapedText(variantText(value));
    const QVariantList items = value.toList();
    if (items.isEmpty())
        return "@Invalid()";
    QByteArrayList parts;
    for (const QVariant &item : items)
        parts.append(escapedText(variantText(item)));
    return parts.join(", ");
}
} // namespace

QByteArray iniText(const QVariantMap &values)
{
    // A key's first component names its group; keys outside any group come first.
    QMap<QString, QByteArray> sections;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const qsizetype slash = it.key().indexOf(u'/');
        const QString group = slash < 0 ? QString() : it.key().left(slash);
        const QStringView key = QStringView(it.key()).sliced(slash + 1);
        sections[group] += escapedKey(key) + '=' + valueText(it.value()) + '\n';
    }
    QByteArray text;
    for (auto it = sections.cbegin(); it != sections.cend(); ++it) {
        if (!text.isEmpty())
            text += '\n';
        text += sectionLine(it.key()) + it.value();
    }
    return text;
}
