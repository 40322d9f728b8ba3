#include "periodic_check.h"

#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "logging.h"

PeriodicCheck::PeriodicCheck(Defaults *defaults, std::shared_ptr<Clock> clock,
                             std::function<void()> check, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_clock(std::move(clock))
    , m_check(std::move(check))
{
}

PeriodicCheck::~PeriodicCheck()
{
    stop();
}

void PeriodicCheck::start()
{
    stop();
    m_cancel = std::make_shared<CancelToken>();
    m_due = m_clock->now().addSecs(interval.count());
    loop(this, m_cancel);
}

void PeriodicCheck::stop()
{
    if (m_cancel)
        m_cancel->cancel();
    if (m_nap)
        m_nap->cancel();
    m_cancel.reset();
    m_nap.reset();
}

void PeriodicCheck::woke()
{
    if (m_nap)
        m_nap->cancel();
}

QCoro::Task<> PeriodicCheck::loop(QPointer<PeriodicCheck> self, std::shared_ptr<CancelToken> cancel)
{
    try {
        const auto clock = self->m_clock;
        while (self && !cancel->isCancelled()) {
            const auto nap = std::make_shared<CancelToken>();
            self->m_nap = nap;
            const auto left =
                std::chrono::milliseconds(std::max<qint64>(0, clock->now().msecsTo(self->m_due)));
            co_await clock->sleep(nap, left);
            if (!self || cancel->isCancelled())
                co_return;
            // Woken early, or a sleep that the suspend stretched: the due moment decides.
            if (clock->now() < self->m_due)
                continue;
            self->m_due = clock->now().addSecs(interval.count());
            if (self->m_defaults->checksForNewFiles())
                self->m_check();
            else
                qCDebug(lcShop) << "Periodic check skipped: checking for new files is off";
        }
    } catch (const std::exception &error) {
        qCWarning(lcShop) << "The periodic check stopped:" << error.what();
    }
}
