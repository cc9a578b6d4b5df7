// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/kindsearch.h"

#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "support/boxes.h"
#include "support/processortime.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class KindSearch : public ::testing::Test
{
protected:
    /// Makes a file the current document.
    QString Open(const QString &name)
    {
        context.document.CurrentFile = context.WriteFile(name);
        ClassifyDocument(context.document, context.settings);
        return context.document.CurrentFile;
    }

    QString Search(FileKind kind, bool similar = false, bool silent = false)
    {
        return SearchKindFile(kind, similar, silent, context.editor);
    }

    FileDialogRequest Dialog(const QString &label, const QString &extension, const QString &similar,
                             int filter) const
    {
        return SelectHalf(label, extension, similar, context.folder.path(), filter);
    }

    QString MakeFolder(const QString &name)
    {
        EXPECT_TRUE(QDir(context.folder.path()).mkpath(name));
        return context.folder.filePath(name);
    }

    TestContext context;
};

} // namespace

TEST_F(KindSearch, WithoutDocumentNothing)
{
    EXPECT_EQ(Search(FileKind::Orchestra), QString());
    context.document.CurrentFile = context.folder.filePath(u"gone.orc"_s);
    context.document.DocumentKind = FileKind::Orchestra;
    EXPECT_EQ(Search(FileKind::Orchestra), QString());
}

TEST_F(KindSearch, TheDocumentItself)
{
    const QString orchestra = Open(u"x.orc"_s);
    EXPECT_EQ(Search(FileKind::Orchestra), orchestra);
    const QString score = Open(u"x.sco"_s);
    EXPECT_EQ(Search(FileKind::Score), score);
    const QString unified = Open(u"x.csd"_s);
    EXPECT_EQ(Search(FileKind::Orchestra), unified);
    EXPECT_EQ(Search(FileKind::Score), u" "_s);
    EXPECT_EQ(Search(FileKind::Unified), unified);
}

TEST_F(KindSearch, SameNameInTheSameFolder)
{
    const QString orchestra = Open(u"x.orc"_s);
    const QString score = Open(u"x.sco"_s);
    EXPECT_EQ(Search(FileKind::Orchestra), orchestra);
    Open(u"x.orc"_s);
    EXPECT_EQ(Search(FileKind::Score), score);
}

