// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/typeenable.h"
#include "support/recordingview.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

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
    QStringList enabled;
};

TEST(TypeEnable, SetsTheCommandsOfEachKind)
{
    const QStringList all = {u"mnuHeader0"_s,    u"mnuNewInstr0"_s, u"mnuCSD0"_s,       u"mnuCSD1"_s,
                             u"mnuOrchestra0"_s, u"mnuScore0"_s,    u"mnuInstrEdit0"_s, u"mnuInstrGUI0"_s,
                             u"mnuPMapping0"_s,  u"mnuNewMacro0"_s, u"mnuNewInclude0"_s};
    const std::vector<EnableCase> cases = {
        {FileKind::Other, {}},
        {FileKind::Orchestra,
         {u"mnuHeader0"_s, u"mnuNewInstr0"_s, u"mnuCSD0"_s, u"mnuScore0"_s, u"mnuInstrEdit0"_s,
          u"mnuPMapping0"_s, u"mnuNewMacro0"_s, u"mnuNewInclude0"_s}},
        {FileKind::Score,
         {u"mnuCSD0"_s, u"mnuOrchestra0"_s, u"mnuInstrEdit0"_s, u"mnuInstrGUI0"_s, u"mnuNewMacro0"_s,
          u"mnuNewInclude0"_s}},
        {FileKind::Unified,
         {u"mnuHeader0"_s, u"mnuNewInstr0"_s, u"mnuCSD1"_s, u"mnuOrchestra0"_s, u"mnuScore0"_s,
          u"mnuInstrEdit0"_s, u"mnuInstrGUI0"_s, u"mnuPMapping0"_s, u"mnuNewMacro0"_s, u"mnuNewInclude0"_s}},
    };
    for (const EnableCase &one : cases) {
        test::RecordingView view;
        TypeEnable(one.kind, view);
        EXPECT_EQ(view.enabled.size(), size_t(all.size()));
        for (const auto &[command, enabled] : view.enabled) {
            const QString name = command.first + QString::number(command.second);
            EXPECT_TRUE(all.contains(name)) << name.toStdString();
            EXPECT_EQ(enabled, one.enabled.contains(name)) << int(one.kind) << ' ' << name.toStdString();
        }
    }
}

TEST(FileMenu, OffersNoExportToTheFormFoundAndNoFileOperationsWithoutAFile)
{
    DocumentRecord document;
    document.CurrentPlatform = LineEndForm::Unix;
    test::RecordingView view;
    EnableFileMenu(document, view);
    using Commands = std::map<std::pair<QString, int>, bool>;
    EXPECT_EQ(view.enabled, (Commands{{{u"mnuPlatformItem"_s, 0}, true},
                                      {{u"mnuPlatformItem"_s, 1}, false},
                                      {{u"mnuPlatformItem"_s, 2}, true},
                                      {{u"mnuFSO"_s, 0}, false},
                                      {{u"mnuFSO"_s, 1}, false},
                                      {{u"mnuFSO"_s, 2}, false},
                                      {{u"mnuFSO"_s, 3}, false},
                                      {{u"mnuFSO"_s, 5}, false},
                                      {{u"mnuBackupNow"_s, 0}, false}}));
    document.CurrentFile = u"/a/x.orc"_s;
    document.CurrentPlatform = LineEndForm::Mac;
    EnableFileMenu(document, view);
    for (const auto &[command, enabled] : view.enabled)
        EXPECT_EQ(enabled, command != std::pair(u"mnuPlatformItem"_s, 2)) << command.first.toStdString();
}

} // namespace
