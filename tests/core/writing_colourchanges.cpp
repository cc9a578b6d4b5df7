// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/colourchanges.h"

#include "language/opcodelist.h"
#include "oracle/scanoracle.h"
#include "platform/stylerun.h"
#include "platform/textbuffer.h"
#include "shell/document.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

QByteArray Paint(qsizetype length, const StyleRuns &runs)
{
    QByteArray styles(length, char(StyleClass::Text));
    for (const StyleRun &run : runs)
        std::fill_n(styles.begin() + run.start, run.length, char(run.style));
    return styles;
}

/// The plain runs of a style for each character.
StyleRuns RunsOf(const QByteArray &styles)
{
    StyleRuns runs;
    for (qsizetype at = 0; at < styles.size(); ++at) {
        const auto style = StyleClass(styles[at]);
        if (style == StyleClass::Text)
            continue;
        if (at > 0 && styles[at - 1] == styles[at])
            ++runs.back().length;
        else
            runs.push_back({qint32(at), 1, style});
    }
    return runs;
}

QByteArray RefreshedByLoops(const QString &text, FileKind kind, const OpcodeList &opcodes)
{
    oracle::Painting painting{QByteArray(text.size(), char(StyleClass::Text)), false};
    if (kind == FileKind::Unified)
        oracle::HighlightUnified(text, opcodes.OpcodeWords(), painting);
    else if (kind == FileKind::Orchestra || kind == FileKind::Score)
        oracle::HighlightRange(text, 0, 0, int(kind), opcodes.OpcodeWords(), painting);
    return painting.styles;
}

/// A coloured text as the text control keeps it.
struct Model {
    QString text;
    QByteArray styles;
    KnownColours known;

    explicit Model(const QString &start) : text(start), styles(start.size(), char(StyleClass::Text)) {}

    /// @param old what has come back by undo has the classes that it had; else a text takes the one before it
    void Edit(qsizetype offset, qsizetype removed, const QString &put, const QByteArray &old = {})
    {
        text.replace(offset, removed, put);
        const char before = offset > 0 ? styles[offset - 1] : char(StyleClass::Text);
        styles.replace(offset, removed, old.isEmpty() ? QByteArray(put.size(), before) : old);
        known.Edited({offset, removed, put.size()});
    }
    StyleRuns Shown() const
    {
        const TextSpan unknown = known.Unknown(text.size());
        return known.With(RunsOf(styles.mid(unknown.start, unknown.Length())), text.size());
    }
    /// What a pause does. @return how many characters were coloured
    qsizetype Colour(FileKind kind, const OpcodeList &opcodes)
    {
        const StyleRuns wanted = RefreshedColours(text, kind, opcodes).value_or(StyleRuns());
        qsizetype coloured = 0;
        const TextSpan unknown = known.Unknown(text.size());
        const StyleRuns edited = RunsOf(styles.mid(unknown.start, unknown.Length()));
        const std::vector<ColourChange> changes = known.Changes(edited, wanted, text.size());
        EXPECT_EQ(changes, ColourChanges(Shown(), wanted, text.size()));
        for (const ColourChange &change : changes) {
            coloured += change.span.Length();
            std::fill(styles.begin() + change.span.start, styles.begin() + change.span.end,
                      char(StyleClass::Text));
            for (const StyleRun &run : change.runs) {
                EXPECT_GE(run.start, change.span.start);
                EXPECT_LE(run.start + run.length, change.span.end);
                std::fill_n(styles.begin() + run.start, run.length, char(run.style));
            }
        }
        known.Know(wanted);
        return coloured;
    }
};

