// SPDX-License-Identifier: GPL-3.0-or-later

// The file's road into and out of the text control, without the control: bytes a second beside memcpy.

#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/lineends.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <QFile>
#include <QTemporaryDir>

using namespace zelvane;

namespace
{

QByteArray Orchestra(qsizetype size, const QByteArray &lineEnd)
{
    const QByteArray line = "  aout oscili iamp, ifreq, 1 ; the tone of the piece" + lineEnd;
    QByteArray bytes;
    bytes.reserve(size);
    while (bytes.size() + line.size() <= size)
        bytes += line;
    return bytes;
}

const QByteArray &Bytes(benchmark::State &state, const char *lineEnd)
{
    static std::map<std::pair<qsizetype, QByteArray>, QByteArray> made;
    QByteArray &bytes = made[{qsizetype(state.range(0)), lineEnd}];
    if (bytes.isEmpty())
        bytes = Orchestra(qsizetype(state.range(0)), lineEnd);
    return bytes;
}

void Count(benchmark::State &state, qsizetype bytes)
{
    state.SetBytesProcessed(state.iterations() * bytes);
}

void Memcpy(benchmark::State &state)
{
    const QByteArray &bytes = Bytes(state, "\n");
    QByteArray copy(bytes.size(), Qt::Uninitialized);
    for (auto _ : state) {
        std::memcpy(copy.data(), bytes.constData(), size_t(bytes.size()));
        benchmark::DoNotOptimize(copy.data());
    }
    Count(state, bytes.size());
}

void Read(benchmark::State &state)
{
    const QByteArray &bytes = Bytes(state, "\n");
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("x.orc"));
    WriteFileBytes(name, bytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadFileBytes(name));
    Count(state, bytes.size());
}

void Decode(benchmark::State &state, const char *lineEnd)
{
    const QByteArray &bytes = Bytes(state, lineEnd);
    for (auto _ : state) {
        DecodedText decoded = DecodeText(bytes);
        benchmark::DoNotOptimize(DetectPlatform(decoded.text));
        benchmark::DoNotOptimize(ToLineFeeds(std::move(decoded.text)));
    }
    Count(state, bytes.size());
}

void Encode(benchmark::State &state)
{
    const QByteArray &bytes = Bytes(state, "\n");
    const QString text = QString::fromUtf8(bytes);
    for (auto _ : state) {
        TextEncoding encoding;
        benchmark::DoNotOptimize(EncodeText(ToPcLineEnds(text), encoding));
    }
    Count(state, bytes.size());
}

void Export(benchmark::State &state, QString (*convert)(QStringView))
{
    const QByteArray &bytes = Bytes(state, "\n");
    const QString text = QString::fromUtf8(bytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(text));
    Count(state, bytes.size());
}

constexpr int Small = 1'000'000;
constexpr int Large = 10'000'000;

BENCHMARK(Memcpy)->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(Read)->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Decode, feeds, "\n")->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Decode, pc, "\r\n")->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Decode, mac, "\r")->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK(Encode)->Arg(Small)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, pc, ToPcLineEnds)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, unix, ToUnixLineEnds)->Arg(Large)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, mac, ToMacLineEnds)->Arg(Large)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
