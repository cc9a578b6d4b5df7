// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/quickpreset.h"

#include "run/presetkeys.h"
#include "shell/settings.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(QuickPreset, Texts)
{
    TestContext context;
    EXPECT_EQ(QuickPresetCaption(), u"Run Zelvane Preset"_s);
    context.document.CurrentFile = u"/a/b.orc"_s;
    context.document.DocumentKind = FileKind::Orchestra;
    EXPECT_EQ(QuickPresetFileLine(context.editor), u"b.orc (Orchestra)"_s);
    context.document.CurrentFile = u"/a/b.txt"_s;
    context.document.DocumentKind = FileKind::Other;
    EXPECT_EQ(QuickPresetFileLine(context.editor), u"b.txt ()"_s);
    context.desktop.typeNames[u"/a/b.txt"_s] = u"plain text"_s;
    EXPECT_EQ(QuickPresetFileLine(context.editor), u"b.txt (plain text)"_s);
}

TEST(QuickPreset, Preview)
{
    TestContext context;
    PresetStore store(context.settings);
    EXPECT_EQ(PreviewOf(u"x"_s, context.editor), QuickPresetPreview());
    store.SaveText(u"x"_s, PresetKeys::Tooltip, u"tip"_s);
    store.SaveText(u"x"_s, PresetKeys::Image, u"107"_s);
    EXPECT_EQ(PreviewOf(u"x"_s, context.editor), (QuickPresetPreview{u"tip"_s, 107}));
    store.SaveText(u"x"_s, PresetKeys::Image, u"/a.png"_s);
    EXPECT_EQ(PreviewOf(u"x"_s, context.editor), (QuickPresetPreview{u"tip"_s, 0}));
}

TEST(QuickPreset, EditStartsTheEditor)
{
    TestContext context;
    context.document.CurrentFile = u"/a b.csd"_s;
    const ShellRequest request{
        .verb = u"open"_s, .file = QCoreApplication::applicationFilePath(), .parameters = u"\"/a b.csd\""_s};
    context.desktop.ExpectShellRun(request);
    EditFromChooser(context.editor);
    context.desktop.ExpectShellRun(request, 32);
    context.desktop.ExpectMessage({.text = u"Cannot start /a b.csd"_s, .icon = BoxIcon::Warning});
    EditFromChooser(context.editor);
    context.desktop.ExpectShellRun(request, 33);
    EditFromChooser(context.editor);
}

} // namespace zelvane::test
