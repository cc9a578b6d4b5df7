// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/splitpath.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

TEST(SplitPath, WithoutExtensionEndsAtTheLastPointBehindTheLastSeparator)
{
    const auto cut = [](const QString &path) { return SplitPath(PathPart::WithoutExtension, path); };
    EXPECT_EQ(cut(u"/home/a/x.orc"_s), u"/home/a/x"_s);
    EXPECT_EQ(cut(u"C:\\a.b\\x"_s), u"C:\\a.b\\x"_s);
    EXPECT_EQ(cut(u"/a.b/x"_s), u"/a.b/x"_s);
    EXPECT_EQ(cut(u"x.tar.gz"_s), u"x.tar"_s);
    EXPECT_EQ(cut(u"plain"_s), u"plain"_s);
    EXPECT_EQ(cut(u"/a/.hidden"_s), u"/a/"_s);
    EXPECT_EQ(cut(u"x."_s), u"x"_s);
}

TEST(SplitPath, FolderEndsBeforeTheLastSeparatorOfEitherKind)
{
    const auto cut = [](const QString &path) { return SplitPath(PathPart::Folder, path); };
    EXPECT_EQ(cut(u"/home/a/x.orc"_s), u"/home/a"_s);
    EXPECT_EQ(cut(u"C:\\music\\x.orc"_s), u"C:\\music"_s);
    EXPECT_EQ(cut(u"C:\\music/x.orc"_s), u"C:\\music"_s);
    EXPECT_EQ(cut(u"/x.orc"_s), u""_s);
    EXPECT_EQ(cut(u"x.orc"_s), u""_s);
    EXPECT_EQ(cut(u"/a/"_s), u"/a"_s);
}

TEST(SplitPath, NameAndExtensionNeedTheFileOnDisk)
{
    test::TestContext context;
    const QString path = context.WriteFile(u"piece.one.orc"_s);
    EXPECT_EQ(SplitPath(PathPart::BaseName, path), u"piece.one"_s);
    EXPECT_EQ(SplitPath(PathPart::Extension, path), u"orc"_s);
    const QString bare = context.WriteFile(u"README"_s);
    EXPECT_EQ(SplitPath(PathPart::BaseName, bare), u"README"_s);
    EXPECT_EQ(SplitPath(PathPart::Extension, bare), u""_s);

    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(SplitPath(PathPart::BaseName, path), u""_s);
    EXPECT_EQ(SplitPath(PathPart::Extension, path), u""_s);
    EXPECT_EQ(SplitPath(PathPart::BaseName, context.folder.path()), u""_s) << "a folder is no file";
}

TEST(SplitPath, QuotesAPathWithABlank)
{
    EXPECT_EQ(SplitPath(PathPart::Quoted, u"/a b/x.orc"_s), u"\"/a b/x.orc\""_s);
    EXPECT_EQ(SplitPath(PathPart::Quoted, u"/a/x.orc"_s), u"/a/x.orc"_s);
    EXPECT_EQ(SplitPath(PathPart::Quoted, u"/a\tb"_s), u"/a\tb"_s);
}

TEST(SplitPath, WorksOnTheCurrentFileWhenThePathIsEmpty)
{
    for (const PathPart part : {PathPart::WithoutExtension, PathPart::Folder, PathPart::BaseName,
                                PathPart::Quoted, PathPart::Extension})
        EXPECT_EQ(SplitPath(part, {}, {}), u""_s);
    EXPECT_EQ(SplitPath(PathPart::Folder, {}, u"/a/x.orc"_s), u"/a"_s);
    EXPECT_EQ(SplitPath(PathPart::Folder, u"/b/y.orc"_s, u"/a/x.orc"_s), u"/b"_s);
}

TEST(SplitPath, BareNameAndExtensionDoNotLookAtTheDisk)
{
    EXPECT_EQ(BareFileName(u"C:\\no such\\x.ORC"_s), u"x.ORC"_s);
    EXPECT_EQ(BareFileName(u"x"_s), u"x"_s);
    EXPECT_EQ(BareFileName(u"/a/"_s), u""_s);
    EXPECT_EQ(BareExtension(u"/no such/x.y.ORC"_s), u"ORC"_s);
    EXPECT_EQ(BareExtension(u"/a.b/x"_s), u""_s);
    EXPECT_EQ(BareExtension({}), u""_s);
}

TEST(SplitPath, DropOuterQuotesRemovesOneAtEachEnd)
{
    EXPECT_EQ(DropOuterQuotes(u"\"/a b\""_s), u"/a b"_s);
    EXPECT_EQ(DropOuterQuotes(u"\"/a b"_s), u"/a b"_s);
    EXPECT_EQ(DropOuterQuotes(u"/a b\""_s), u"/a b"_s);
    EXPECT_EQ(DropOuterQuotes(u"\"\"x\"\""_s), u"\"x\""_s);
    EXPECT_EQ(DropOuterQuotes(u"\""_s), u""_s);
    EXPECT_EQ(DropOuterQuotes({}), u""_s);
}
