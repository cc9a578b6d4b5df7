// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentsteps.h"
#include "support/lifecyclefixture.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// A room that only has an outline.
struct OutlineRoom : OutlineStep {
    QStringList calls;
    bool shown = true;
    bool OutlineShown() const override { return shown; }
    void BuildOutline() override { calls.append(u"outline"_s); }
};

/// The document operations of a program whose rooms are not there, but for those that a test adds.
struct DocumentStepsTest : LifecycleFixture {
    DocumentSteps steps;
    DocumentLifecycle bare{document, text, settings, desktop, status, view, steps};
    const QString file = context.WriteFile(u"x.orc"_s, "instr 1\nendin\n");
};

} // namespace

TEST_F(DocumentStepsTest, AnEmptyPlaceDoesNothing)
{
    steps.colour->performSyntaxHighlight();
    steps.outline->ApplySingleSelection();
    EXPECT_FALSE(steps.outline->OutlineShown());
    steps.outline->BuildOutline();
    EXPECT_FALSE(steps.relatedFiles->RelatedFilesShown());
    steps.relatedFiles->BuildRelatedFiles();
    steps.relatedFiles->ClearRelatedFiles();
    steps.history->navBeforeOpen();
    steps.history->navAfterOpen();
    steps.sound->SearchSoundFile();
    EXPECT_EQ(view.calls, QStringList());
}

TEST_F(DocumentStepsTest, ADocumentOpensWithoutAnyRoom)
{
    bare.OpenFile(file);
    EXPECT_EQ(document.CurrentFile, file);
    EXPECT_EQ(text.Text(), u"instr 1\nendin\n"_s);
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(document.Modified);
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(view.busy);
    for (const QString &step :
         {u"before"_s, u"highlight"_s, u"single"_s, u"outline"_s, u"related"_s, u"sound"_s, u"after"_s,
          u"status Code outline..."_s, u"status Related files..."_s})
        EXPECT_FALSE(view.calls.contains(step)) << step.toStdString();
    bare.NewFile(FileKind::Unified, {});
    bare.InsertFile(file);
    EXPECT_TRUE(text.Text().contains(u"instr 1"_s));
    EXPECT_FALSE(view.calls.contains(u"clear related"_s));
}

TEST_F(DocumentStepsTest, ARoomTakesItsPlaceAndLeavesTheOthersEmpty)
{
    OutlineRoom room;
    steps.outline.Take(room);
    bare.OpenFile(file);
    EXPECT_EQ(room.calls, QStringList{u"outline"_s});
    EXPECT_TRUE(view.calls.contains(u"status Code outline..."_s));
    EXPECT_FALSE(view.calls.contains(u"status Related files..."_s));
    room.shown = false;
    bare.OpenFile(file);
    EXPECT_EQ(room.calls, QStringList{u"outline"_s});
}

TEST_F(DocumentStepsTest, ThePlaceBelongsToWhoTookItLast)
{
    OutlineRoom first;
    OutlineRoom second;
    steps.outline.Take(first);
    steps.outline.Take(second);
    bare.NewFile(FileKind::Orchestra, {});
    EXPECT_EQ(first.calls, QStringList());
    EXPECT_EQ(second.calls, QStringList{u"outline"_s});
}

} // namespace zelvane::test
