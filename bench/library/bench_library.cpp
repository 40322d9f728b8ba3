// Reading a large library reply (decode, check and convert) against parsing the same bytes with
// QJsonDocument alone, the floor any decoder on Qt's JSON stands on.

#include "content_rules.h"
#include "library_reply.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace {
QByteArray makeLibraryReply(int packs, int colourways)
{
    const QString hash = u"0123456789abcdef"_s.repeated(4);
    const QStringList editions { u"appearance"_s, u"time-of-day"_s, u"light"_s, u"dark"_s };
    const QStringList devices { u"mac"_s, u"ipad"_s, u"iphone"_s, u"iphone-duo"_s };
    qint64 serial = 0;
    const auto nextId = [&serial](QChar prefix) {
        return QString(prefix + u"_"_s + u"%1"_s.arg(++serial, 16, 16, QChar(u'0')));
    };

    QJsonArray packArray;
    for (int p = 0; p < packs; ++p) {
        const QString slug = u"pack-%1"_s.arg(p);
        QJsonArray colourwayArray;
        for (int c = 0; c < colourways; ++c) {
            QJsonArray files;
            for (const auto &edition : editions)
                files.append(QJsonObject { { "id"_L1, nextId(u'f') },
                                           { "edition"_L1, edition },
                                           { "bytes"_L1, qint64(12'345'678 + p) },
                                           { "sha256"_L1, hash },
                                           { "path"_L1, u"files/%1/%2.heic"_s.arg(slug).arg(c) } });
            colourwayArray.append(
                QJsonObject { { "slug"_L1, u"colourway-%1"_s.arg(c) }, { "files"_L1, files } });
        }
        QJsonArray archives;
        for (const auto &device : devices)
            archives.append(
                QJsonObject { { "id"_L1, nextId(u'a') },
                              { "device"_L1, device },
                              { "filename"_L1, QString(slug + u" "_s + device + u".zip"_s) },
                              { "bytes"_L1, qint64(99'000'000) },
                              { "sha256"_L1, hash } });
        packArray.append(QJsonObject { { "slug"_L1, slug },
                                       { "since"_L1, u"2025-03-01T09:30:00.250Z"_s },
                                       { "updatedAt"_L1, u"2025-04-01T00:00:00Z"_s },
                                       { "colourways"_L1, colourwayArray },
                                       { "archives"_L1, archives } });
    }
    return QJsonDocument(
               QJsonObject { { "email"_L1, u"ada@example.com"_s }, { "packs"_L1, packArray } })
        .toJson(QJsonDocument::Compact);
}

const QByteArray &reply()
{
    static const QByteArray bytes = makeLibraryReply(1000, 10);
    return bytes;
}

// The library of a customer with many packs: of two colourways each, as the sample packs have,
// and of ten, as the large reply has.
const QByteArray &fiftyPacks(int colourways)
{
    static const QByteArray two = makeLibraryReply(50, 2);
    static const QByteArray ten = makeLibraryReply(50, 10);
    return colourways == 2 ? two : ten;
}

void quennetDecodeCheckConvert(benchmark::State &state)
{
    for (auto _ : state) {
        const auto owned = LibraryReply::decode(reply()).ownedPacks(SourceRule::pathRule());
        benchmark::DoNotOptimize(owned);
    }
    state.SetBytesProcessed(state.iterations() * reply().size());
}

void quennetFiftyPacks(benchmark::State &state)
{
    const QByteArray &bytes = fiftyPacks(int(state.range(0)));
    for (auto _ : state) {
        const auto owned = LibraryReply::decode(bytes).ownedPacks(SourceRule::pathRule());
        benchmark::DoNotOptimize(owned);
    }
}

void qtJsonParseOnly(benchmark::State &state)
{
    for (auto _ : state) {
        const auto document = QJsonDocument::fromJson(reply());
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(state.iterations() * reply().size());
}

// Prints as usual, and keeps each benchmark's time for the ratio at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const auto &run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians[run.run_name.function_name
                        + (run.run_name.args.empty() ? "" : "/" + run.run_name.args)] =
                    run.GetAdjustedRealTime();
    }

    std::map<std::string, double> medians;
};
} // namespace

BENCHMARK(quennetDecodeCheckConvert)->Unit(benchmark::kMillisecond)->Repetitions(7);
BENCHMARK(qtJsonParseOnly)->Unit(benchmark::kMillisecond)->Repetitions(7);
BENCHMARK(quennetFiftyPacks)->Arg(2)->Arg(10)->Unit(benchmark::kMicrosecond)->Repetitions(7);

int main(int argc, char **argv)
{
    std::printf("library reply: %.1f MB\n", reply().size() / 1e6);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double ours = reporter.medians["quennetDecodeCheckConvert"];
    const double peer = reporter.medians["qtJsonParseOnly"];
    if (ours > 0 && peer > 0)
        std::printf("median decode+check+convert %.1f ms, QJsonDocument::fromJson %.1f ms, ratio "
                    "%.2fx (goal 1x or less)\n",
                    ours, peer, ours / peer);
    for (const int colourways : { 2, 10 })
        std::printf("median 50 packs of %d colourways (%.2f MB): %.3f ms (goal under 1 ms)\n",
                    colourways, fiftyPacks(colourways).size() / 1e6,
                    reporter.medians["quennetFiftyPacks/" + std::to_string(colourways)] / 1000);
    return 0;
}
