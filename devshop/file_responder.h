#pragma once

#include "fault_switches.h"

#include <QString>
#include <optional>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

class ShopState;
struct StoredFile;

// Sends one stored file with its validator. Range and If-Range are answered here rather than by
// the server library, which ignores If-Range and answers unsatisfiable ranges wrongly.
namespace FileResponder {
// What a Range header asks of a file of a given size.
struct Range {
    enum class Kind { Whole, Part, Unsatisfiable };
    Kind kind = Kind::Whole;
    qint64 first = 0;
    qint64 last = -1;
};

// One "bytes=" range, open or suffix; anything else (several ranges, other units, nonsense)
// is ignored and gives the whole file.
[[nodiscard]] Range parseRange(const QString &header, qint64 size);

void serve(ShopState &state, const httplib::Request &request, httplib::Response &response,
           const StoredFile &file, const FaultSwitches::Transfer &faults = {});
} // namespace FileResponder
