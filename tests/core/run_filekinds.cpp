// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/filekinds.h"

#include "run/toolpaths.h"
#include "shell/documentkeys.h"
#include "shell/toolkeys.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr FileKind Kinds[] = {FileKind::Other,   FileKind::Orchestra, FileKind::Score,
                              FileKind::Unified, FileKind::Midi,      FileKind::Sound};

} // namespace

TEST(FileKinds, LabelsAndWords)
{
    TestContext context;
    const QStringList labels{u""_s, u"Orchestra"_s, u"Score"_s, u"Unified Format"_s, u"MIDI"_s, u"Sound"_s};
    const QStringList words{u""_s, u"orchestra"_s, u"score"_s, u"csd"_s, u"midi"_s, u"sound"_s};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(KindLabel(Kinds[i], context.document, context.desktop), labels[i]);
        EXPECT_EQ(KindWord(Kinds[i]), words[i]);
    }
    context.document.CurrentFile = u"/a/b.txt"_s;
    context.desktop.typeNames[u"/a/b.txt"_s] = u"plain text"_s;
    EXPECT_EQ(KindLabel(FileKind::Other, context.document, context.desktop), u"plain text"_s);
    EXPECT_EQ(KindLabel(FileKind::Score, context.document, context.desktop), u"Score"_s);
}

TEST(FileKinds, Patterns)
{
    TestContext context;
    const auto patterns = [&context](FileKind kind, const QString &base) {
        return KindPatterns(kind, base, context.document, context.settings);
    };
    EXPECT_EQ(patterns(FileKind::Orchestra, {}), u"*.orc"_s);
    EXPECT_EQ(patterns(FileKind::Midi, {}), u"*.mid;*.midi"_s);
    EXPECT_EQ(patterns(FileKind::Sound, u"son*"_s), u"son*.wav;son*.aif;son*.aiff"_s);
    EXPECT_EQ(patterns(FileKind::Other, {}), QString());
    context.document.CurrentFile = context.WriteFile(u"x.txt"_s);
    EXPECT_EQ(patterns(FileKind::Other, {}), u"*.txt"_s);
    EXPECT_EQ(patterns(FileKind::Other, u"a"_s), u"a.txt"_s);
    context.settings.SaveText(Keys::OrchestraExtensions, u"orc inc udo"_s);
    EXPECT_EQ(patterns(FileKind::Orchestra, {}), u"*.orc;*.inc;*.udo"_s);
    context.settings.SaveText(Keys::OrchestraExtensions, {});
    EXPECT_EQ(patterns(FileKind::Orchestra, {}), QString());
}

TEST(FileKinds, FirstExtension)
{
    TestContext context;
    const QStringList expected{u""_s, u"orc"_s, u"sco"_s, u"csd"_s, u""_s, u""_s};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(FirstExtension(Kinds[i], context.settings), expected[i]);
    context.settings.SaveText(Keys::ScoreExtensions, u"s sco"_s);
    EXPECT_EQ(FirstExtension(FileKind::Score, context.settings), u"s"_s);
    context.settings.SaveText(Keys::ScoreExtensions, {});
    EXPECT_EQ(FirstExtension(FileKind::Score, context.settings), QString());
}

TEST(FileKinds, ClassifyFileTakesOnlyWavForSoundByDefault)
{
    TestContext context;
    const auto kind = [&context](const QString &path) { return int(ClassifyFile(path, context.settings)); };
    EXPECT_EQ(kind(u"/a/x.ORC"_s), 1);
    EXPECT_EQ(kind(u"x.sco"_s), 2);
    EXPECT_EQ(kind(u"x.y.csd"_s), 3);
    EXPECT_EQ(kind(u"x.wav"_s), 7);
    EXPECT_EQ(kind(u"x.aif"_s), 0);
    EXPECT_EQ(kind(u"x.mid"_s), 0);
    EXPECT_EQ(kind(u"x"_s), 0);
    EXPECT_EQ(kind({}), 0);
    context.settings.SaveText(Keys::SoundExtensions, u"aif flac"_s);
    EXPECT_EQ(kind(u"x.aif"_s), 7);
    EXPECT_EQ(kind(u"x.wav"_s), 0);
}

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
