#include "do_not_disturb.h"

#include "logging.h"

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
