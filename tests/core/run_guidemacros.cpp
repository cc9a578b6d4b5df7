// SPDX-License-Identifier: GPL-3.0-or-later
// What the guide says that macros become: lines of the form "TEXT = RESULT".

#include "run/macroexpansion.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "support/guidepages.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(GuideMacros, BecomeWhatTheGuideSays)
{
    TestContext context;
    const ToolPaths tools;
    RunContext run{context.editor, tools, context.windows};
    context.document.CurrentFile = context.WriteFile(u"bells.orc"_s);
    context.WriteFile(u"bells.sco"_s);
    ClassifyDocument(context.document, context.settings);

    int lines = 0;
    for (const QString &block : GuideBlocks(u"macro"_s)) {
        for (QString line : block.split(u'\n', Qt::SkipEmptyParts)) {
            line.replace(u"/home/composer/pieces"_s, context.folder.path());
            QString text = line.section(u" = "_s, 0, 0);
            EXPECT_TRUE(text.contains(u'$')) << line.toStdString();
            EXPECT_TRUE(ExpandPresetMacros(text, false, run)) << line.toStdString();
            EXPECT_EQ(text, line.section(u" = "_s, 1));
            ++lines;
        }
    }
    EXPECT_GE(lines, 10);
}

} // namespace zelvane::test
