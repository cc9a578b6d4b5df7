// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"
#include "plainpass.h"
#include "sampletexts.h"

#include <benchmark/benchmark.h>
#include <QString>

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

/// Fills a text up to the size with what stands between `count` parts.
QString Filled(const QString &part, int count)
{
    QString text;
    text.reserve(TextSize + part.size());
    const QString filling(TextSize / count - part.size() - 8, u'x');
    for (int i = 0; i < count; ++i)
        text += part.arg(i, 7, 10, QLatin1Char('0')) + filling + u'\n';
    return text;
}

/// Tags within tags, each with a name of its own.
void OutlineOfNestedTags(benchmark::State &state)
{
    constexpr int Depth = 100'000;
    QString text = Filled(u"<t%1>"_s, Depth);
    for (int i = Depth - 1; i >= 0; --i)
        text += u"</t%1>\n"_s.arg(i, 7, 10, QLatin1Char('0'));
    Scan(state, text, FileKind::Unified);
}

/// Each macro is called ten times.
void OutlineOfMacros(benchmark::State &state)
{
    constexpr int Macros = 10'000;
    QString text = Filled(u"#define M%1 #1# "_s, Macros);
    for (int i = 0; i < 10 * Macros; ++i)
        text += u"$M%1 "_s.arg(i % Macros, 7, 10, QLatin1Char('0'));
    Scan(state, text, FileKind::Orchestra);
}

/// One line with a label, a call and an include every few characters.
void OutlineOfOneLine(benchmark::State &state)
{
    const QString part = u"a: $A( #include \"x\" m s f "_s;
    const QString line = part.repeated(TextSize / part.size());
    Scan(state, u"#define A #1# instr "_s + line + u" endin"_s, FileKind::Orchestra);
}

BENCHMARK(OutlineOfOrchestra)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfScore)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfUnified)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfNestedTags)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfMacros)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfOneLine)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
