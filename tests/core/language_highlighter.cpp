// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/highlighter.h"
#include "language/languagekeys.h"
#include "language/opcodelist.h"
#include "shell/editorkeys.h"
#include "support/boxes.h"
#include "support/recordingview.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const RunTimeError RanOffText(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);

class Highlighting : public ::testing::Test
{
protected:
    Highlighting() { opcodes.Add(u"oscil out out\n"_s); }

    void Open(const QString &text, FileKind kind)
    {
        context.document.DocumentKind = kind;
        context.text.SetText(text);
        context.text.styles.fill(char(StyleClass::Keyword)); // left over from before
        context.text.SetSelection(2, 4);
    }
    QByteArray Styles() const
    {
        QByteArray digits = context.text.styles;
        for (char &style : digits)
            style = char(style + '0');
        return digits;
    }

    TestContext context;
    RecordingView view;
    OpcodeList opcodes;
    Highlighter highlighter{context.editor, view, opcodes};
};

} // namespace

TEST_F(Highlighting, AnOrchestra)
{
    Open(u"out x ;c\n$a \"s\" "_s, FileKind::Orchestra);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), "2220001114405550"_ba);
    EXPECT_EQ(context.status.shown, QStringList(u"Syntax highlight..."_s)) << "the text stays";
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_FALSE(context.document.Loading);
    EXPECT_EQ(context.text.selection, (TextSpan{2, 4}));
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(view.busy);
    EXPECT_EQ(view.calls.last(), u"focus"_s);
}

TEST_F(Highlighting, AScore)
{
    Open(u"out x ;c\n$a \"s\" "_s, FileKind::Score);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), "0000001114405550"_ba);
}

TEST_F(Highlighting, AUnifiedDocument)
{
    Open(u"<CsInstruments> out </CsInstruments>"_s, FileKind::Unified);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), QByteArray(15, '6') + "02220" + QByteArray(16, '6'));
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_FALSE(context.document.Loading);
}

TEST_F(Highlighting, AnotherTextIsPlain)
{
    Open(u"out ; <a></a>\n"_s, FileKind::Other);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), QByteArray(14, '0'));
    EXPECT_FALSE(context.text.CanUndo());
}

TEST_F(Highlighting, OtherKindsAreLeftAlone)
{
    for (const FileKind kind : {FileKind::Midi, FileKind::Sound, FileKind::Cancelled}) {
        Open(u"out x"_s, kind);
        highlighter.performSyntaxHighlight();
        EXPECT_EQ(Styles(), "33333");
        EXPECT_FALSE(context.text.CanUndo());
    }
}

TEST_F(Highlighting, SwitchedOffItOnlyEmptiesTheUndoBuffer)
{
    context.settings.SaveFlag(Keys::SyntaxHighlight, false);
    Open(u"out x"_s, FileKind::Orchestra);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), "33333");
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_TRUE(context.status.shown.isEmpty());
    EXPECT_TRUE(view.calls.isEmpty());
}

TEST_F(Highlighting, ASettingThatIsNoFlagIsOnAsByDefault)
{
    context.settings.SaveStoredText(Keys::SyntaxHighlight, u"maybe"_s);
    Open(u"out x"_s, FileKind::Orchestra);
    highlighter.performSyntaxHighlight();
    EXPECT_NE(Styles(), "33333");
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_EQ(context.settings.TakeUnreadable().size(), 1u);
}

TEST_F(Highlighting, AFailureIsReportedAndLeavesTheTextHidden)
{
    Open(u"out $abc"_s, FileKind::Orchestra);
    context.desktop.ExpectMessage(ErrorBox(RanOffText), BoxAnswer::Cancel);
    highlighter.performSyntaxHighlight();
    EXPECT_EQ(Styles(), "22200000"_ba) << "what was found before it stays coloured";
    EXPECT_FALSE(view.textShown);
    EXPECT_TRUE(context.document.Loading);
    EXPECT_FALSE(view.busy) << "the pointer is not left waiting";
    EXPECT_FALSE(view.calls.contains(u"focus"_s));
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_EQ(context.text.text, u"out $abc"_s);
}

TEST_F(Highlighting, ARangeOfTheText)
{
    Open(u"out out out "_s, FileKind::Other);
    EXPECT_TRUE(highlighter.HighlightRange(4, 8, 1));
    EXPECT_EQ(Styles(), "333322203333");
    EXPECT_FALSE(context.text.CanUndo());
    EXPECT_TRUE(highlighter.HighlightRange(0, 0, 1));
    EXPECT_EQ(Styles(), "222022202220");
    EXPECT_TRUE(highlighter.HighlightRange(4, 0, 7)) << "no such mode: the range is reset";
    EXPECT_EQ(Styles(), "222000000000");
    EXPECT_TRUE(highlighter.HighlightRange(0, 3, 0));
    EXPECT_EQ(Styles(), "000000000000");
}

