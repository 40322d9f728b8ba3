#include "notice.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

Notice Notice::downloading(int count, double fraction)
{
    Notice notice(Kind::Downloading);
    notice.m_count = count;
    notice.m_fraction = std::clamp(fraction, 0.0, 1.0);
    return notice;
}

Notice Notice::saved(const QUrl &file)
{
    Notice notice(Kind::Saved);
    notice.m_url = file;
    return notice;
}

Notice Notice::failed(const QString &message)
{
    Notice notice(Kind::Failed);
    notice.m_message = message;
    return notice;
}

QString Notice::identifier() const
{
    switch (m_kind) {
    case Kind::Downloading:
        return u"downloading"_s;
    case Kind::Saved:
        return u"saved-"_s + m_url.toLocalFile();
    case Kind::Failed:
        return u"failed-"_s + m_message;
    }
    Q_UNREACHABLE();
    return {};
}
