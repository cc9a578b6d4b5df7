// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/command.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/typeenable.h"
#include "support/recordingview.h"
#include "support/testcontext.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr FileKind Kinds[] = {FileKind::Other,   FileKind::Orchestra, FileKind::Score,
                              FileKind::Unified, FileKind::Midi,      FileKind::Sound};

TEST(DocumentKind, KindsHaveNames)
{
    EXPECT_EQ(KindName(FileKind::Other), u""_s);
    EXPECT_EQ(KindName(FileKind::Orchestra), u"Orchestra"_s);
    EXPECT_EQ(KindName(FileKind::Score), u"Score"_s);
    EXPECT_EQ(KindName(FileKind::Unified), u"Unified Format"_s);
    EXPECT_EQ(KindName(FileKind::Midi), u"MIDI"_s);
    EXPECT_EQ(KindName(FileKind::Sound), u"Sound"_s);
    EXPECT_EQ(KindName(FileKind::Cancelled), u""_s);
}

TEST(DocumentKind, LabelsAndWords)
{
    test::TestContext context;
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

TEST(DocumentKind, Patterns)
{
    test::TestContext context;
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

TEST(DocumentKind, FirstExtension)
{
    test::TestContext context;
    const QStringList expected{u""_s, u"orc"_s, u"sco"_s, u"csd"_s, u""_s, u""_s};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(FirstExtension(Kinds[i], context.settings), expected[i]);
    context.settings.SaveText(Keys::ScoreExtensions, u"s sco"_s);
    EXPECT_EQ(FirstExtension(FileKind::Score, context.settings), u"s"_s);
    context.settings.SaveText(Keys::ScoreExtensions, {});
    EXPECT_EQ(FirstExtension(FileKind::Score, context.settings), QString());
}

TEST(DocumentKind, ClassifyFileTakesOnlyWavForSoundByDefault)
{
    test::TestContext context;
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

TEST(DocumentKind, ExtensionsHaveDefaults)
{
    test::TestContext context;
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Orchestra), QStringList{u"orc"_s});
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Score), QStringList{u"sco"_s});
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Unified), QStringList{u"csd"_s});
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Midi), (QStringList{u"mid"_s, u"midi"_s}));
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Sound),
              (QStringList{u"wav"_s, u"aif"_s, u"aiff"_s}));
    EXPECT_EQ(KindExtensions(context.settings, FileKind::Other), QStringList());
}

TEST(DocumentKind, PatternsAreJoinedBySemicolons)
{
    EXPECT_EQ(ExtensionPatterns({u"orc"_s, u"inc"_s}), u"*.orc;*.inc"_s);
    EXPECT_EQ(ExtensionPatterns({u"orc"_s, u"inc"_s}, u"pia*"_s), u"pia*.orc;pia*.inc"_s);
    EXPECT_EQ(ExtensionPatterns({}), u""_s);
}

TEST(DocumentKind, TheFirstListThatHoldsTheExtensionDecides)
{
    test::TestContext context;
    context.settings.SaveText(Keys::OrchestraExtensions, u"orc inc both"_s);
    context.settings.SaveText(Keys::ScoreExtensions, u"sco both"_s);
    context.settings.SaveText(Keys::UFFExtensions, u"csd  both"_s);
    const auto kind = [&](const QString &path) { return KindOfPath(context.settings, path); };
    EXPECT_EQ(kind(u"/a/x.orc"_s), FileKind::Orchestra);
    EXPECT_EQ(kind(u"/a/x.INC"_s), FileKind::Orchestra);
    EXPECT_EQ(kind(u"/a/x.both"_s), FileKind::Orchestra);
    EXPECT_EQ(kind(u"/a/x.Sco"_s), FileKind::Score);
    EXPECT_EQ(kind(u"/a/x.csd"_s), FileKind::Unified);
    EXPECT_EQ(kind(u"/a/x.txt"_s), FileKind::Other);
    EXPECT_EQ(kind(u"/a/orc"_s), FileKind::Other) << "a name without a point has no extension";
    EXPECT_EQ(kind(u"/a/x.wav"_s), FileKind::Other);
}

