// SPDX-License-Identifier: GPL-3.0-or-later
// The mapping that the guide shows: an instrument before it and after it.

#include "instruments/mapping.h"
#include "shell/documentsteps.h"
#include "support/guidepages.h"
#include "support/printers.h"
#include "support/recordedcolour.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(GuideMapping, MakesWhatTheGuideShows)
{
    const QStringList shown = FencedBlocks(GuidePage(u"instruments-and-sliders"_s), u"csound-orc"_s);
    ASSERT_EQ(shown.size(), 2);
    TestContext context;
    DocumentSteps steps;
    RecordedColour colour;
    steps.colour.Take(colour);
    context.document.DocumentKind = FileKind::Orchestra;
    context.document.CurrentFile = context.WriteFile(u"waltz.orc"_s);
    context.WriteFile(
        u"waltz.xml"_s,
        "<instruments><instr number=\"1\">"
        "<p number=\"4\" name=\"Level\" description=\"How hard the string is plucked\" variable=\"iLevel\"/>"
        "<p number=\"5\" name=\"Pitch\" description=\"Octave.pitch class\" variable=\"iPitch\"/>"
        "</instr></instruments>");
    context.text.SetText(shown[0]);
    context.text.EmptyUndoBuffer();
    EXPECT_EQ(MapParameters(context.editor, steps, {u"1"_s, true, false}), MappingResult::Finished);
    EXPECT_EQ(context.text.text, shown[1]);
}

} // namespace zelvane::test
