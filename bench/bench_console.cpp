// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ansireader.h"
#include "console/linestore.h"
#include "console/runmessages.h"
#include "console/styledline.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <memory>
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>
#include <utility>

// What the console does with a program's output, on a million lines as Csound writes them, beside copying
// them once as plain memory. Each figure is bytes a second, and lines a second as items.

namespace zelvane
{
namespace
{

constexpr int Lines = 1'000'000;
constexpr qsizetype Piece = 256 * 1024; ///< what is read at once

const QByteArray &Output()
{
    static const QByteArray output = [] {
        QByteArray bytes;
        for (int i = 0; i < Lines; ++i)
            bytes += i % 10 == 0 ? "\x1b[mB" + QByteArray::number(i).rightJustified(7) +
                                       ".000 ..  3.000 T  3.000 TT  3.000 M:  0.20000\n"
                                 : QByteArray("\x1b[mnew alloc for instr 12:\x1b[m\n");
        return bytes;
    }();
    return output;
}

void InPieces(AnsiReader &reader)
{
    const QByteArrayView all = Output();
    for (qsizetype i = 0; i < all.size(); i += Piece)
        reader.Read(all.sliced(i, qMin(Piece, all.size() - i)));
    reader.Finish();
}

void Count(benchmark::State &state)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * Output().size());
    state.SetItemsProcessed(int64_t(state.iterations()) * Lines);
}

void CopyMemory(benchmark::State &state)
{
    const auto target = std::make_unique<char[]>(size_t(Output().size()));
    for (auto _ : state) {
        std::memcpy(target.get(), Output().constData(), size_t(Output().size()));
        benchmark::DoNotOptimize(target.get());
        benchmark::ClobberMemory();
    }
    Count(state);
}
BENCHMARK(CopyMemory)->Unit(benchmark::kMillisecond);

void ReadLines(benchmark::State &state)
{
    for (auto _ : state) {
        qsizetype all = 0;
        AnsiReader reader([&](const StyledLine &line) { all += line.text.size(); });
        InPieces(reader);
        benchmark::DoNotOptimize(all);
    }
    Count(state);
}
BENCHMARK(ReadLines)->Unit(benchmark::kMillisecond);

void ReadStoreAndFindMessages(benchmark::State &state)
{
    for (auto _ : state) {
        LineStore store;
        RunMessages messages;
        AnsiReader reader([&](StyledLine line) {
            const QString text = line.text;
            const qint64 number = store.Append(std::move(line));
            store.Mark(number, messages.Take(number, text));
        });
        InPieces(reader);
        benchmark::DoNotOptimize(store.End());
    }
    Count(state);
}
BENCHMARK(ReadStoreAndFindMessages)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zelvane

BENCHMARK_MAIN();
