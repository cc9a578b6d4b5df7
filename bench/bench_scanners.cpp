// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodelist.h"
#include "language/scanner.h"
#include "platform/textfile.h"
#include "sampletexts.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <QFile>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

constexpr qsizetype TextSize = 10'000'000;

const OpcodeList &Opcodes()
{
    static OpcodeList list;
    if (list.Opcodes().size() == 1)
        list.Add(ReadTextFile(QStringLiteral(ZELVANE_SOURCE_DIR "/data/opcodes.txt")));
    return list;
}

const QString &Orchestra()
{
    static const QString text = bench::OrchestraText(TextSize);
    return text;
}
const QString &Score()
{
    static const QString text = bench::ScoreText(TextSize);
    return text;
}
const QString &Unified()
{
    static const QString text = bench::UnifiedText(TextSize);
    return text;
}
/// The hard case for pairing tags: one line of signs that never close.
const QString &Signs()
{
    static const QString text = QString(TextSize - 9, u'<') + u"</a>\n<a>\n"_s;
    return text;
}

/// The plain pass that the scanners are measured by.
qsizetype CountBelow33(QStringView text)
{
    qsizetype count = 0;
    for (const char16_t *at = text.utf16(), *end = at + text.size(); at != end; ++at)
        count += *at < 33;
    return count;
}

/// Processor time: what else the machine does must not count.
double Seconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + qsizetype(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Times the work, and in turn with it the plain pass and a copy of the same text; prints the medians'
/// ratios. Bytes are those of the file.
template <typename Work> void Measure(benchmark::State &state, const QString &text, Work work)
{
    std::vector<double> works, counts, copies;
    QString target(text.size(), Qt::Uninitialized);
    for (auto _ : state) {
        const double start = Seconds();
        work();
        const double worked = Seconds();
        benchmark::DoNotOptimize(CountBelow33(text));
        const double counted = Seconds();
        std::memcpy(target.data(), text.constData(), size_t(text.size()) * sizeof(QChar));
        benchmark::ClobberMemory();
        const double copied = Seconds();
        works.push_back(worked - start);
        counts.push_back(counted - worked);
        copies.push_back(copied - counted);
        state.SetIterationTime(works.back());
    }
    state.SetBytesProcessed(state.iterations() * text.size());
    const double median = Median(works);
    state.counters["median_ms"] = median * 1e3;
    state.counters["count_ms"] = Median(counts) * 1e3;
    state.counters["memcpy_ms"] = Median(copies) * 1e3;
    state.counters["times_count"] = median / Median(counts);
    state.counters["times_memcpy"] = median / Median(copies);
}

void Scan(benchmark::State &state, const QString &text, ScanMode mode)
{
    const OpcodeList &opcodes = Opcodes();
    Measure(state, text, [&] { benchmark::DoNotOptimize(ScanRange(text, 0, 0, mode, opcodes).runs.data()); });
}

void ScanOrchestra(benchmark::State &state)
{
    Scan(state, Orchestra(), ScanMode::Orchestra);
}
void ScanScore(benchmark::State &state)
{
    Scan(state, Score(), ScanMode::Score);
}
void ScanTags(benchmark::State &state)
{
    Scan(state, Unified(), ScanMode::Tags);
}
void ScanWholeUnified(benchmark::State &state)
{
    const OpcodeList &opcodes = Opcodes();
    Measure(state, Unified(), [&] { benchmark::DoNotOptimize(ScanUnified(Unified(), opcodes).data()); });
}
void ScanUnpairedSigns(benchmark::State &state)
{
    Scan(state, Signs(), ScanMode::Tags);
}
/// A file of the user's own: ZELVANE_BENCH_FILE, repeated up to the size, as an orchestra.
void ScanOwnFile(benchmark::State &state)
{
    const QString file = qEnvironmentVariable("ZELVANE_BENCH_FILE");
    if (file.isEmpty()) {
        state.SkipWithError("ZELVANE_BENCH_FILE names no file");
        return;
    }
    const QString own = ReadTextFile(file).remove(u'\r') + u'\n';
    const QString text = own.repeated(TextSize / own.size() + 1).left(TextSize);
    Scan(state, text, ScanMode::Orchestra);
}

void CountingPass(benchmark::State &state)
{
    Measure(state, Orchestra(), [] { benchmark::DoNotOptimize(CountBelow33(Orchestra())); });
}

BENCHMARK(CountingPass)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanOrchestra)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanScore)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanTags)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanWholeUnified)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanUnpairedSigns)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScanOwnFile)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
