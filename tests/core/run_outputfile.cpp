// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/outputfile.h"

#include "run/runkeys.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(OutputFile, ReplacesTheExtension)
{
    TestContext context;
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), QString());
    context.document.CurrentFile = u"/a.b/x.csd"_s;
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), u"/a.b/x.wav"_s);
    context.document.CurrentFile = u"/a.b/x"_s;
    EXPECT_EQ(OutputFileFor(u"log"_s, context.editor), u"/a.b/x.log"_s);
}

TEST(OutputFile, AnExistingFileIsAskedAbout)
{
    TestContext context;
    context.document.CurrentFile = context.WriteFile(u"x.csd"_s);
    context.settings.SaveFlag(Keys::OverwritePrompt, true);
    const QString path = context.folder.filePath(u"x.wav"_s);
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), path);
    context.WriteFile(u"x.wav"_s);
    const MessageBoxRequest question{.text = path + u" already exists. Do you want to overwrite it?"_s,
                                     .icon = BoxIcon::Warning,
                                     .buttons = BoxButtons::YesNo};
    context.desktop.ExpectMessage(question, BoxAnswer::Yes);
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), path);
    context.desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), QString());
    context.settings.SaveFlag(Keys::OverwritePrompt, false);
    EXPECT_EQ(OutputFileFor(u"wav"_s, context.editor), path);
}

} // namespace zelvane::test