const QStringList Pieces = {u" "_s,
                            u"\n"_s,
                            u"\n"_s,
                            u"\t"_s,
                            u";"_s,
                            u"/*"_s,
                            u"*/"_s,
                            u"/"_s,
                            u"\""_s,
                            u"$"_s,
                            u"$a;"_s,
                            u"#define "_s,
                            u"#"_s,
                            u"oscil"_s,
                            u"out"_s,
                            u" out "_s,
                            u"a"_s,
                            u"1"_s,
                            u"\u00e9"_s,
                            u"\U0001F600"_s,
                            u"<"_s,
                            u">"_s,
                            u"<b>"_s,
                            u"</b>"_s,
                            u"</"_s,
                            u"oscil "_s,
                            u"abcdefghijkl "_s,
                            u"; note\n"_s,
                            u"\"s\""_s,
                            u"\n out a1\n"_s,
                            u"<CsInstruments>"_s,
                            u"</CsInstruments>"_s,
                            u"<CsScore>"_s,
                            u"</CsScore>"_s};

/// Pieces that ship with the program.
QStringList RealTexts()
{
    QStringList texts;
    for (const char *name : {"bells.csd", "waltz.orc", "waltz.sco"}) {
        QFile file(QStringLiteral(ZELVANE_SOURCE_DIR "/examples/") + QLatin1String(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        texts.append(QString::fromUtf8(file.readAll()).remove(u'\r'));
    }
    return texts;
}

class ColourChangesTest : public ::testing::Test
{
protected:
    ColourChangesTest() { opcodes.Add(u"oscil out instr endin outs linen oscil\n"_s); }

    /// Compares what a pause gives with a refresh.
    void CompareAtRest(Model &model, FileKind kind, bool withLoops)
    {
        model.Colour(kind, opcodes);
        const StyleRuns wanted = RefreshedColours(model.text, kind, opcodes).value_or(StyleRuns());
        ASSERT_EQ(model.styles, Paint(model.text.size(), wanted));
        if (withLoops) {
            ASSERT_EQ(model.styles, RefreshedByLoops(model.text, kind, opcodes));
        }
    }

    /// Edits a text at random, and compares it behind each edit as it is at rest. Some edits come one behind
    /// the other all the same: then it is a copy of the text that rests.
    void EditAndCompare(const QString &start, FileKind kind, int edits, qsizetype most, unsigned seed)
    {
        RandomText random(Pieces, 4, seed);
        Model model(start);
        model.Colour(kind, opcodes);
        QString cut;
        QByteArray cutStyles;
        for (int edit = 0; edit < edits; ++edit) {
            const auto length = int(model.text.size());
            const int offset = random.Number(0, length);
            int removed = random.Number(0, 3) ? 0 : random.Number(0, std::min(length - offset, 12));
            if (length > most)
                removed = std::min(length - offset, random.Number(0, 200));
            if (random.Number(0, 5) == 0 && !cut.isEmpty()) {
                model.Edit(offset, 0, cut, cutStyles);
                cut.clear();
            } else {
                if (removed > 0) {
                    cut = model.text.mid(offset, removed);
                    cutStyles = model.styles.mid(offset, removed);
                }
                model.Edit(offset, removed, random.Number(0, 9) ? random.Next() : QString());
            }
            ASSERT_EQ(model.Shown(), RunsOf(model.styles)) << "edit " << edit;
            if (random.Number(0, 30) == 0) {
                // Somebody else has coloured.
                std::fill(model.styles.begin() + model.styles.size() / 2, model.styles.end(),
                          char(StyleClass::Keyword));
                model.known.Forget();
            }
            const bool withLoops = edit % 16 == 0;
            if (random.Number(0, 3) == 0) {
                Model rests = model;
                CompareAtRest(rests, kind, withLoops);
            } else {
                CompareAtRest(model, kind, withLoops);
            }
            ASSERT_FALSE(HasFailure()) << "edit " << edit;
            ++compared;
        }
    }

    int compared = 0;
    OpcodeList opcodes;
};

constexpr FileKind Kinds[] = {FileKind::Orchestra, FileKind::Score, FileKind::Unified};

} // namespace

TEST_F(ColourChangesTest, RandomTextsHaveTheColoursOfARefreshAtRest)
{
    unsigned seed = 1;
    for (const FileKind kind : Kinds) {
        for (int text = 0; text < 50; ++text)
            EditAndCompare({}, kind, 600, 300, seed++);
    }
    EXPECT_EQ(compared, 90'000);
}

TEST_F(ColourChangesTest, RealTextsHaveTheColoursOfARefreshAtRest)
{
    unsigned seed = 1000;
    for (const QString &text : RealTexts()) {
        ASSERT_GT(text.size(), 200);
        for (const FileKind kind : Kinds)
            EditAndCompare(text, kind, 1200, text.size() + 400, seed++);
    }
    EXPECT_GT(compared, 10'000);
}

TEST_F(ColourChangesTest, OnlyWhatDiffersIsColoured)
{
    const QString line = u"a1 oscil 10000, 440, 1 ; a line\n"_s;
    Model model(line.repeated(1000));
    EXPECT_GT(model.Colour(FileKind::Orchestra, opcodes), 1000);
    EXPECT_EQ(model.Colour(FileKind::Orchestra, opcodes), 0);
    model.Edit(line.size() * 500, 0, u" out "_s);
    EXPECT_EQ(model.known.Unknown(model.text.size()), (TextSpan{line.size() * 500, line.size() * 500 + 5}));
    const qsizetype coloured = model.Colour(FileKind::Orchestra, opcodes);
    EXPECT_GT(coloured, 0);
    EXPECT_LT(coloured, 100);
    // A comment that is opened takes all that stands behind it, in one go.
    model.Edit(0, 0, u"/* "_s);
    model.Edit(model.text.size(), 0, u" */"_s);
    const StyleRuns wanted = RefreshedColours(model.text, FileKind::Orchestra, opcodes).value_or(StyleRuns());
    EXPECT_EQ(wanted.size(), 1u);
    EXPECT_EQ(ColourChanges(model.Shown(), wanted, model.text.size()).size(), 1u);
}

TEST_F(ColourChangesTest, CloseStretchesAreOne)
{
    const StyleRuns shown{
        {0, 2, StyleClass::Opcode}, {10, 2, StyleClass::Comment}, {500, 4, StyleClass::Tag}};
    const StyleRuns wanted{
        {3, 2, StyleClass::Opcode}, {10, 2, StyleClass::Comment}, {502, 3, StyleClass::Tag}};
    const std::vector<ColourChange> changes = ColourChanges(shown, wanted, 505);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0], (ColourChange{{0, 5}, {{3, 2, StyleClass::Opcode}}}));
    EXPECT_EQ(changes[1], (ColourChange{{500, 505}, {{502, 3, StyleClass::Tag}}}));
    EXPECT_TRUE(ColourChanges(shown, shown, 505).empty());
    EXPECT_TRUE(ColourChanges({}, {}, 0).empty());
}

TEST_F(ColourChangesTest, RunsBecomePlain)
{
    const StyleRuns runs{{0, 2, StyleClass::Comment}, {2, 3, StyleClass::Comment}, {5, 0, StyleClass::Tag},
                         {5, 2, StyleClass::Text},    {7, 2, StyleClass::Comment}, {9, 9, StyleClass::Macro}};
    EXPECT_EQ(
        PlainRuns(runs, 12),
        (StyleRuns{{0, 5, StyleClass::Comment}, {7, 2, StyleClass::Comment}, {9, 3, StyleClass::Macro}}));
    EXPECT_TRUE(PlainRuns(runs, 0).empty());
}

TEST_F(ColourChangesTest, KindsThatARefreshLeavesAlone)
{
    EXPECT_EQ(RefreshedColours(u"out ;\n", FileKind::Other, opcodes), StyleRuns());
    for (const FileKind kind : {FileKind::Midi, FileKind::Sound, FileKind::Cancelled})
        EXPECT_FALSE(RefreshedColours(u"out ;\n", kind, opcodes));
}

} // namespace zelvane::test
