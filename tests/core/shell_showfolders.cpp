// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentkeys.h"
#include "shell/helplinks.h"
#include "shell/showfolders.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const ProgramFolders Folders{u"/opt/zelvane"_s, u"/usr/bin/csound"_s, u"/home/me/csound 7/csound"_s};

TEST(ShowFolders, EachEntryHasItsTarget)
{
    TestContext context;
    context.desktop.environment = {
        {u"SFDIR"_s, u"/sf"_s}, {u"SSDIR"_s, u"/ss"_s}, {u"SADIR"_s, u"/sa"_s}, {u"INCDIR"_s, u"/inc"_s}};
    context.document.CurrentFile = u"/pieces/a.orc"_s;
    const auto target = [&](KnownFolder folder) { return FolderTarget(folder, context.editor, Folders); };
    EXPECT_EQ(target(KnownFolder::SoundFiles), u"/sf"_s);
    EXPECT_EQ(target(KnownFolder::Samples), u"/ss"_s);
    EXPECT_EQ(target(KnownFolder::Analysis), u"/sa"_s);
    EXPECT_EQ(target(KnownFolder::Includes), u"/inc"_s);
    EXPECT_EQ(target(KnownFolder::Csound), u"/usr/bin"_s);
    EXPECT_EQ(target(KnownFolder::Csound2), u"/home/me/csound 7"_s);
    EXPECT_EQ(target(KnownFolder::Document), u"/pieces"_s);
    EXPECT_EQ(target(KnownFolder::Backup), u"/opt/zelvane"_s);
    EXPECT_EQ(target(KnownFolder::Program), u"/opt/zelvane"_s);
    context.settings.SaveText(Keys::BakPath, u"/backup"_s);
    EXPECT_EQ(target(KnownFolder::Backup), u"/backup"_s);
}

TEST(ShowFolders, WhatIsNotSetHasNoTarget)
{
    TestContext context;
    for (const KnownFolder folder :
         {KnownFolder::SoundFiles, KnownFolder::Samples, KnownFolder::Analysis, KnownFolder::Includes,
          KnownFolder::Csound, KnownFolder::Csound2, KnownFolder::Document})
        EXPECT_EQ(FolderTarget(folder, context.editor, {u"/opt/zelvane"_s, {}, {}}), QString())
            << int(folder);
}

TEST(ShowFolders, KeysChooseTheVerb)
{
    TestContext context;
    context.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"/sf"_s});
    OpenFolder(u"/sf"_s, context.desktop);
    context.desktop.keysDown = {KeyCode::Shift};
    context.desktop.ExpectShellRun({.verb = u"explore"_s, .file = u"/sf"_s});
    OpenFolder(u"/sf"_s, context.desktop);
    context.desktop.keysDown = {KeyCode::Ctrl, KeyCode::Shift};
    context.desktop.ExpectShellRun({.verb = u"find"_s, .file = u"/sf"_s});
    OpenFolder(u"/sf"_s, context.desktop);
}

TEST(ShowFolders, FailureIsTold)
{
    TestContext context;
    context.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"/gone"_s}, ShellFailure);
    context.desktop.ExpectMessage({.text = u"Cannot open folder."_s, .icon = BoxIcon::Warning});
    OpenFolder(u"/gone"_s, context.desktop);
}

TEST(ShowFolders, AnEmptyTargetDoesNothing)
{
    TestContext context;
    OpenFolder({}, context.desktop);
}

TEST(HelpLinks, HelpIsNamedAfterTheExecutable)
{
    TestContext context;
    const QString folder = context.folder.path();
    context.desktop.ExpectShellRun({.verb = u"open"_s, .file = folder + u"/zelvane.html"_s});
    OpenAppHelp(context.desktop, folder, u"zelvane"_s);
    const QString compiled = context.WriteFile(u"zelvane.chm"_s);
    context.desktop.ExpectShellRun({.verb = u"open"_s, .file = compiled});
    OpenAppHelp(context.desktop, folder, u"zelvane"_s);
}

TEST(HelpLinks, HelpThatDoesNotOpenIsTold)
{
    TestContext context;
    const QString folder = context.folder.path();
    context.desktop.ExpectShellRun({.verb = u"open"_s, .file = folder + u"/zelvane.html"_s}, 2);
    context.desktop.ExpectMessage({.text = u"Cannot start Zelvane Help."_s, .icon = BoxIcon::Warning});
    OpenAppHelp(context.desktop, folder, u"zelvane"_s);
}

TEST(HelpLinks, EachLinkOpensItsAddress)
{
    TestContext context;
    for (const WebLink link :
         {WebLink::FrontPage, WebLink::DirectCsound, WebLink::Download, WebLink::Manual}) {
        const QString address = QString::fromUtf16(CsoundLinks[size_t(link)]);
        EXPECT_TRUE(address.startsWith(u"https://"_s));
        context.desktop.ExpectShellRun({.verb = u"open"_s, .file = address});
        OpenCsoundLink(link, context.desktop);
    }
}

} // namespace
