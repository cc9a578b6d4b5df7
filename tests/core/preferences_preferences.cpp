// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/preferences.h"

#include "support/printers.h"
#include "support/scripteddesktop.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

TEST(PreferencesTexts, ListsInTheirOrder)
{
    EXPECT_EQ(StartupTexts(),
              (QStringList{u"Open last document"_s, u"Show Open dialog box"_s, u"Nothing"_s}));
    EXPECT_EQ(SyntaxElements(), (QStringList{u"Normal text"_s, u"Opcodes"_s, u"Macros"_s, u"Includes"_s,
                                             u"String literals"_s, u"Comments"_s}));
    EXPECT_EQ(ExtensionsNote(),
              u"Type extensions separated by only one space. Example: \"xxx yyy zzz\" NOT \"*.xxx .yyy    "
              "zzz\" "_s);
}

TEST(PreferencesTexts, VariablesAreShownWithTheirValues)
{
    test::ScriptedDesktop desktop;
    desktop.environment[u"SSDIR"_s] = u"/a b"_s;
    EXPECT_EQ(VariableLine(u"SFDIR"_s, desktop), u"SFDIR: "_s);
    EXPECT_EQ(VariableLine(u"SSDIR"_s, desktop), u"SSDIR: /a b"_s);
}

TEST(PreferencesTexts, PickersBeginWhereTheFileIs)
{
    EXPECT_EQ(ProgramRequest(u"Csound"_s, u"\"/opt/a b/csound\""_s),
              (FileDialogRequest{.title = u"Csound"_s,
                                 .filters = {{u"Executables"_s, u"*.exe"_s}},
                                 .folder = u"/opt/a b/csound"_s}));
    EXPECT_EQ(HelpFileRequest(u"Help"_s, u"/doc/manual.hlp"_s),
              (FileDialogRequest{
                  .title = u"Help"_s,
                  .filters = {{u"Help files"_s, u"*.hlp;*.htm;*.html;*.pdf;*.txt;*.chm;*.rtf;*.doc"_s}},
                  .folder = u"/doc/manual.hlp"_s}));
    EXPECT_EQ(ProgramRequest(u"Csound"_s, {}).folder, QString());
}
