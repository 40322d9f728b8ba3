#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QSet>
#include <QString>
#include <mutex>
#include <optional>

// The faults a test asks the shop to commit, set as one JSON document (README, "Fault
// switches"). Each document replaces the previous one; counted faults wear off request by
// request. Read from the server's threads, so guarded by a mutex.
class FaultSwitches {
public:
    enum class Redirect { None, SameHost, OtherHost };
    enum class Alteration { None, SameETag, NewETag };

    struct Status {
        int code = 0;
        QString error;
    };

    // What one file transfer suffers, fixed when it starts.
    struct Transfer {
        std::optional<qint64> cutAfter;
        bool ignoreRange = false;
        qint64 bytesPerSecond = 0;
        Alteration alteration = Alteration::None;
    };

    // A JSON reply padded with spaces to `bytes`, with its Content-Length or chunked without.
    struct Oversize {
        qint64 bytes = 0;
        bool chunked = false;
    };

    // The names faults use for the shop's endpoints.
    [[nodiscard]] static const QStringList &endpoints();

    // Replaces the switches and answers an empty string, or leaves them as they were and says
    // what is wrong with the document.
    [[nodiscard]] QString set(const QJsonObject &document);

    [[nodiscard]] std::optional<Status> takeStatus(const QString &endpoint);
    [[nodiscard]] bool isMalformed(const QString &endpoint) const;
    [[nodiscard]] Redirect takeRedirect();
    [[nodiscard]] Transfer takeTransfer();
    [[nodiscard]] std::optional<Oversize> takeOversize(const QString &endpoint);

private:
    // A fault that applies to the next `times` occasions, or to all of them when times < 0.
    struct Counted {
        int times = 0;
        [[nodiscard]] bool take();
    };
    struct StatusFault {
        QString endpoint;
        Status status;
        Counted counter;
    };
    struct State {
        QList<StatusFault> statuses;
        QSet<QString> malformed;
        qint64 cutAfter = 0;
        Counted cut;
        bool ignoreRange = false;
        qint64 bytesPerSecond = 0;
        Redirect redirect = Redirect::None;
        Counted redirects;
        Alteration alteration = Alteration::None;
        QString oversizedEndpoint;
        Oversize oversize;
        Counted oversizes;
    };

    mutable std::mutex m_mutex;
    State m_state;
};
