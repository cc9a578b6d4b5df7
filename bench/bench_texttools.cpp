// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findtext.h"
#include "shell/textops.h"
#include "texttools/reformatter.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>

using namespace Qt::Literals::StringLiterals;

// Every transformation of a text on ten million characters, beside copying the text once as plain memory and
// twice as a string. Each figure is characters a second.

namespace zelvane
{
namespace
{

constexpr qsizetype Characters = 10'000'000;

/// An orchestra as people write it: comments at line ends and in blocks, indents of blanks and of tabs,
/// trailing blanks, blank lines.
const QString &Orchestra()
{
    static const QString text = [] {
        const QString piece = u"; a sine with an envelope, and some words about it\n"
                              "instr 1\n"
                              "\tkenv   linen  p4, .02, p3, .1   ; rise and decay  \n"
                              "        asig oscil kenv, cpspch(p5), 1 \n"
                              "\t\tout\tasig, asig\t\n"
                              "/* the balance\n   of both */\n"
                              "\n\n\n"
                              "  if (kenv > 1) kgoto  label\t; never\n"
                              "endin\n"_s;
        QString all;
        all.reserve(Characters + piece.size());
        while (all.size() < Characters)
            all.append(piece);
        all.truncate(Characters);
        return all;
    }();
    return text;
}

/// A text that gives every transformation something to do at nearly every character.
const QString &Dense()
{
    static const QString text =
        QString(u"a  \tB;\n\n/*c*/ D\t \n"_s).repeated(Characters / 18 + 1).left(Characters);
    return text;
}

const QString &TextOf(const benchmark::State &state)
{
    return state.range(0) ? Dense() : Orchestra();
}

void CountCharacters(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * Characters);
}

void CopyOfMemory(benchmark::State &state)
{
    const QString &text = Orchestra();
    const std::unique_ptr<QChar[]> to(new QChar[size_t(Characters)]);
    for (auto _ : state) {
        std::memcpy(static_cast<void *>(to.get()), text.constData(), size_t(text.size()) * sizeof(QChar));
        benchmark::ClobberMemory();
    }
    CountCharacters(state);
}

void CopyOfTextTwice(benchmark::State &state)
{
    const QString &text = TextOf(state);
    for (auto _ : state) {
        for (int copy = 0; copy < 2; ++copy) {
            QString other(text.constData(), text.size());
            benchmark::DoNotOptimize(other.data());
        }
    }
    CountCharacters(state);
}

/// A bench of one transformation of the text.
#define BENCH_OF_TEXT(name, expression)                                                                      \
    void name(benchmark::State &state)                                                                       \
    {                                                                                                        \
        const QString &text = TextOf(state);                                                                 \
        for (auto _ : state) {                                                                               \
            auto result = expression;                                                                        \
            benchmark::DoNotOptimize(result);                                                                \
        }                                                                                                    \
        CountCharacters(state);                                                                              \
    }                                                                                                        \
    BENCHMARK(name)->Unit(benchmark::kMillisecond)->ArgName("dense")->Arg(0)->Arg(1)

BENCHMARK(CopyOfMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyOfTextTwice)->Unit(benchmark::kMillisecond)->ArgName("dense")->Arg(0)->Arg(1);

BENCH_OF_TEXT(CommentLines, CommentText(text, false));
BENCH_OF_TEXT(CommentBlock, CommentText(text, true));
BENCH_OF_TEXT(Uncomment, UncommentText(text));
BENCH_OF_TEXT(RemoveAllComments, RemoveCommentsFromText(text));
BENCH_OF_TEXT(IndentByBlanks, IndentText(text, u"        "));
BENCH_OF_TEXT(UnindentByTab, UnindentText(text, u"\t"));
BENCH_OF_TEXT(Uppercase, ChangeCaseOfText(text, CaseChange::Upper));
BENCH_OF_TEXT(Lowercase, ChangeCaseOfText(text, CaseChange::Lower));
BENCH_OF_TEXT(Capitalize, ChangeCaseOfText(text, CaseChange::Capitalize));
BENCH_OF_TEXT(FindInNoCase, FindText(text, u"nowhere to be found", 0, -1, FindAnywhere));
BENCH_OF_TEXT(HitsOfReplaceAll,
              HitsToReplace(text, u"kenv", u"kenvelope", 0, -1, FindWholeWord | FindMatchCase));
BENCH_OF_TEXT(HitsOfReplaceAllInNoCase, HitsToReplace(text, u"KENV", u"kenvelope", 0, -1, FindAnywhere));

void ReformatBy(benchmark::State &state, FormattingAlgorithm algorithm)
{
    const QString &text = TextOf(state);
    for (auto _ : state) {
        auto result = Reformat(algorithm, text, 8, [] { return true; });
        benchmark::DoNotOptimize(result);
    }
    CountCharacters(state);
}

#define BENCH_OF_ALGORITHM(algorithm)                                                                        \
    BENCHMARK_CAPTURE(ReformatBy, algorithm, FormattingAlgorithm::algorithm)                                 \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->ArgName("dense")                                                                                   \
        ->Arg(0)                                                                                             \
        ->Arg(1)

BENCH_OF_ALGORITHM(OneSpaceToOneTab);
BENCH_OF_ALGORITHM(MultipleSpacesToOneTab);
BENCH_OF_ALGORITHM(OneOrMultipleSpacesToOneTab);
BENCH_OF_ALGORITHM(MultipleSpacesToOneSpace);
BENCH_OF_ALGORITHM(OneTabToOneSpace);
BENCH_OF_ALGORITHM(OneTabToMultipleSpaces);
BENCH_OF_ALGORITHM(RemoveTrailing);
BENCH_OF_ALGORITHM(RemoveLineIndent);
BENCH_OF_ALGORITHM(MultipleBlankLinesToOne);
BENCH_OF_ALGORITHM(RemoveBlankLines);

} // namespace
} // namespace zelvane

BENCHMARK_MAIN();
