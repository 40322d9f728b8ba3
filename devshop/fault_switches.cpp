#include "fault_switches.h"

#include <QJsonArray>

using namespace Qt::Literals::StringLiterals;

namespace {
const QSet<QString> knownKeys { u"statuses"_s,    u"malformed"_s,      u"cut"_s,
                                u"ignoreRange"_s, u"bytesPerSecond"_s, u"redirect"_s,
                                u"alterBytes"_s,  u"changeLibrary"_s,  u"oversized"_s,
                                u"changeFile"_s };

// "times" of a counted fault: absent means every time.
std::optional<int> times(const QJsonObject &object)
{
    const QJsonValue value = object.value("times"_L1);
    if (value.isUndefined() || value.isNull())
        return -1;
    if (!value.isDouble() || value.toDouble() < 1 || value.toDouble() != value.toInt())
        return std::nullopt;
    return value.toInt();
}

bool isKnownEndpoint(const QJsonValue &value)
{
    return value.isString() && FaultSwitches::endpoints().contains(value.toString());
}
} // namespace

const QStringList &FaultSwitches::endpoints()
{
    static const QStringList names { u"device/code"_s, u"device/token"_s, u"sign-out"_s,
                                     u"catalogue"_s,   u"library"_s,      u"downloads"_s,
                                     u"files"_s,       u"art"_s };
    return names;
}

bool FaultSwitches::Counted::take()
{
    if (times == 0)
        return false;
    if (times > 0)
        --times;
    return true;
}

QString FaultSwitches::set(const QJsonObject &document)
{
    State state;
    for (auto it = document.begin(); it != document.end(); ++it)
        if (!knownKeys.contains(it.key()))
            return u"unknown switch \"%1\""_s.arg(it.key());

    for (const QJsonValue &entry : document.value("statuses"_L1).toArray()) {
        const QJsonObject fault = entry.toObject();
        const int code = fault.value("status"_L1).toInt();
        const auto count = times(fault);
        if (!isKnownEndpoint(fault.value("endpoint"_L1)) || code < 300 || code > 599 || !count)
            return u"a status fault needs a known \"endpoint\", a \"status\" from 300 to 599 "
                   u"and a positive \"times\" when given"_s;
        state.statuses.append({ fault.value("endpoint"_L1).toString(),
                                { code, fault.value("error"_L1).toString() },
                                { *count } });
    }
    for (const QJsonValue &endpoint : document.value("malformed"_L1).toArray()) {
        if (!isKnownEndpoint(endpoint))
            return u"\"malformed\" lists endpoints by name"_s;
        state.malformed.insert(endpoint.toString());
    }
    if (document.contains("cut"_L1)) {
        const QJsonObject cut = document.value("cut"_L1).toObject();
        const auto count = times(cut);
        state.cutAfter = cut.value("afterBytes"_L1).toInteger(-1);
        if (state.cutAfter < 0 || !count)
            return u"\"cut\" needs \"afterBytes\" of 0 or more, and a positive \"times\" if any"_s;
        state.cut.times = *count;
    }
    state.ignoreRange = document.value("ignoreRange"_L1).toBool();
    state.bytesPerSecond = document.value("bytesPerSecond"_L1).toInteger();
    if (state.bytesPerSecond < 0)
        return u"\"bytesPerSecond\" may not be negative"_s;
    if (document.contains("redirect"_L1)) {
        const QJsonObject redirect = document.value("redirect"_L1).toObject();
        const QString to = redirect.value("to"_L1).toString();
        const auto count = times(redirect);
        if ((to != "same-host"_L1 && to != "other-host"_L1) || !count)
            return u"\"redirect\" needs \"to\": \"same-host\" or \"other-host\""_s;
        state.redirect = to == "same-host"_L1 ? Redirect::SameHost : Redirect::OtherHost;
        state.redirects.times = *count;
    }
    if (document.contains("alterBytes"_L1)) {
        const QString alteration = document.value("alterBytes"_L1).toString();
        if (alteration != "same-etag"_L1 && alteration != "new-etag"_L1)
            return u"\"alterBytes\" is \"same-etag\" or \"new-etag\""_s;
        state.alteration =
            alteration == "same-etag"_L1 ? Alteration::SameETag : Alteration::NewETag;
    }
    if (document.contains("oversized"_L1)) {
        const QJsonObject oversized = document.value("oversized"_L1).toObject();
        const QString endpoint = oversized.value("endpoint"_L1).toString();
        const auto count = times(oversized);
        state.oversize = { oversized.value("bytes"_L1).toInteger(-1),
                           oversized.value("chunked"_L1).toBool() };
        if (!isKnownEndpoint(endpoint) || endpoint == "files"_L1 || endpoint == "art"_L1
            || state.oversize.bytes < 0 || !count)
            return u"\"oversized\" needs a JSON \"endpoint\", \"bytes\" of 0 or more, and a "
                   u"positive \"times\" if any"_s;
        state.oversizedEndpoint = endpoint;
        state.oversizes.times = *count;
    }

    const std::lock_guard lock(m_mutex);
    m_state = std::move(state);
    return {};
}

std::optional<FaultSwitches::Status> FaultSwitches::takeStatus(const QString &endpoint)
{
    const std::lock_guard lock(m_mutex);
    for (StatusFault &fault : m_state.statuses)
        if (fault.endpoint == endpoint && fault.counter.take())
            return fault.status;
    return std::nullopt;
}

bool FaultSwitches::isMalformed(const QString &endpoint) const
{
    const std::lock_guard lock(m_mutex);
    return m_state.malformed.contains(endpoint);
}

FaultSwitches::Redirect FaultSwitches::takeRedirect()
{
    const std::lock_guard lock(m_mutex);
    return m_state.redirect != Redirect::None && m_state.redirects.take() ? m_state.redirect
                                                                          : Redirect::None;
}

FaultSwitches::Transfer FaultSwitches::takeTransfer()
{
    const std::lock_guard lock(m_mutex);
    Transfer transfer {
        .cutAfter = std::nullopt,
        .ignoreRange = m_state.ignoreRange,
        .bytesPerSecond = m_state.bytesPerSecond,
        .alteration = m_state.alteration,
    };
    if (m_state.cut.take())
        transfer.cutAfter = m_state.cutAfter;
    return transfer;
}

std::optional<FaultSwitches::Oversize> FaultSwitches::takeOversize(const QString &endpoint)
{
    const std::lock_guard lock(m_mutex);
    if (m_state.oversizedEndpoint != endpoint || !m_state.oversizes.take())
        return std::nullopt;
    return m_state.oversize;
}