TEST_F(KindSearch, AFolderOfThatNameIsNoFile)
{
    Open(u"x.orc"_s);
    MakeFolder(u"x.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), QString());
}

TEST_F(KindSearch, ExtensionsGoBeforeFolders)
{
    Open(u"x.csd"_s);
    const QString ssdir = MakeFolder(u"ss"_s);
    const QString sfdir = MakeFolder(u"sf"_s);
    context.desktop.environment[u"SSDIR"_s] = ssdir;
    context.desktop.environment[u"SFDIR"_s] = sfdir;
    EXPECT_EQ(Search(FileKind::Sound, false, true), QString());
    const QString aif = context.WriteFile(u"x.aif"_s);
    EXPECT_EQ(Search(FileKind::Sound), aif);
    const QString inSfdir = context.WriteFile(u"sf/x.wav"_s);
    EXPECT_EQ(Search(FileKind::Sound), inSfdir);
    const QString inSsdir = context.WriteFile(u"ss/x.wav"_s);
    EXPECT_EQ(Search(FileKind::Sound), inSsdir);
    const QString beside = context.WriteFile(u"x.wav"_s);
    EXPECT_EQ(Search(FileKind::Sound), beside);
}

TEST_F(KindSearch, MidiIsSearchedInTheSoundFoldersToo)
{
    Open(u"x.csd"_s);
    context.desktop.environment[u"SSDIR"_s] = MakeFolder(u"ss"_s);
    const QString midi = context.WriteFile(u"ss/x.midi"_s);
    EXPECT_EQ(Search(FileKind::Midi), midi);
}

TEST_F(KindSearch, ScoresAreSearchedOnlyBesideTheDocument)
{
    Open(u"x.orc"_s);
    context.desktop.environment[u"SSDIR"_s] = MakeFolder(u"ss"_s);
    context.WriteFile(u"ss/x.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), QString());
}

TEST_F(KindSearch, UnsetVariableAddsNoFolder)
{
    // With an empty folder the candidate would be below the root.
    Open(u"hosts-of-nothing.csd"_s);
    EXPECT_EQ(Search(FileKind::Sound, true, true), QString());
}

TEST_F(KindSearch, SimilarTakesTheOnlyLongerName)
{
    Open(u"song.orc"_s);
    const QString other = context.WriteFile(u"song-2.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true), other);
}

TEST_F(KindSearch, SimilarCutsUpToThreeCharacters)
{
    Open(u"song12b.orc"_s);
    context.WriteFile(u"so.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), QString());
    const QString song = context.WriteFile(u"song.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), song);
    const QString song12 = context.WriteFile(u"song12.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), song12);
}

TEST_F(KindSearch, SimilarNeverCutsTheWholeName)
{
    Open(u"ab.orc"_s);
    context.WriteFile(u"zz.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), QString());
    const QString found = context.WriteFile(u"az.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), found);
}

TEST_F(KindSearch, SilentTakesTheFirstInNameOrder)
{
    Open(u"song.orc"_s);
    context.WriteFile(u"song3.sco"_s);
    const QString first = context.WriteFile(u"song1.sco"_s);
    context.WriteFile(u"song2.sco"_s);
    EXPECT_EQ(Search(FileKind::Score, true, true), first);
}

TEST_F(KindSearch, SeveralSimilarNamesOpenTheDialogOnThem)
{
    Open(u"song.orc"_s);
    context.WriteFile(u"song3.sco"_s);
    context.WriteFile(u"song1.sco"_s);
    context.desktop.ExpectOpenDialog(Dialog(u"Score"_s, u"sco"_s, u"s*"_s, 1), {u"/chosen.sco"_s});
    EXPECT_EQ(Search(FileKind::Score, true), u"/chosen.sco"_s);
}

TEST_F(KindSearch, SimilarWithoutAHitOpensTheDialogOnAll)
{
    Open(u"song.orc"_s);
    context.desktop.ExpectOpenDialog(Dialog(u"Score"_s, u"sco"_s, u"s*"_s, 0), {});
    EXPECT_EQ(Search(FileKind::Score, true), QString());
}

TEST_F(KindSearch, DialogStartsOnSimilarNamesWhenThereAreSome)
{
    Open(u"x.sco"_s);
    context.WriteFile(u"x1.orc"_s);
    context.desktop.ExpectOpenDialog(Dialog(u"Orchestra"_s, u"orc"_s, u"x*"_s, 1), {u"/o.orc"_s});
    EXPECT_EQ(Search(FileKind::Orchestra), u"/o.orc"_s);
}

TEST_F(KindSearch, DialogStartsOnAllWhenThereIsNone)
{
    Open(u"songs.sco"_s);
    context.WriteFile(u"sing.orc"_s);
    context.desktop.ExpectOpenDialog(Dialog(u"Orchestra"_s, u"orc"_s, u"so*"_s, 0), {});
    EXPECT_EQ(Search(FileKind::Orchestra), QString());
}

TEST_F(KindSearch, SimilarPatternOfShortNamesKeepsOneCharacter)
{
    for (const QString &name : {u"a"_s, u"ab"_s, u"abc"_s, u"abcd"_s}) {
        Open(name + u".sco"_s);
        context.desktop.ExpectOpenDialog(Dialog(u"Orchestra"_s, u"orc"_s, u"a*"_s, 0), {});
        EXPECT_EQ(Search(FileKind::Orchestra), QString());
    }
}

TEST_F(KindSearch, SilentAsksNothing)
{
    Open(u"x.sco"_s);
    EXPECT_EQ(Search(FileKind::Orchestra, false, true), QString());
    EXPECT_EQ(Search(FileKind::Sound, true, true), QString());
}

#ifdef Q_OS_LINUX
TEST_F(KindSearch, WildcardsInNamesAreOrdinaryCharacters)
{
    Open(u"a[1]*?.sco"_s);
    context.WriteFile(u"a1xx.orc"_s);
    EXPECT_EQ(Search(FileKind::Orchestra, true, true), QString());
    // In the dialog's pattern each of them stands for any character.
    context.desktop.ExpectOpenDialog(Dialog(u"Orchestra"_s, u"orc"_s, u"a?1*"_s, 0), {});
    EXPECT_EQ(Search(FileKind::Orchestra), QString());
    const QString similar = context.WriteFile(u"a[1]*?2.orc"_s);
    EXPECT_EQ(Search(FileKind::Orchestra, true, true), similar);
    const QString exact = context.WriteFile(u"a[1]*?.orc"_s);
    EXPECT_EQ(Search(FileKind::Orchestra), exact);
}

TEST_F(KindSearch, FileNamesDifferByCase)
{
    Open(u"x.sco"_s);
    context.WriteFile(u"X.ORC"_s);
    EXPECT_EQ(Search(FileKind::Orchestra, true, true), QString());
}
#endif

TEST_F(KindSearch, FolderIsReadOnceForAllCutsAndExtensions)
{
    Open(u"document.sco"_s);
    for (int i = 0; i < 2000; ++i)
        context.WriteFile(u"other%1.txt"_s.arg(i));
    const auto time = [this](const QString &extensions) {
        context.settings.SaveText(Keys::OrchestraExtensions, extensions);
        return LeastProcessorTime(10,
                                  [this] { EXPECT_EQ(Search(FileKind::Orchestra, true, true), QString()); });
    };
    const double one = time(u"a"_s);
    EXPECT_LT(time(u"a b c d e f g h i j k l m n o p q r s t u v w x y z"_s), 13 * one + 0.05);
}

} // namespace zelvane::test
