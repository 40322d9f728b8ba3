#pragma once

#include <QDateTime>
#include <atomic>
#include <chrono>

// The shop's idea of now: the system clock plus an offset that tests move forward, so that codes
// and links can expire without anyone waiting for them.
class ShopClock {
public:
    [[nodiscard]] QDateTime now() const
    {
        return QDateTime::currentDateTimeUtc().addMSecs(m_offsetMs.load());
    }
    [[nodiscard]] qint64 nowMs() const { return now().toMSecsSinceEpoch(); }

    void advance(std::chrono::seconds by) { m_offsetMs += by.count() * 1000; }

private:
    std::atomic<qint64> m_offsetMs { 0 };
};
