// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/relatedfiles.h"
#include "oracle/relatedoracle.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/documentkeys.h"
#include "support/childprocess.h"
#include "support/printers.h"
#include "support/processortime.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// The tree as text: a name and what it names in brackets; a name that was not found has a question mark.
QString Tree(const std::vector<FileClass *> &files)
{
    QStringList parts;
    for (const FileClass *file : files) {
        EXPECT_EQ(file->exists, !file->filename.isEmpty());
        EXPECT_EQ(files[std::size_t(file->row)], file);
        for (const FileClass *below : file->relatedFiles)
            EXPECT_EQ(below->parent, file);
        const QString below = Tree(file->relatedFiles);
        parts += file->displayName + (file->exists ? u""_s : u"?"_s) +
                 (below.isEmpty() ? QString() : u'(' + below + u')');
    }
    return parts.join(u' ');
}

struct RelatedFiles : testing::Test, TestContext {
    RelationsClass Search(const QString &name = u"song.orc"_s)
    {
        return SearchRelated(folder.filePath(name), settings, desktop);
    }
    QString Found(const QString &name = u"song.orc"_s) { return Tree(Search(name).RelatedFiles()); }

    /// Makes a folder below that of the test and lets a variable name it.
    void Variable(const QString &variable, const QString &name)
    {
        QDir(folder.path()).mkpath(name);
        desktop.environment[variable] = folder.filePath(name);
    }
};

QStringList References(const QString &text, const QSet<QString> &files = {})
{
    return ExtractFileReferences(text, [&](const QString &name) { return files.contains(name); });
}

} // namespace

TEST(FileReferences, IncludesAreListedFoundOrNot)
{
    EXPECT_EQ(References(u"#include \"a.orc\"\n#include <b.orc>"_s), (QStringList{u"a.orc"_s, u"b.orc"_s}));
    EXPECT_EQ(References(u" ; #include \t \"a  b\tc\" \r\nx"_s), QStringList{u"a b c"_s});
    EXPECT_EQ(References(u"#include'x'"_s), QStringList{u"x"_s});
    EXPECT_EQ(References(u"#includes x"_s), QStringList{u" "_s});
}

TEST(FileReferences, AnIncludeOfTwoCharactersIsNone)
{
    EXPECT_EQ(References(u"#include ab\n#include \"\"\n#include\n#include abc"_s), QStringList{u"b"_s});
}

TEST(FileReferences, WhatStandsBehindTheNameBelongsToIt)
{
    EXPECT_EQ(References(u"#include \"a.orc\" ; mine\n"_s), QStringList{u"a.orc\" ; min"_s});
    EXPECT_EQ(References(u"#include \"a.orc\" \"b\"\n\"b\""_s, {u"b"_s}),
              (QStringList{u"a.orc\" \"b"_s, u"b"_s}));
}

TEST(FileReferences, TheWordIsTakenAsItIsWritten)
{
    EXPECT_EQ(References(u"#INCLUDE \"a\"\n# include \"a\"\ninclude \"a\"\n##include \"a\""_s),
              QStringList{u"a"_s});
}

TEST(FileReferences, QuotedTextCountsWhenItNamesAFile)
{
    const QSet<QString> files{u"a.wav"_s, u"x\ny"_s};
    EXPECT_EQ(References(u"soundin \"a.wav\" ; \"a.wav\" \"b.wav\"/* \"x\ny\" */"_s, files),
              (QStringList{u"a.wav"_s, u"a.wav"_s, u"x\ny"_s}));
}

TEST(FileReferences, AQuoteWithoutAPartnerEndsTheWalk)
{
    EXPECT_EQ(References(u"\"a\" \"\n#include \"b.orc"_s, {u"a"_s}), QStringList{u"a"_s});
    EXPECT_EQ(References(u"\" #include x\n #include \"b.orc\n"_s), QStringList{});
    EXPECT_EQ(References(u"\"\n#include <b.orc>\n"_s), QStringList{});
}

