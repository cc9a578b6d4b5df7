// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/toolpaths.h"

#include "shell/toolkeys.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(ToolPaths, AreReadFromTheOptions)
{
    TestContext context;
    EXPECT_TRUE(ReadToolPaths(context.settings).Csound.isEmpty());
    context.settings.SaveText(Keys::Csound, u"/bin/csound"_s);
    context.settings.SaveText(Keys::Csound2, u"/bin/csound2"_s);
    context.settings.SaveText(Keys::Help, u"/h.html"_s);
    context.settings.SaveText(Keys::Editor, u"audacity"_s);
    context.settings.SaveText(Keys::Player, u"aplay"_s);
    const ToolPaths tools = ReadToolPaths(context.settings);
    EXPECT_EQ(tools.Csound, u"/bin/csound"_s);
    EXPECT_EQ(tools.Csound2, u"/bin/csound2"_s);
    EXPECT_EQ(tools.Help, u"/h.html"_s);
    EXPECT_EQ(tools.Editor, u"audacity"_s);
    EXPECT_EQ(tools.Player, u"aplay"_s);
}

} // namespace zelvane::test
