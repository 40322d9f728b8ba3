#include "autostart_entry.h"

#include "atomic_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
// Exec quoting of the desktop entry format: an argument with spaces or reserved characters goes in
// quotes.
QString quoted(const QString &argument)
{
    static const QString reserved = uR"( "'\><~|&;$*?#()`)"_s;
    if (!argument.isEmpty() && std::none_of(argument.begin(), argument.end(), [](QChar c) {
            return reserved.contains(c);
        }))
        return argument;
    QString escaped;
    for (const QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            escaped += u'\\';
        escaped += c;
    }
    return u'"' + escaped + u'"';
}

// The first argument of an Exec line, quotes undone.
QString firstArgument(const QString &exec)
{
    QString argument;
    bool inQuotes = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec.at(i);
        if (inQuotes && c == u'\\' && i + 1 < exec.size()) {
            argument += exec.at(++i);
        } else if (c == u'"') {
            inQuotes = !inQuotes;
        } else if (c == u' ' && !inQuotes) {
            if (!argument.isEmpty())
                break;
        } else {
            argument += c;
        }
    }
    return argument;
}
} // namespace

AutostartEntry::AutostartEntry(QString name, QString folder)
    : m_path((folder.isEmpty()
                  ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                      + u"/autostart"_s
                  : folder)
             + u'/' + name)
{
}

QString AutostartEntry::path() const
{
    return m_path;
}

std::optional<QString> AutostartEntry::value(QStringView key) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // Only the main group counts; an action group may have keys of the same name.
    bool inMain = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            inMain = line == "[Desktop Entry]"_L1;
        } else if (inMain && line.section(u'=', 0, 0).trimmed() == key) {
            return line.section(u'=', 1).trimmed();
        }
    }
    return std::nullopt;
}

AutostartEntry::State AutostartEntry::state() const
{
    if (!QFileInfo::exists(m_path) || value(u"Hidden") == "true"_L1)
        return State::Absent;
    if (value(u"X-GNOME-Autostart-enabled") == "false"_L1)
        return State::Disabled;
    return State::Present;
}

QString AutostartEntry::program() const
{
    return firstArgument(value(u"Exec").value_or(QString()));
}

QString AutostartEntry::write(const Contents &contents) const
{
    QStringList exec { quoted(contents.program) };
    for (const QString &argument : contents.arguments)
        exec.append(quoted(argument));
    // Written by hand: QSettings would escape the group name and quote the values. TryExec lets
    // the session pass over an entry whose program was uninstalled.
    QString entry = u"[Desktop Entry]\nType=Application\nName="_s + contents.title + u"\nComment="_s
        + contents.comment + u"\nTryExec="_s + contents.program + u"\nExec="_s + exec.join(u' ')
        + u"\nIcon=app.quennet.Quennet\nTerminal=false\nX-GNOME-Autostart-enabled=true\n"_s;
    if (!contents.listed)
        entry += u"NoDisplay=true\n"_s;
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    if (!writeAtomically(m_path, entry.toUtf8()))
        return QCoreApplication::translate("AutostartEntry", "Could not write %1.").arg(m_path);
    return {};
}

QString AutostartEntry::remove() const
{
    QFile file(m_path);
    if (!file.exists() || file.remove())
        return {};
    return file.errorString();
}