TEST(FileReferences, AreThoseOfThePlainWalk)
{
    RandomText texts({u"#include"_s, u"#"_s, u"include"_s, u"\""_s, u"\""_s, u"a"_s, u"b.orc"_s, u" "_s,
                      u"\t"_s, u"\r"_s, u"\n"_s, u";"_s, u"'"_s, u"<"_s, u">"_s, u"\u00e4"_s, u"\u00a0"_s});
    const QSet<QString> files{u"a"_s, u"b.orc"_s, u"a b.orc"_s, u""_s, u" "_s, u"\n"_s, u"aa"_s};
    int named = 0;
    for (int i = 0; i < 20000; ++i) {
        const QString text = texts.Next();
        const QStringList expected = oracle::ExtractFileReferences(text, files);
        ASSERT_EQ(References(text, files), expected) << qPrintable(text);
        named += int(expected.size());
    }
    EXPECT_GT(named, 5000);
}

TEST(FileReferences, TakeTimeInProportion)
{
    const auto time = [](const QString &text) {
        return LeastProcessorTime(3, [&text] { References(text); });
    };
    for (const QString &piece : {u"#include \"a\"\n"_s, u"\"x\""_s, u"#"_s, u"#includ"_s}) {
        const double one = time(piece.repeated(20'000));
        EXPECT_LT(time(piece.repeated(400'000)), 20 * 8 * one + 0.05) << qPrintable(piece);
    }
}

TEST_F(RelatedFiles, AreThoseWithTheNameOfTheDocument)
{
    for (const QString &name :
         {u"song.orc"_s, u"song.sco"_s, u"my song 2.wav"_s, u"song"_s, u"son.orc"_s, u"Song.orc"_s})
        WriteFile(name);
    EXPECT_EQ(Found(), u"my song 2.wav song song.orc song.sco"_s);
    EXPECT_EQ(Search().RelatedFiles()[2]->filename, folder.filePath(u"song.orc"_s));
}

TEST_F(RelatedFiles, OfNoDocumentAreNone)
{
    WriteFile(u"a.orc"_s);
    desktop.environment[u"SSDIR"_s] = folder.path();
    EXPECT_EQ(SearchRelated({}, settings, desktop).Count(), 0);
}

TEST_F(RelatedFiles, OfADocumentThatIsGoneAreThoseOfItsName)
{
    WriteFile(u"song.sco"_s);
    WriteFile(u"other.sco"_s);
    EXPECT_EQ(Found(), u"song.sco"_s);
}

TEST_F(RelatedFiles, SignsOfAPatternAreLetters)
{
    WriteFile(u"a[b]*.orc"_s);
    WriteFile(u"a[b]*2.sco"_s);
    WriteFile(u"ab.orc"_s);
    EXPECT_EQ(Found(u"a[b]*.orc"_s), u"a[b]*.orc a[b]*2.sco"_s);
}

TEST_F(RelatedFiles, ComeFolderByFolder)
{
    Variable(u"SSDIR"_s, u"samples"_s);
    Variable(u"SFDIR"_s, u"sounds"_s);
    Variable(u"SADIR"_s, u"analyses/"_s);
    Variable(u"INCDIR"_s, u"includes"_s);
    for (const QString &name :
         {u"song.orc"_s, u"samples/song1"_s, u"sounds/song2"_s, u"analyses/song3"_s, u"includes/song4"_s})
        WriteFile(name);
    EXPECT_EQ(Found(), u"song.orc song1 song2 song3 song4"_s);
    const RelationsClass found = Search();
    EXPECT_EQ(found.RelatedFiles()[3]->filename, folder.filePath(u"analyses/song3"_s));
    desktop.environment.clear();
    EXPECT_EQ(Found(), u"song.orc"_s);
    desktop.environment[u"SADIR"_s] = folder.filePath(u"not there"_s);
    EXPECT_EQ(Found(), u"song.orc"_s);
}

TEST_F(RelatedFiles, OfAFolderThatIsListedTwiceComeTwice)
{
    desktop.environment[u"SSDIR"_s] = folder.path();
    WriteFile(u"song.orc"_s);
    WriteFile(u"song.wav"_s);
    EXPECT_EQ(Found(), u"song.orc song.wav song.orc song.wav"_s);
}

TEST_F(RelatedFiles, HiddenOnesBelongToAHiddenDocumentOnly)
{
    for (const QString &name : {u"song.orc"_s, u".song.orc.swp"_s, u".song.orc"_s, u"a.song.sco"_s})
        WriteFile(name);
    EXPECT_EQ(Found(), u"a.song.sco song.orc"_s);
    EXPECT_EQ(Found(u".song.orc"_s), u".song.orc .song.orc.swp a.song.sco"_s);
    WriteFile(u"song.orc"_s, "#include \".song.orc\"\n");
    EXPECT_EQ(Found(), u"a.song.sco song.orc(.song.orc)"_s);
}

TEST_F(RelatedFiles, OfADocumentWithoutABaseNameAreAll)
{
    for (const QString &name : {u".orc"_s, u".x"_s, u"a"_s, u"b.wav"_s})
        WriteFile(name);
    EXPECT_EQ(Found(u".orc"_s), u".orc .x a b.wav"_s);
}

TEST_F(RelatedFiles, ShowWhatTheyName)
{
    WriteFile(u"song.orc"_s,
              "#include \"part.orc\"\n#include \"missing.orc\"\na1 soundin \"kick.wav\" ; \"none.wav\"\n");
    WriteFile(u"part.orc"_s, "\"kick.wav\" \"song.orc\"");
    WriteFile(u"kick.wav"_s, "\"part.orc\"");
    EXPECT_EQ(Found(), u"song.orc(part.orc(kick.wav song.orc) missing.orc? kick.wav)"_s);
}

TEST_F(RelatedFiles, OnlyOrchestrasScoresAndUnifiedFilesAreRead)
{
    for (const QString &name :
         {u"song.ORC"_s, u"song.sco"_s, u"song.csd"_s, u"song.txt"_s, u"song.wav"_s, u"song"_s})
        WriteFile(name, "#include <x>");
    EXPECT_EQ(Found(), u"song song.ORC(x?) song.csd(x?) song.sco(x?) song.txt song.wav"_s);
    settings.SaveText(Keys::ScoreExtensions, u"txt"_s);
    EXPECT_EQ(Found(), u"song song.ORC(x?) song.csd(x?) song.sco song.txt(x?) song.wav"_s);
}

TEST_F(RelatedFiles, AFileThatIncludesItselfIsALeafThere)
{
    WriteFile(u"song.orc"_s, "#include \"song.orc\"\n#include \"./song.orc\"\n");
    QFile::link(folder.filePath(u"song.orc"_s), folder.filePath(u"link.orc"_s));
    EXPECT_EQ(Found(), u"song.orc(song.orc song.orc)"_s);
    EXPECT_EQ(Search().RelatedFiles()[0]->relatedFiles[1]->filename, folder.filePath(u"song.orc"_s));
    EXPECT_EQ(Found(u"link.orc"_s), u"link.orc(song.orc song.orc)"_s);
}

TEST_F(RelatedFiles, ACycleEndsWhereItCloses)
{
    WriteFile(u"a.orc"_s, "#include \"b.orc\"\n");
    WriteFile(u"b.orc"_s, "#include \"c.orc\"\n");
    WriteFile(u"c.orc"_s, "#include \"a.orc\"\n#include \"b.orc\"\n#include \"end\"\n");
    EXPECT_EQ(Found(u"a.orc"_s), u"a.orc(b.orc(c.orc(a.orc b.orc end?)))"_s);
}

TEST_F(RelatedFiles, TwoFilesMayNameTheSame)
{
    WriteFile(u"song.orc"_s, "#include \"in.orc\"\n#include \"in.orc\"\n");
    WriteFile(u"song.sco"_s, "#include \"in.orc\"\n");
    WriteFile(u"in.orc"_s, "#include \"x.wav\"\n");
    EXPECT_EQ(Found(), u"song.orc(in.orc(x.wav?) in.orc(x.wav?)) song.sco(in.orc(x.wav?))"_s);
}

TEST_F(RelatedFiles, LongChainsNeedNoStack)
{
    constexpr int Length = 4000;
    for (int i = 0; i < Length; ++i)
        WriteFile(u"in%1.orc"_s.arg(i), "#include \"in" + QByteArray::number(i + 1) + ".orc\"\n");
    WriteFile(u"song.orc"_s, "#include \"in0.orc\"\n");
    const RelationsClass found = Search();
    EXPECT_EQ(found.Count(), Length + 2);
    const FileClass *file = found.RelatedFiles()[0];
    while (!file->relatedFiles.empty())
        file = file->relatedFiles[0];
    EXPECT_EQ(file->displayName, u"in%1.orc"_s.arg(Length));
}

TEST_F(RelatedFiles, ALargeTreeEndsInLeaves)
{
    // Each of 40 files names all of them: the whole tree has more branches than anybody can count.
    QByteArray all;
    for (int i = 0; i < 40; ++i)
        all += "#include \"p" + QByteArray::number(i) + ".orc\"\n";
    for (int i = 0; i < 40; ++i)
        WriteFile(u"p%1.orc"_s.arg(i), all);
    const RelationsClass found = Search(u"p0.orc"_s);
    EXPECT_GT(found.Count(), 5000);
    EXPECT_LT(found.Count(), 5000 + 41 * 40);
}

TEST_F(RelatedFiles, TheFiveThousandthFileIsTheLastThatShowsWhatItNames)
{
    WriteFile(u"last.orc"_s, "#include \"x.orc\"\n");
    for (const int before : {4998, 4999}) {
        QByteArray many;
        for (int i = 0; i < before; ++i)
            many += "#include \"none\"\n";
        WriteFile(u"song.orc"_s, many + "#include \"last.orc\"\n");
        const RelationsClass found = Search();
        const auto &below = found.RelatedFiles()[0]->relatedFiles;
        ASSERT_EQ(qsizetype(below.size()), before + 1);
        EXPECT_EQ(below.back()->relatedFiles.size(), before == 4998 ? 1U : 0U);
    }
}

TEST_F(RelatedFiles, WhatIsNoFileIsNotThere)
{
    // Reading one of them would never end, or would wait for good.
    WriteFile(u"song.orc"_s,
              "#include \"song2.orc\"\n#include \"pipe.orc\"\n\"song2.orc\" \"/dev/zero\" \"zero.orc\"");
    const QByteArray base = QFile::encodeName(folder.path());
    ASSERT_EQ(::mkfifo((base + "/song2.orc").constData(), 0600), 0);
    ASSERT_EQ(::mkfifo((base + "/pipe.orc").constData(), 0600), 0);
    QFile::link(u"/dev/zero"_s, folder.filePath(u"song3.orc"_s));
    QFile::link(u"/dev/zero"_s, folder.filePath(u"zero.orc"_s));
    QFile::link(folder.filePath(u"nothing"_s), folder.filePath(u"song4.orc"_s));
    QDir(folder.path()).mkdir(u"song5.orc"_s);
    EXPECT_EQ(Found(), u"song.orc(song2.orc? pipe.orc?)"_s);
}

TEST_F(RelatedFiles, AHugeFileIsNotRead)
{
    WriteFile(u"song.orc"_s, "\"song.wav\" \"take.orc\"");
    // Also what has the name of a text: as large as that, it was not written by a person. One that is read
    // shows what it names, here in its first line.
    for (const QString &name : {u"song.wav"_s, u"take.orc"_s, u"song.sco"_s}) {
        QFile huge(WriteFile(name, "#include <x>\n"));
        ASSERT_TRUE(huge.open(QIODevice::ReadWrite));
        ASSERT_TRUE(huge.resize(100'000'001));
    }
    EXPECT_EQ(Found(), u"song.orc(song.wav take.orc) song.sco song.wav"_s);
}

TEST_F(RelatedFiles, ATreeOfAMillionGrowsNoMore)
{
    WriteFile(u"song.orc"_s, QByteArray("#include<x>\n").repeated(1'000'000));
    WriteFile(u"song.sco"_s, "#include <y>\n");
    const RelationsClass found = Search();
    const auto &files = found.RelatedFiles();
    ASSERT_EQ(files.size(), 2U); // whatever is there by name is shown
    EXPECT_EQ(files[0]->relatedFiles.size(), 999'999U);
    EXPECT_TRUE(files[1]->relatedFiles.empty());
    EXPECT_EQ(found.Count(), 1'000'001);
}

TEST_F(RelatedFiles, AFileThatMayNotBeReadIsShown)
{
    WriteFile(u"song.orc"_s, "#include \"in.orc\"\n");
    const QString closed = WriteFile(u"in.orc"_s, "#include \"x\"\n");
    QFile::setPermissions(closed, {});
    EXPECT_TRUE(AsOrdinaryUser(folder.path(), [&] {
        EXPECT_THROW(ReadTextFile(closed), RunTimeError);
        EXPECT_EQ(Found(), u"song.orc(in.orc)"_s);
    }));
}

TEST_F(RelatedFiles, ANameIsLookedForInItsOrder)
{
    Variable(u"SSDIR"_s, u"samples"_s);
    Variable(u"SFDIR"_s, u"sounds"_s);
    Variable(u"INCDIR"_s, u"includes"_s);
    Variable(u"SADIR"_s, u"analyses"_s);
    QDir(folder.path()).mkdir(u"here"_s);
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.filePath(u"here"_s)));
    const auto back = qScopeGuard([&] { QDir::setCurrent(before); });
    const QString song = WriteFile(u"song.orc"_s);
    const QStringList places{u"analyses/x"_s, u"includes/x"_s, u"sounds/x"_s,
                             u"samples/x"_s,  u"x"_s,          u"here/x"_s};
    EXPECT_EQ(RelatedSearch(song, settings, desktop).ResolveRelatedPath(u"x"_s), QString());
    for (const QString &place : places) {
        WriteFile(place);
        const QString found = RelatedSearch(song, settings, desktop).ResolveRelatedPath(u"x"_s);
        EXPECT_EQ(QFileInfo(found).canonicalFilePath(),
                  QFileInfo(folder.filePath(place)).canonicalFilePath());
        EXPECT_TRUE(QDir::isAbsolutePath(found));
    }
    RelatedSearch search(song, settings, desktop);
    EXPECT_EQ(search.ResolveRelatedPath(folder.filePath(u"sounds/x"_s)), folder.filePath(u"sounds/x"_s));
    EXPECT_EQ(search.ResolveRelatedPath(u"here/../sounds/./x"_s), folder.filePath(u"sounds/x"_s));
    EXPECT_EQ(search.ResolveRelatedPath(u"/sounds/x"_s), folder.filePath(u"sounds/x"_s));
}

TEST_F(RelatedFiles, SomeNamesAreNever)
{
    WriteFile(u"song.orc"_s);
    RelatedSearch search(folder.filePath(u"song.orc"_s), settings, desktop);
    for (const QString &name : {QString(), u"."_s, u"/"_s, u":/zelvane/icons/new.svg"_s, u"song.orc\0x"_s,
                                u"song.orc/"_s, u"x"_s.repeated(100'000), u"~"_s})
        EXPECT_EQ(search.ResolveRelatedPath(name), QString()) << qPrintable(name.left(40));
}

TEST_F(RelatedFiles, APathThroughALinkedFolderIsKept)
{
    QDir(folder.path()).mkpath(u"far/in"_s);
    WriteFile(u"far/x.orc"_s);
    WriteFile(u"song.orc"_s);
    QFile::link(folder.filePath(u"far/in"_s), folder.filePath(u"in"_s));
    RelatedSearch search(folder.filePath(u"song.orc"_s), settings, desktop);
    EXPECT_EQ(search.ResolveRelatedPath(u"in/../x.orc"_s), folder.filePath(u"in/../x.orc"_s));
}

TEST_F(RelatedFiles, AreForgotten)
{
    WriteFile(u"song.orc"_s, "#include \"x\"\n");
    RelationsClass found = Search();
    EXPECT_EQ(found.Count(), 2);
    const FileClass *first = found.RelatedFiles()[0];
    RelationsClass moved = std::move(found);
    EXPECT_EQ(moved.RelatedFiles()[0], first);
    moved.clearRelatedFiles();
    EXPECT_EQ(moved.Count(), 0);
    EXPECT_TRUE(moved.RelatedFiles().empty());
}

} // namespace zelvane::test
