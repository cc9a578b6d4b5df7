// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/insertcoloured.h"

#include "shell/documentsteps.h"
#include "support/printers.h"
#include "support/recordedcolour.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

struct ColouredEdits : testing::Test, TestContext {
    DocumentSteps steps;
    RecordedColour colour;

    ColouredEdits() { steps.colour.Take(colour); }
};

} // namespace

TEST_F(ColouredEdits, ATextTakesThePlaceOfTheSelectionAndIsColoured)
{
    text.SetText(u"abcdef"_s);
    text.SetSelection(2, 4);
    text.EmptyUndoBuffer();
    InsertColoured(editor, steps, u"x\r\ny"_s);
    EXPECT_EQ(text.text, u"abx\nyef"_s);
    EXPECT_EQ(text.selection, (TextSpan{5, 5}));
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(colour.inserted, (std::vector<TextSpan>{{2, 5}}));
}

TEST_F(ColouredEdits, TheLinesOfAChangeAreColouredWhole)
{
    text.SetText(u"one\ntwo\nthree\n"_s);
    ColourLines(editor, steps, {5, 6});
    ColourLines(editor, steps, {5, 9});
    ColourLines(editor, steps, {14, 14});
    EXPECT_EQ(colour.inserted, (std::vector<TextSpan>{{4, 7}, {4, 13}, {14, 14}}));
}

} // namespace zelvane::test
