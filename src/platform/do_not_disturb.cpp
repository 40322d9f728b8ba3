#include "do_not_disturb.h"

#include "do_not_disturb_log.h"

Q_LOGGING_CATEGORY(lcDoNotDisturb, "app.quennet.Quennet.DoNotDisturb")

using namespace Qt::Literals::StringLiterals;

DoNotDisturb::DoNotDisturb(QObject *parent)
    : QObject(parent)
{
}

void DoNotDisturb::setOn(bool on)
{
    if (m_known && on == m_on)
        return;
    m_known = true;
    m_on = on;
    Q_EMIT changed();
}

NoDoNotDisturb::NoDoNotDisturb(QObject *parent)
    : DoNotDisturb(parent)
{
    setOn(false);
}

QString NoDoNotDisturb::name() const
{
    return u"none"_s;
}
