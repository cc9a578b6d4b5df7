// SPDX-License-Identifier: GPL-3.0-or-later

// The text control beside the bare Scintilla control, its built-in csound lexer, and memcpy.

#include "language/scanner.h"
#include "peercontrol.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/textcontrol.h"
#include "uibench.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <map>
#include <QApplication>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QByteArray &Bytes(qsizetype size, bool accents = false)
{
    static std::map<std::pair<qsizetype, bool>, QByteArray> made;
    QByteArray &bytes = made[{size, accents}];
    if (bytes.isEmpty())
        bytes = Orchestra(size, accents);
    return bytes;
}

struct Coloured {
    QString text;
    StyleRuns runs;
};

const Coloured &Scanned(qsizetype size, bool accents = false)
{
    static std::map<std::pair<qsizetype, bool>, Coloured> made;
    Coloured &coloured = made[{size, accents}];
    if (coloured.text.isEmpty()) {
        coloured.text = QString::fromUtf8(Bytes(size, accents));
        coloured.runs = ScanRange(coloured.text, 0, 0, ScanMode::Orchestra, Opcodes()).runs;
    }
    return coloured;
}

struct Loaded {
    QtDesktop desktop;
    TextControl control{desktop};
    explicit Loaded(const QString &text) { control.LoadText(text); }
};

double ApplySeconds(qsizetype size, bool accents = false)
{
    const Coloured &coloured = Scanned(size, accents);
    Loaded loaded(coloured.text);
    return Seconds([&] { loaded.control.ApplyStyles(0, coloured.text.size(), coloured.runs); });
}

double LoadSeconds(qsizetype size, bool accents = false)
{
    const Coloured &coloured = Scanned(size, accents);
    Loaded loaded{QString()};
    return Seconds([&] { loaded.control.LoadText(coloured.text); });
}

template <typename Measure> void Measured(benchmark::State &state, Measure measure)
{
    for (auto _ : state)
        state.SetIterationTime(measure());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Memcpy(benchmark::State &state)
{
    const QByteArray &bytes = Bytes(state.range(0));
    QByteArray copy(bytes.size(), Qt::Uninitialized);
    Measured(state, [&] {
        return Seconds([&] {
            std::memcpy(copy.data(), bytes.constData(), size_t(bytes.size()));
            benchmark::DoNotOptimize(copy.data());
        });
    });
}

void BareAddText(benchmark::State &state)
{
    Measured(state, [&] { return AddTextSeconds(Bytes(state.range(0))); });
}

void BuiltInLexer(benchmark::State &state)
{
    Measured(state, [&] { return PeerSeconds(Bytes(state.range(0))); });
}

void LoadText(benchmark::State &state, bool accents)
{
    Measured(state, [&] { return LoadSeconds(state.range(0), accents); });
}

void ApplyStyles(benchmark::State &state, bool accents)
{
    Measured(state, [&] { return ApplySeconds(state.range(0), accents); });
}

void Text(benchmark::State &state, bool accents)
{
    const Loaded loaded(Scanned(state.range(0), accents).text);
    Measured(state, [&] { return Seconds([&] { benchmark::DoNotOptimize(loaded.control.Text()); }); });
}

void ReplaceWhole(benchmark::State &state, bool accents)
{
    const Coloured &coloured = Scanned(state.range(0), accents);
    Loaded loaded(coloured.text);
    Measured(state, [&] {
        loaded.control.LoadText(coloured.text);
        loaded.control.ApplyStyles(0, coloured.text.size(), coloured.runs);
        return Seconds([&] { loaded.control.ReplaceRange(0, coloured.text.size(), coloured.text); });
    });
}

/// Offsets all over the text, an edit in front of them between each two: what a walk over the outline costs
/// at worst.
void RandomOffsets(benchmark::State &state, bool accents)
{
    const Coloured &coloured = Scanned(state.range(0), accents);
    Loaded loaded(coloured.text);
    std::mt19937 random(3);
    for (auto _ : state) {
        for (int i = 0; i < 1000; ++i)
            benchmark::DoNotOptimize(
                loaded.control.LineOfOffset(qsizetype(random() % size_t(coloured.text.size()))));
    }
}

void PrintGoals()
{
    constexpr qsizetype size = 10'000'000;
    const int runs = 9;
    const double add = MedianMs(runs, [] { return AddTextSeconds(Bytes(size)); });
    const double addAccents = MedianMs(runs, [] { return AddTextSeconds(Bytes(size, true)); });
    const double apply = MedianMs(runs, [] { return ApplySeconds(size); });
    const double applyAccents = MedianMs(runs, [] { return ApplySeconds(size, true); });
    const double load = MedianMs(runs, [] { return LoadSeconds(size); });
    const double peer = MedianMs(runs, [] { return PeerSeconds(Bytes(size)); });
    std::printf("\nMedians of %d runs on 10 MB: SCI_ADDTEXT %.1f ms, ApplyStyles %.1f ms (accents %.1f ms), "
                "LoadText %.1f ms, built-in lexer %.1f ms\n",
                runs, add, apply, applyAccents, load, peer);
    std::printf("%zu and %zu runs\n", Scanned(size).runs.size(), Scanned(size, true).runs.size());
    Goal("ApplyStyles / SCI_ADDTEXT", apply / add, 0.5);
    Goal("ApplyStyles / SCI_ADDTEXT, text with accents", applyAccents / addAccents, 0.5);
}

} // namespace

BENCHMARK(Memcpy)->Arg(10'000'000)->UseManualTime();
BENCHMARK(BareAddText)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BuiltInLexer)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadText, ascii, false)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadText, accents, true)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ApplyStyles, ascii, false)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Arg(50'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ApplyStyles, accents, true)
    ->Arg(10'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Text, ascii, false)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Text, accents, true)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReplaceWhole, ascii, false)
    ->Arg(10'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RandomOffsets, ascii, false)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RandomOffsets, accents, true)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    UseFreshMemory();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    PrintGoals();
    return 0;
}