TEST(DocumentKind, ADocumentWithoutANameKeepsItsKind)
{
    test::TestContext context;
    context.document.DocumentKind = FileKind::Score;
    ClassifyDocument(context.document, context.settings);
    EXPECT_EQ(context.document.DocumentKind, FileKind::Score);
    context.document.CurrentFile = u"/no such folder/x.csd"_s;
    ClassifyDocument(context.document, context.settings);
    EXPECT_EQ(context.document.DocumentKind, FileKind::Unified);
    context.document.CurrentFile = u"x.txt"_s;
    ClassifyDocument(context.document, context.settings);
    EXPECT_EQ(context.document.DocumentKind, FileKind::Other);
}

struct EnableCase {
    FileKind kind;
    std::vector<Command> enabled;
};

bool Contains(const std::vector<Command> &commands, Command command)
{
    return std::find(commands.begin(), commands.end(), command) != commands.end();
}

TEST(TypeEnable, SetsTheCommandsOfEachKind)
{
    const std::vector<Command> all = {Cmd::mnuHeader,
                                      Cmd::mnuNewInstr,
                                      Cmd::mnuCSD[Conversion::ToUnified],
                                      Cmd::mnuCSD[Conversion::ToPair],
                                      Cmd::mnuOrchestra,
                                      Cmd::mnuScore,
                                      Cmd::mnuInstrEdit,
                                      Cmd::mnuInstrGUI,
                                      Cmd::mnuPMapping,
                                      Cmd::mnuNewMacro,
                                      Cmd::mnuNewInclude};
    const std::vector<EnableCase> cases = {
        {FileKind::Other, {}},
        {FileKind::Orchestra,
         {Cmd::mnuHeader, Cmd::mnuNewInstr, Cmd::mnuCSD[Conversion::ToUnified], Cmd::mnuScore,
          Cmd::mnuInstrEdit, Cmd::mnuPMapping, Cmd::mnuNewMacro, Cmd::mnuNewInclude}},
        {FileKind::Score,
         {Cmd::mnuCSD[Conversion::ToUnified], Cmd::mnuOrchestra, Cmd::mnuInstrEdit, Cmd::mnuInstrGUI,
          Cmd::mnuNewMacro, Cmd::mnuNewInclude}},
        {FileKind::Unified,
         {Cmd::mnuHeader, Cmd::mnuNewInstr, Cmd::mnuCSD[Conversion::ToPair], Cmd::mnuOrchestra, Cmd::mnuScore,
          Cmd::mnuInstrEdit, Cmd::mnuInstrGUI, Cmd::mnuPMapping, Cmd::mnuNewMacro, Cmd::mnuNewInclude}},
    };
    for (const EnableCase &one : cases) {
        test::RecordingView view;
        TypeEnable(one.kind, view);
        EXPECT_EQ(view.enabled.size(), size_t(all.size()));
        for (const auto &[command, enabled] : view.enabled) {
            const std::string name = command.RowName().toStdString();
            EXPECT_TRUE(Contains(all, command)) << name;
            EXPECT_EQ(enabled, Contains(one.enabled, command)) << int(one.kind) << ' ' << name;
        }
    }
}

TEST(FileMenu, OffersNoExportToTheFormFoundAndNoFileOperationsWithoutAFile)
{
    DocumentRecord document;
    document.CurrentPlatform = LineEndForm::Unix;
    test::RecordingView view;
    EnableFileMenu(document, view);
    using Commands = std::map<Command, bool>;
    EXPECT_EQ(view.enabled, (Commands{{Cmd::mnuPlatformItem[ExportFormat::Pc], true},
                                      {Cmd::mnuPlatformItem[ExportFormat::Unix], false},
                                      {Cmd::mnuPlatformItem[ExportFormat::Mac], true},
                                      {Cmd::mnuFSO[FileOperation::Move], false},
                                      {Cmd::mnuFSO[FileOperation::Copy], false},
                                      {Cmd::mnuFSO[FileOperation::Rename], false},
                                      {Cmd::mnuFSO[FileOperation::Delete], false},
                                      {Cmd::mnuFSO[FileOperation::Properties], false},
                                      {Cmd::mnuBackupNow, false}}));
    document.CurrentFile = u"/a/x.orc"_s;
    document.CurrentPlatform = LineEndForm::Mac;
    EnableFileMenu(document, view);
    for (const auto &[command, enabled] : view.enabled)
        EXPECT_EQ(enabled, command != Cmd::mnuPlatformItem[ExportFormat::Mac])
            << command.RowName().toStdString();
}

} // namespace
