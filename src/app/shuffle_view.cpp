#include "shuffle_view.h"

#include "defaults.h"
#include "error.h"
#include "logging.h"
#include "notice_presenter.h"
#include "shuffle.h"

using namespace Qt::Literals::StringLiterals;

ShuffleView::ShuffleView(Shuffle *shuffle, NoticePresenter *notice, QObject *parent)
    : QObject(parent)
    , m_shuffle(shuffle)
    , m_notice(notice)
{
    for (const auto signal :
         { &Shuffle::isOnChanged, &Shuffle::intervalChanged, &Shuffle::sourceChanged,
           &Shuffle::differentOnEachDisplayChanged, &Shuffle::isShufflingChanged,
           &Shuffle::upNextChanged, &Shuffle::nextDateChanged, &Shuffle::statusChanged })
        connect(shuffle, signal, this, &ShuffleView::changed);
    m_clock.setInterval(60'000);
    connect(&m_clock, &QTimer::timeout, this, &ShuffleView::changed);
    m_clock.start();
}

QString ShuffleView::describeNext(const QDateTime &next, const QDateTime &now,
                                  const QLocale &locale)
{
    const QDateTime local = next.toLocalTime();
    const QString time = locale.toString(local.time(), QLocale::ShortFormat);
    const qint64 days = now.toLocalTime().date().daysTo(local.date());
    if (days <= 0)
        return tr("today at %1").arg(time);
    if (days == 1)
        return tr("tomorrow at %1").arg(time);
    if (days < 7)
        return tr("%1 at %2").arg(locale.dayName(local.date().dayOfWeek()), time);
    return tr("%1 at %2").arg(locale.toString(local.date(), QLocale::ShortFormat), time);
}

bool ShuffleView::isOn() const
{
    return m_shuffle && m_shuffle->isOn();
}

void ShuffleView::setOn(bool on)
{
    if (m_shuffle)
        saved(m_shuffle->setOn(on));
}

int ShuffleView::interval() const
{
    return m_shuffle ? int(m_shuffle->interval()) : int(Shuffle::Interval::Day);
}

void ShuffleView::setInterval(int interval)
{
    if (m_shuffle && interval >= 0 && interval < intervals().size())
        saved(m_shuffle->setInterval(Shuffle::Interval(interval)));
}

int ShuffleView::source() const
{
    return m_shuffle ? int(m_shuffle->source()) : int(Shuffle::Source::All);
}

void ShuffleView::setSource(int source)
{
    if (m_shuffle && source >= 0 && source < sources().size())
        saved(m_shuffle->setSource(Shuffle::Source(source)));
}

bool ShuffleView::differentOnEachDisplay() const
{
    return m_shuffle && m_shuffle->differentOnEachDisplay();
}

void ShuffleView::setDifferentOnEachDisplay(bool different)
{
    if (m_shuffle)
        saved(m_shuffle->setDifferentOnEachDisplay(different));
}

void ShuffleView::saved(bool saved)
{
    if (saved)
        return;
    // The switch or choice the user moved goes back to the setting as it is.
    Q_EMIT changed();
    m_notice->showFailure(Defaults::NotSaved().description());
}

QStringList ShuffleView::intervals()
{
    // In the order of Shuffle::Interval.
    return { tr("Every hour"), tr("Every 6 hours"), tr("Every day"), tr("Every week") };
}

QStringList ShuffleView::sources()
{
    // In the order of Shuffle::Source.
    return { tr("All your packs"), tr("Favourites") };
}

QString ShuffleView::status() const
{
    return m_shuffle ? m_shuffle->status() : QString();
}

QString ShuffleView::next() const
{
    if (!m_shuffle || !m_shuffle->isOn())
        return {};
    const QDateTime next = m_shuffle->nextDate();
    if (!next.isValid())
        return {};
    return tr("Next shuffle %1").arg(describeNext(next, QDateTime::currentDateTime()));
}

QString ShuffleView::summary() const
{
    const QString every = intervals().value(interval());
    return source() == int(Shuffle::Source::Favourites) ? tr("%1 from your favourites").arg(every)
                                                        : tr("%1 from all your packs").arg(every);
}

QVariantList ShuffleView::upNext() const
{
    QVariantList picks;
    if (!m_shuffle)
        return picks;
    const Shuffle::UpNext next = m_shuffle->upNext();
    QStringList seen;
    for (auto it = next.cbegin(); it != next.cend(); ++it) {
        // The same pick on every display is one line.
        if (seen.contains(it->key()))
            continue;
        seen.append(it->key());
        picks.append(QVariantMap { { u"display"_s, it.key() },
                                   { u"name"_s, it->colourway.name },
                                   { u"pack"_s, it->pack.name } });
    }
    return picks;
}

bool ShuffleView::isShuffling() const
{
    return m_shuffle && m_shuffle->isShuffling();
}

void ShuffleView::shuffleNow()
{
    shuffleNow(this);
}

QCoro::Task<> ShuffleView::shuffleNow(QPointer<ShuffleView> self)
{
    if (!self->m_shuffle)
        co_return;
    try {
        co_await self->m_shuffle->shuffleNow();
    } catch (const std::exception &error) {
        const QString message = describe(error);
        qCWarning(lcShuffleView) << "Shuffle failed:" << message;
        if (self)
            self->m_notice->showFailure(message);
    }
}
