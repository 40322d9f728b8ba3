#include "file_responder.h"

#include "content_store.h"
#include "shop_http.h"
#include "shop_state.h"

#include <QFile>
#include <QFileInfo>
#include <httplib.h>
#include <memory>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace FileResponder {
namespace {
constexpr qint64 chunkSize = 64 * 1024;

std::optional<qint64> number(QStringView text)
{
    if (text.isEmpty()
        || !std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); }))
        return std::nullopt;
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

QString entityTag(const StoredFile &file, FaultSwitches::Alteration alteration)
{
    const QString value = file.sha256.isEmpty()
        ? u"%1-%2"_s.arg(file.bytes).arg(QFileInfo(file.path).lastModified().toMSecsSinceEpoch())
        : file.sha256.left(32);
    return u'"' + value
        + (alteration == FaultSwitches::Alteration::NewETag ? u"-altered"_s : QString()) + u'"';
}

// Waits until a slowed transfer may send `bytes` more, in short steps so that stopping is quick.
bool pace(const ShopState &state, qint64 bytes, qint64 bytesPerSecond)
{
    auto remaining = std::chrono::milliseconds(bytes * 1000 / bytesPerSecond);
    while (remaining > 0ms) {
        if (state.isStopping())
            return false;
        const auto step = std::min(remaining, std::chrono::milliseconds(20));
        std::this_thread::sleep_for(step);
        remaining -= step;
    }
    return !state.isStopping();
}
} // namespace

Range parseRange(const QString &header, qint64 size)
{
    if (!header.startsWith("bytes="_L1) || header.contains(u','))
        return {};
    const QStringView range = QStringView(header).mid(6).trimmed();
    const qsizetype dash = range.indexOf(u'-');
    if (dash < 0)
        return {};
    const QStringView firstText = range.left(dash).trimmed();
    const QStringView lastText = range.mid(dash + 1).trimmed();
    if (firstText.isEmpty()) {
        const auto suffix = number(lastText);
        if (!suffix)
            return {};
        if (*suffix == 0 || size == 0)
            return { Range::Kind::Unsatisfiable };
        return { Range::Kind::Part, std::max<qint64>(0, size - *suffix), size - 1 };
    }
    const auto first = number(firstText);
    const auto last = lastText.isEmpty() ? std::optional(size - 1) : number(lastText);
    if (!first || !last || (*last < *first && !lastText.isEmpty()))
        return {};
    if (*first >= size)
        return { Range::Kind::Unsatisfiable };
    return { Range::Kind::Part, *first, std::min(*last, size - 1) };
}

void serve(ShopState &state, const httplib::Request &request, httplib::Response &response,
           const StoredFile &file, const FaultSwitches::Transfer &faults)
{
    // Keeps the server library from cutting the body by the Range header a second time.
    const_cast<httplib::Request &>(request).ranges.clear();

    auto source = std::make_shared<QFile>(file.path);
    if (!source->open(QIODevice::ReadOnly))
        return ShopHttp::sendError(response, 500, u"unreadable_file"_s);
    const qint64 size = source->size();
    const QString etag = entityTag(file, faults.alteration);
    response.set_header("ETag", etag.toStdString());
    response.set_header("Accept-Ranges", faults.ignoreRange ? "none" : "bytes");

    Range range;
    const QString ifRange = ShopHttp::header(request, "If-Range");
    // If-Range compares strongly: a weak or changed tag, or a date, asks for the whole file.
    if (!faults.ignoreRange && (ifRange.isEmpty() || ifRange == etag))
        range = parseRange(ShopHttp::header(request, "Range"), size);
    if (range.kind == Range::Kind::Unsatisfiable) {
        response.set_header("Content-Range", u"bytes */%1"_s.arg(size).toStdString());
        return ShopHttp::sendError(response, 416, u"range_not_satisfiable"_s);
    }
    const qint64 first = range.kind == Range::Kind::Part ? range.first : 0;
    const qint64 last = range.kind == Range::Kind::Part ? range.last : size - 1;
    response.status = range.kind == Range::Kind::Part ? 206 : 200;
    if (range.kind == Range::Kind::Part)
        response.set_header("Content-Range",
                            u"bytes %1-%2/%3"_s.arg(first).arg(last).arg(size).toStdString());

    auto sent = std::make_shared<qint64>(0);
    const QString path = QString::fromStdString(request.path);
    const auto provide = [&state, source, sent, first, faults, path](size_t offset, size_t length,
                                                                     httplib::DataSink &sink) {
        qint64 want = std::min<qint64>(qint64(length),
                                       faults.bytesPerSecond > 0
                                           ? std::max<qint64>(1, faults.bytesPerSecond / 10)
                                           : chunkSize);
        if (faults.cutAfter)
            want = std::min(want, *faults.cutAfter - *sent);
        if (want <= 0 || !source->seek(first + qint64(offset)))
            return false; // the cut: the client sees the connection close mid-body
        if (faults.bytesPerSecond > 0 && !pace(state, want, faults.bytesPerSecond))
            return false;
        QByteArray bytes = source->read(want);
        if (bytes.isEmpty())
            return false;
        if (faults.alteration != FaultSwitches::Alteration::None)
            for (char &byte : bytes)
                byte = char(~byte);
        *sent += bytes.size();
        if (!sink.write(bytes.constData(), size_t(bytes.size())))
            return false;
        state.countSent(path, bytes.size());
        return true;
    };
    response.set_content_provider(size_t(last - first + 1), file.contentType.toStdString(),
                                  provide);
}
} // namespace FileResponder
