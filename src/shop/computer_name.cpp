#include "computer_name.h"

#include <QFile>
#include <QSysInfo>

using namespace Qt::Literals::StringLiterals;

namespace {
// Undoes shell quoting as systemd writes it: single quotes literal, backslash escapes inside
// double quotes and bare words.
QString unquote(QByteArrayView value)
{
    QByteArray result;
    char quote = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (quote == '\'') {
            if (c == '\'')
                quote = 0;
            else
                result += c;
        } else if (c == '\\' && i + 1 < value.size()) {
            result += value[++i];
        } else if (c == '"') {
            quote = quote == '"' ? 0 : '"';
        } else if (c == '\'' && quote == 0) {
            quote = '\'';
        } else {
            result += c;
        }
    }
    return QString::fromUtf8(result);
}
} // namespace

QString prettyHostName(const QByteArray &machineInfo)
{
    static constexpr QByteArrayView key = "PRETTY_HOSTNAME=";
    QString name;
    for (const auto &line : machineInfo.split('\n')) {
        const auto trimmed = line.trimmed();
        if (trimmed.startsWith(key))
            name = unquote(QByteArrayView(trimmed).sliced(key.size())).trimmed();
    }
    return name;
}

QString computerName()
{
    QFile machineInfo(u"/etc/machine-info"_s);
    if (machineInfo.open(QIODevice::ReadOnly)) {
        if (auto name = prettyHostName(machineInfo.readAll()); !name.isEmpty())
            return name;
    }
    if (auto name = QSysInfo::machineHostName(); !name.isEmpty())
        return name;
    return u"Computer"_s;
}
