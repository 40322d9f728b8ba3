#include "login_item.h"

#include "application_folder.h"
#include "atomic_file.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

Q_LOGGING_CATEGORY(lcLoginItem, "app.quennet.Quennet.LoginItem")

namespace {

// Exec quoting of the desktop entry format: a path with spaces or specials goes in quotes.
QString quoted(const QString &program)
{
    static const QString specials = uR"( "'\><~|&;$*?#()`)"_s;
    if (std::none_of(program.begin(), program.end(),
                     [](QChar c) { return specials.contains(c); })) {
        return program;
    }
    QString escaped;
    for (const QChar c : program) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') {
            escaped += u'\\';
        }
        escaped += c;
    }
    return u'"' + escaped + u'"';
}

} // namespace

LoginItem::LoginItem(QString program, QString autostartFolder, QObject *parent)
    : QObject(parent)
    , m_program(std::move(program))
    , m_folder(autostartFolder.isEmpty()
                   ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                         + "/autostart"_L1
                   : std::move(autostartFolder))
{
}

QString LoginItem::entryPath() const
{
    return m_folder + u'/' + QLatin1StringView(bundleIdentifier) + ".desktop"_L1;
}

bool LoginItem::isOn() const
{
    if (!QFile::exists(entryPath())) {
        return false;
    }
    QFile file(entryPath());
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    // Only the main group counts; an action group may have keys of the same name.
    bool inMain = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            inMain = line == "[Desktop Entry]"_L1;
        } else if (inMain && line.startsWith("Hidden"_L1)) {
            const auto value = line.section(u'=', 1).trimmed();
            if (line.section(u'=', 0, 0).trimmed() == "Hidden"_L1 && value == "true"_L1) {
                return false;
            }
        }
    }
    return true;
}

void LoginItem::setOn(bool on)
{
    if (on == isOn()) {
        return;
    }
    if (on) {
        // Written by hand: QSettings would escape the group name and quote the values.
        const QString entry = u"[Desktop Entry]\n"
                              "Type=Application\n"
                              "Name=Quennet\n"
                              "Comment=Wallpaper packs from the shop, on every display\n"
                              "Exec="_s
            + quoted(m_program)
            + u" --at-login\n"
              "Icon=preferences-desktop-wallpaper\n"
              "Terminal=false\n"
              "X-GNOME-Autostart-enabled=true\n"_s;
        if (!writeAtomically(entryPath(), entry.toUtf8())) {
            qCCritical(lcLoginItem).noquote() << "Couldn't change the login item:" << entryPath();
        }
    } else {
        QFile file(entryPath());
        if (!file.remove()) {
            qCCritical(lcLoginItem).noquote()
                << "Couldn't change the login item:" << file.errorString();
        }
    }
    Q_EMIT changed();
}
