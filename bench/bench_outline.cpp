// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"
#include "plainpass.h"
#include "sampletexts.h"
#include "uibench.h"

#include <benchmark/benchmark.h>
#include <QString>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::bench;

namespace
{

constexpr qsizetype TextSize = 10'000'000;

void Scan(benchmark::State &state, const QString &text, FileKind kind)
{
    qsizetype nodes = 0;
    Measure(state, text, [&] { nodes = ScanOutline(text, kind).Count(); });
    state.counters["nodes"] = double(nodes);
}

void OutlineOfOrchestra(benchmark::State &state)
{
    Scan(state, OrchestraText(TextSize), FileKind::Orchestra);
}
void OutlineOfScore(benchmark::State &state)
{
    Scan(state, ScoreText(TextSize), FileKind::Score);
}
void OutlineOfUnified(benchmark::State &state)
{
    Scan(state, UnifiedText(TextSize), FileKind::Unified);
}

/// A text of about the size: `count` parts and what stands between them.
QString Filled(qsizetype size, const QString &part, int count)
{
    QString text;
    text.reserve(size + part.size());
    const QString filling(size / count - part.size() - 8, u'x');
    for (int i = 0; i < count; ++i)
        text += part.arg(i, 7, 10, QLatin1Char('0')) + filling + u'\n';
    return text;
}

/// 100,000 tags within tags in 10 MB, each with a name of its own.
QString NestedTags(qsizetype size)
{
    const int depth = int(size / 100);
    QString text = Filled(size, u"<t%1>"_s, depth);
    for (int i = depth - 1; i >= 0; --i)
        text += u"</t%1>\n"_s.arg(i, 7, 10, QLatin1Char('0'));
    return text;
}
void OutlineOfNestedTags(benchmark::State &state)
{
    Scan(state, NestedTags(TextSize), FileKind::Unified);
}

/// 10,000 macros in 10 MB, each called ten times.
QString Macros(qsizetype size)
{
    const int macros = int(size / 1000);
    QString text = Filled(size, u"#define M%1 #1# "_s, macros);
    for (int i = 0; i < 10 * macros; ++i)
        text += u"$M%1 "_s.arg(i % macros, 7, 10, QLatin1Char('0'));
    return text;
}
void OutlineOfMacros(benchmark::State &state)
{
    Scan(state, Macros(TextSize), FileKind::Orchestra);
}

/// A macro whose name has no end of its own, and as many signs of calls.
QString LongName(qsizetype size)
{
    return u"#define "_s + QString(size / 2, u'$') + u'#' + QString(size / 2, u'$');
}
void OutlineOfALongName(benchmark::State &state)
{
    Scan(state, LongName(TextSize), FileKind::Orchestra);
}

/// One line with a label, a call and an include every few characters.
QString OneLine(qsizetype size)
{
    const QString part = u"a: $A( #include \"x\" m s f "_s;
    return u"#define A #1# instr "_s + part.repeated(size / part.size()) + u" endin"_s;
}
void OutlineOfOneLine(benchmark::State &state)
{
    Scan(state, OneLine(TextSize), FileKind::Orchestra);
}

double ScanMs(const QString &text, FileKind kind)
{
    return MedianMs(9, [&] { return Seconds([&] { benchmark::DoNotOptimize(ScanOutline(text, kind)); }); });
}

/// A scan beside the plain pass over the same text, in turn: the machine is not as fast at each moment.
void PlainGoal(const char *what, const QString &text, FileKind kind)
{
    std::vector<double> ratios;
    for (int run = 0; run < 25; ++run) {
        const double scan = Seconds([&] { benchmark::DoNotOptimize(ScanOutline(text, kind)); });
        const double plain = Seconds([&] { benchmark::DoNotOptimize(CountBelow33(text)); });
        ratios.push_back(scan / plain);
    }
    Goal(what, Median(ratios), 10);
}

/// A scan of 10 MB beside one of 5 MB.
void LinearGoal(const char *what, QString (*text)(qsizetype), FileKind kind)
{
    const double half = ScanMs(text(TextSize / 2), kind);
    Goal(what, ScanMs(text(TextSize), kind) / half, 3);
}

void Goals()
{
    PlainGoal("outline of 10 MB orchestra / plain pass", OrchestraText(TextSize), FileKind::Orchestra);
    PlainGoal("outline of 10 MB score / plain pass", ScoreText(TextSize), FileKind::Score);
    PlainGoal("outline of 10 MB unified text / plain pass", UnifiedText(TextSize), FileKind::Unified);
    LinearGoal("outline of nested tags, 10 MB / 5 MB", NestedTags, FileKind::Unified);
    LinearGoal("outline of macros, 10 MB / 5 MB", Macros, FileKind::Orchestra);
    LinearGoal("outline of a long macro name, 10 MB / 5 MB", LongName, FileKind::Orchestra);
    LinearGoal("outline of one line, 10 MB / 5 MB", OneLine, FileKind::Orchestra);
}

BENCHMARK(OutlineOfOrchestra)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfScore)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfUnified)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfNestedTags)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfMacros)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfALongName)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfOneLine)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const bool all = argc == 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    if (all)
        Goals();
    return 0;
}