TEST_F(Highlighting, ACommentReachesBeyondTheRange)
{
    Open(u"x ; out\nout "_s, FileKind::Other);
    EXPECT_TRUE(highlighter.HighlightRange(0, 4, 1));
    EXPECT_EQ(Styles(), "001111113333");
}

TEST_F(Highlighting, InsertedTextIsColouredForItsPlace)
{
    const auto inserted = [this](const QString &text, FileKind kind, qsizetype start, qsizetype end) {
        Open(text, kind);
        context.text.undoSteps = 1;
        highlighter.HighlightInserted(start, end);
        EXPECT_TRUE(context.text.CanUndo());
        return Styles();
    };
    EXPECT_EQ(inserted(u"out out out "_s, FileKind::Orchestra, 4, 8), "333322203333");
    EXPECT_EQ(inserted(u"out out out "_s, FileKind::Score, 4, 8), "333300003333");
    EXPECT_EQ(inserted(u"out out out "_s, FileKind::Other, 4, 8), "333300003333");
    EXPECT_EQ(inserted(u"out out out "_s, FileKind::Orchestra, 4, 4), "333333333333");
    EXPECT_EQ(inserted(u"x ; out\nout "_s, FileKind::Orchestra, 0, 4), "001133333333") << "no further";
    EXPECT_EQ(inserted(u"x out $abc"_s, FileKind::Orchestra, 0, 10), "0022200000") << "and no failure";
    EXPECT_EQ(inserted(u"; x out\nout "_s, FileKind::Orchestra, 4, 8), "333311113333") << "in a comment";
    EXPECT_EQ(inserted(u"/*\nout */"_s, FileKind::Score, 3, 6), "333111333") << "of an earlier line";
    // In a unified file the first word lies in no section.
    const QString unified = u"out <CsInstruments>out x</CsInstruments><CsScore>out x</CsScore>"_s;
    const qsizetype orchestra = unified.indexOf(u"out x"_s);
    const qsizetype score = unified.lastIndexOf(u"out x"_s);
    EXPECT_EQ(inserted(unified, FileKind::Unified, 0, 4).first(5), "00003");
    EXPECT_EQ(inserted(unified, FileKind::Unified, orchestra, orchestra + 5).mid(orchestra - 1, 7),
              "3222003");
    EXPECT_EQ(inserted(unified, FileKind::Unified, score, score + 5).mid(score - 1, 7), "3000003");
    context.settings.SaveFlag(Keys::SyntaxHighlight, false);
    EXPECT_EQ(inserted(u"out out out "_s, FileKind::Orchestra, 4, 8), "333333333333");
}

TEST_F(Highlighting, LoadingIsSetWhileTheTextIsColoured)
{
    struct WatchingBuffer : StringBuffer {
        const DocumentRecord *document = nullptr;
        bool seen = false;
        void ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs) override
        {
            seen = document->Loading;
            StringBuffer::ApplyStyles(start, end, runs);
        }
    } buffer;
    buffer.document = &context.document;
    buffer.SetText(u"out "_s);
    EditorContext editor{context.document, buffer,          context.settings,  context.desktop,
                         context.status,   context.windows, context.operations};
    Highlighter other(editor, view, opcodes);
    EXPECT_TRUE(other.HighlightRange(0, 0, 1));
    EXPECT_TRUE(buffer.seen);
    EXPECT_FALSE(context.document.Loading);
}

TEST(SyntaxHighlightSettings, DefaultsOfAnEmptyStore)
{
    TestContext context;
    const auto formats = SyntaxHighlightSettings(context.settings);
    const std::array<StyleFormat, StyleClassCount> expected = {{
        {0x80000008, false, true},
        {0x008000, false, true},
        {0xFF0000, true, true},
        {0x800000, false, true},
        {0x800080, false, true},
        {0x808000, false, true},
        {0x000080, false, true},
    }};
    EXPECT_EQ(formats, expected);
}

TEST(SyntaxHighlightSettings, SystemColoursKeepTheStoredTextColourOut)
{
    TestContext context;
    context.settings.SaveColour(Keys::FontColor, 0x123456);
    EXPECT_EQ(SyntaxHighlightSettings(context.settings)[0], (StyleFormat{0x80000008, false, true}));
    context.settings.SaveStoredText(Keys::SystemColors, u"0"_s);
    EXPECT_EQ(SyntaxHighlightSettings(context.settings)[0], (StyleFormat{0x123456, false, false}));
    context.settings.SaveColour(Keys::OpcodeColor, 0x0000FF);
    EXPECT_EQ(SyntaxHighlightSettings(context.settings)[2], (StyleFormat{0x0000FF, true, false}));
    context.settings.SaveStoredText(Keys::TagColor, u"red"_s);
    EXPECT_EQ(SyntaxHighlightSettings(context.settings)[6], (StyleFormat{0x000080, false, true}));
}

} // namespace zelvane::test
