// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileinfo.h"

#include "support/scripteddesktop.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(FileInfo, NameTypeAndKindOfExecutable)
{
    ScriptedDesktop desktop;
    desktop.typeNames[u"/opt/csound"_s] = u"Application"_s;
    desktop.executableKinds[u"/opt/csound"_s] = u"ELF 64-bit"_s;
    desktop.typeNames[u"/a/manual.html"_s] = u"HTML document"_s;
    EXPECT_EQ(FileInfoText(u"/opt/csound"_s, desktop), u"csound: Application ELF 64-bit"_s);
    EXPECT_EQ(FileInfoText(u"/a/manual.html"_s, desktop), u"manual.html: HTML document"_s);
}

TEST(FileInfo, UnknownPathHasNoText)
{
    const ScriptedDesktop desktop;
    EXPECT_EQ(FileInfoText(u"/no/such"_s, desktop), QString());
    EXPECT_EQ(FileInfoText({}, desktop), QString());
}

TEST(FileInfo, ExecutableFileIsOneOfAnyKind)
{
    ScriptedDesktop desktop;
    desktop.executableKinds[u"/opt/csound"_s] = u"<unknown executable>"_s;
    EXPECT_TRUE(IsExecutableFile(u"/opt/csound"_s, desktop));
    EXPECT_FALSE(IsExecutableFile(u"/a/manual.html"_s, desktop));
    EXPECT_FALSE(IsExecutableFile({}, desktop));
}

} // namespace zelvane::test
