// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/toolpaths.h"

#include "shell/toolkeys.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <QFile>
#include <QString>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(ToolPaths, AreReadFromTheOptions)
{
    TestContext context;
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

TEST(ToolPaths, CsoundIsTheOneInPathWhereNoneIsSet)
{
    TestContext context;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", context.folder.path().toLocal8Bit());
    const QString none = ReadToolPaths(context.settings).Csound;
    const QString csound = context.WriteFile(u"csound"_s, "#!/bin/sh\n");
    QFile::setPermissions(csound, QFile::ReadOwner | QFile::ExeOwner);
    const QString found = ReadToolPaths(context.settings).Csound;
    context.settings.SaveText(Keys::Csound, u"mine"_s);
    const QString set = ReadToolPaths(context.settings).Csound;
    qputenv("PATH", path);
    EXPECT_EQ(none, QString()) << "a message says so";
    EXPECT_EQ(found, csound);
    EXPECT_EQ(set, u"mine"_s);
}

} // namespace zelvane::test
