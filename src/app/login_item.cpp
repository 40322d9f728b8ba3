#include "login_item.h"

#include "application_folder.h"
#include "logging.h"

using namespace Qt::Literals::StringLiterals;

LoginItem::LoginItem(QString program, QString autostartFolder, QObject *parent)
    : QObject(parent)
    , m_program(std::move(program))
    , m_entry(QLatin1StringView(bundleIdentifier) + ".desktop"_L1, std::move(autostartFolder))
{
}

QString LoginItem::entryPath() const
{
    return m_entry.path();
}

bool LoginItem::isOn() const
{
    return m_entry.state() == AutostartEntry::State::Present;
}

void LoginItem::setOn(bool on)
{
    if (on == isOn())
        return;
    const QString error = on
        ? m_entry.write({ .title = u"Quennet"_s,
                          .comment = tr("Wallpaper packs from the shop, on every display"),
                          .program = m_program,
                          .arguments = { u"--at-login"_s },
                          .listed = true })
        : m_entry.remove();
    if (!error.isEmpty())
        qCCritical(lcLoginItem).noquote() << "Couldn't change the login item:" << error;
    Q_EMIT changed();
}
