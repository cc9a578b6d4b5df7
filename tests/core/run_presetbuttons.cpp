// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetbuttons.h"

#include "run/presetkeys.h"
#include "run/toolpaths.h"
#include "shell/settings.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(PresetBar, LabelsAreCutBehindTenCharacters)
{
    EXPECT_EQ(PresetLabel({}), QString());
    EXPECT_EQ(PresetLabel(u"1234567890"_s), u"1234567890"_s);
    EXPECT_EQ(PresetLabel(u"12345678901"_s), u"1234567..."_s);
    EXPECT_EQ(PresetLabel(u"123456\U0001F3B5xxxx"_s), u"123456..."_s); // no half of a character
}

TEST(PresetBar, Shortcuts)
{
    const QStringList expected{u"\tCtrl+1"_s, u"\tCtrl+2"_s, u"\tCtrl+3"_s, u"\tCtrl+4"_s, u"\tCtrl+5"_s,
                               u"\tCtrl+6"_s, u"\tCtrl+7"_s, u"\tCtrl+8"_s, u"\tCtrl+9"_s, u"\tCtrl+0"_s,
                               u"\tAlt+1"_s,  u"\tAlt+2"_s,  u"\tAlt+3"_s,  u"\tAlt+4"_s,  u"\tAlt+5"_s,
                               u"\tAlt+6"_s,  u"\tAlt+7"_s,  u"\tAlt+8"_s,  u"\tAlt+9"_s,  u"\tAlt+0"_s,
                               u""_s,         u""_s};
    for (int row = 0; row < int(expected.size()); ++row) {
        EXPECT_EQ(PresetShortcut(row), expected[row]);
        EXPECT_EQ(PresetMenuCaption(u"My key"_s, row), u"&My key"_s + expected[row]);
    }
}

TEST(PresetBar, DigitsRunTheRowsOfTheirShortcuts)
{
    for (int row = 0; row < 20; ++row) {
        const QString shortcut = PresetShortcut(row);
        const int digit = shortcut.back().digitValue();
        const bool ctrl = shortcut.startsWith(u"\tCtrl");
        EXPECT_EQ(PresetRowOfDigit(digit, ctrl, !ctrl), row);
        EXPECT_EQ(PresetRowOfDigit(digit, false, false), -1);
        EXPECT_EQ(PresetRowOfDigit(digit, true, true), -1);
    }
    EXPECT_EQ(PresetRowOfDigit(-1, true, false), -1);
    EXPECT_EQ(PresetRowOfDigit(10, true, false), -1);
}

TEST(PresetBar, ImageForms)
{
    using Form = PresetImage::Form;
    EXPECT_EQ(ImageOf({}), PresetImage());
    EXPECT_EQ(ImageOf(u"101"_s), (PresetImage{Form::BuiltIn, 101, {}}));
    EXPECT_EQ(ImageOf(u"/a/101"_s), (PresetImage{Form::File, 0, u"/a/101"_s}));
    EXPECT_EQ(ImageOf(u"1e99"_s), (PresetImage{Form::BuiltIn, 0, {}}));
    EXPECT_EQ(ImageOf(u"-3"_s), (PresetImage{Form::BuiltIn, 0, {}}));
}

TEST(PresetBar, ButtonOfARecord)
{
    TestContext context;
    const ToolPaths tools{.Csound = u"/opt/csound"_s};
    const RunContext run{context.editor, tools, context.windows};
    PresetStore store(context.settings);
    EXPECT_EQ(
        ButtonOf(u"a long preset"_s, run),
        (PresetButton{.key = u"a long preset"_s, .label = u"a long ..."_s, .tooltip = u"a long preset"_s}));
    store.SaveText(u"x"_s, PresetKeys::Name, u"Render it now"_s);
    store.SaveText(u"x"_s, PresetKeys::Tooltip, u"Renders"_s);
    store.SaveStoredText(u"x"_s, PresetKeys::NewGroup, u"-1"_s);
    store.SaveText(u"x"_s, PresetKeys::Image, u"105"_s);
    store.SaveText(u"x"_s, PresetKeys::Command, u"$CSOUND$"_s);
    EXPECT_EQ(ButtonOf(u"x"_s, run), (PresetButton{.key = u"x"_s,
                                                   .newGroup = true,
                                                   .label = u"Render ..."_s,
                                                   .tooltip = u"Renders"_s,
                                                   .image = {PresetImage::Form::BuiltIn, 105, {}},
                                                   .command = u"/opt/csound"_s}));
    store.SaveStoredText(u"x"_s, PresetKeys::CreateButton, u"0"_s);
    EXPECT_FALSE(ButtonOf(u"x"_s, run).has_value());
    for (const QString &on : {u"1"_s, u"-1"_s, u"yes"_s, u""_s}) {
        store.SaveStoredText(u"x"_s, PresetKeys::CreateButton, on);
        EXPECT_TRUE(ButtonOf(u"x"_s, run).has_value());
    }
}

TEST(PresetBar, PopupCaptions)
{
    EXPECT_EQ(PresetPopupCaptions(u"Render"_s),
              (QStringList{u"Render\tClick"_s, u"Render (Confirm macros)\tCtrl+Click"_s,
                           u"&Edit...\tAlt+Click"_s}));
}

} // namespace zelvane::test
