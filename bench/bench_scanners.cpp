// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodelist.h"
#include "language/scanner.h"
#include "plainpass.h"
#include "platform/textfile.h"
#include "sampletexts.h"

#include <benchmark/benchmark.h>
#include <QFile>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::bench;

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
