// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statement.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <QChar>
#include <QString>

using namespace Qt::Literals::StringLiterals;

// A score statement of a thousand tokens: reading it, and writing it with the values that it has, beside
// copying its text as plain memory. Each figure is characters a second.

namespace zelvane
{
namespace
{

/// A statement over many lines, in the middle of a score of other ones.
const QString &Score()
{
    static const QString text = [] {
        QString statement = u"i1 0"_s;
        for (int token = 2; token < 1000; ++token)
            statement += (token % 8 == 0 ? u"\n\t"_s : u" "_s) + QString::number(token * 0.25);
        const QString others = u"i2 0 1 .5 440 [1 + 2] \"a name\"\n"_s.repeated(50);
        return others + statement + u'\n' + others;
    }();
    return text;
}

qsizetype Caret()
{
    return Score().indexOf(u"i1 0"_s);
}

QString StatementText()
{
    const Statement statement = *ParseStatement(Score(), Caret());
    return Score().mid(statement.range.start, statement.range.Length());
}

void Count(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * StatementText().size());
}

void CopyOfMemory(benchmark::State &state)
{
    const QString text = StatementText();
    const std::unique_ptr<QChar[]> to(new QChar[size_t(text.size())]);
    for (auto _ : state) {
        std::memcpy(static_cast<void *>(to.get()), text.constData(), size_t(text.size()) * sizeof(QChar));
        benchmark::ClobberMemory();
    }
    Count(state);
}
BENCHMARK(CopyOfMemory);

void ReadStatement(benchmark::State &state)
{
    const qsizetype caret = Caret();
    for (auto _ : state)
        benchmark::DoNotOptimize(ParseStatement(Score(), caret));
    Count(state);
}
BENCHMARK(ReadStatement);

void ReadAndRewriteStatement(benchmark::State &state)
{
    const qsizetype caret = Caret();
    for (auto _ : state) {
        const Statement statement = *ParseStatement(Score(), caret);
        const QStringView text = QStringView(Score()).sliced(statement.range.start, statement.range.Length());
        benchmark::DoNotOptimize(WriteStatement(text, statement.values));
    }
    Count(state);
}
BENCHMARK(ReadAndRewriteStatement);

} // namespace
} // namespace zelvane

BENCHMARK_MAIN();
