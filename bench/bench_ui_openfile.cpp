// SPDX-License-Identifier: GPL-3.0-or-later

// Opening a file in the real window, from the command to the coloured text, beside the bare control, its
// built-in lexer, and memcpy; the steps apart; and the memory that it takes.

#include "language/scanner.h"
#include "peercontrol.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/textcontrol.h"
#include "shell/documentkeys.h"
#include "shell/layoutkeys.h"
#include "shell/lineends.h"
#include "uibench.h"
#include "windowbench.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <QApplication>
#include <QTemporaryDir>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

Program *program = nullptr;

QString PieceText(qsizetype size)
{
    return ReadTextFile(program->File(size));
}

template <typename Measure> void Measured(benchmark::State &state, Measure measure)
{
    for (auto _ : state)
        state.SetIterationTime(measure(qsizetype(state.range(0))));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void OpenFile(benchmark::State &state)
{
    Measured(state, [](qsizetype size) { return program->OpenSeconds(size); });
}

void StepRead(benchmark::State &state)
{
    Measured(state, [](qsizetype size) {
        return Seconds([&] { benchmark::DoNotOptimize(ReadFileBytes(program->File(size))); });
    });
}

void StepDecode(benchmark::State &state)
{
    const QByteArray bytes = ReadFileBytes(program->File(state.range(0)));
    Measured(state, [&](qsizetype) {
        return Seconds([&] {
            DecodedText decoded = DecodeText(bytes);
            benchmark::DoNotOptimize(DetectPlatform(decoded.text));
            benchmark::DoNotOptimize(ToLineFeeds(std::move(decoded.text)));
        });
    });
}

void StepLoad(benchmark::State &state)
{
    Measured(state, [](qsizetype size) {
        TextControl control(program->desktop);
        QString text = PieceText(size);
        return Seconds([&] { control.LoadText(std::move(text)); });
    });
}

void StepText(benchmark::State &state)
{
    TextControl control(program->desktop);
    control.LoadText(PieceText(state.range(0)));
    Measured(state, [&](qsizetype) { return Seconds([&] { benchmark::DoNotOptimize(control.Text()); }); });
}

void StepScan(benchmark::State &state)
{
    const QString text = PieceText(state.range(0));
    Measured(state, [&](qsizetype) {
        return Seconds(
            [&] { benchmark::DoNotOptimize(ScanRange(text, 0, 0, ScanMode::Orchestra, Opcodes()).runs); });
    });
}

void StepApply(benchmark::State &state)
{
    const QString text = PieceText(state.range(0));
    const StyleRuns runs = ScanRange(text, 0, 0, ScanMode::Orchestra, Opcodes()).runs;
    Measured(state, [&](qsizetype) {
        TextControl control(program->desktop);
        control.LoadText(text);
        return Seconds([&] { control.ApplyStyles(0, text.size(), runs); });
    });
}

void Memcpy(benchmark::State &state)
{
    const QByteArray bytes = ReadFileBytes(program->File(state.range(0)));
    QByteArray copy(bytes.size(), Qt::Uninitialized);
    Measured(state, [&](qsizetype) {
        return Seconds([&] {
            std::memcpy(copy.data(), bytes.constData(), size_t(bytes.size()));
            benchmark::DoNotOptimize(copy.data());
        });
    });
}

/// The most memory that the process has held, in bytes; 0 where the system does not tell.
qsizetype PeakMemory()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

double MemoryFactor(qsizetype size)
{
    const QString name = program->File(size);
    const qsizetype before = PeakMemory();
    program->window->Documents().OpenFile(name);
    return double(PeakMemory() - before) / double(size);
}

void PrintGoals(double memory)
{
    constexpr qsizetype size = 10'000'000;
    const int runs = 9;
    const QByteArray bytes = ReadFileBytes(program->File(size));
    const double add = MedianMs(runs, [&] { return AddTextSeconds(bytes); });
    const double peer = MedianMs(runs, [&] { return PeerSeconds(bytes); });
    const double open = MedianMs(runs, [] { return program->OpenSeconds(size); });
    const double small = MedianMs(runs, [] { return program->OpenSeconds(1'000'000); });
    const double large = MedianMs(3, [] { return program->OpenSeconds(50'000'000); });
    std::printf(
        "\nMedians on 10 MB: SCI_ADDTEXT %.1f ms, built-in lexer %.1f ms, OpenFile %.1f ms; OpenFile of 1 MB "
        "%.1f ms, of 50 MB %.1f ms\n",
        add, peer, open, small, large);
    Goal("OpenFile / SCI_ADDTEXT, 10 MB", open / add, 3);
    Goal("OpenFile / built-in lexer, 10 MB", open / peer, 0.6);
    Goal("OpenFile of 50 MB / five times that of 10 MB", large / (5 * open), 1.25);
    Goal("peak memory of opening 10 MB / file", memory, 8);
}

} // namespace

BENCHMARK(Memcpy)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenFile)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Arg(50'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(StepRead)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StepDecode)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StepLoad)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StepText)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StepScan)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StepApply)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program owned;
    program = &owned;
    const double memory = MemoryFactor(10'000'000);
    UseFreshMemory();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    PrintGoals(memory);
    return 0;
}
