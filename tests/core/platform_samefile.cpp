// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/samefile.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

QString Made(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return path;
}

} // namespace

TEST(SameFile, WhateverPathLeadsToIt)
{
    const QTemporaryDir folder;
    const QString song = Made(folder.filePath(u"song.orc"_s));
    const QString other = Made(folder.filePath(u"other.orc"_s));
    const QString link = folder.filePath(u"link.orc"_s);
    ASSERT_TRUE(QFile::link(song, link));
    ASSERT_TRUE(QFile::link(folder.path(), folder.filePath(u"here"_s)));
    const QString second = folder.filePath(u"SONG.orc"_s);
    ASSERT_EQ(::link(QFile::encodeName(song).constData(), QFile::encodeName(second).constData()), 0);
    for (const QString &path :
         {song, link, second, folder.filePath(u"here/song.orc"_s), folder.filePath(u"./song.orc"_s)}) {
        EXPECT_TRUE(IsSameFile(path, song)) << qPrintable(path);
        EXPECT_TRUE(IsSameFile(song, path)) << qPrintable(path);
        EXPECT_FALSE(IsSameFile(path, other)) << qPrintable(path);
    }
}

TEST(SameFile, AFileThatIsNotThereHasOnePath)
{
    const QTemporaryDir folder;
    const QString gone = folder.filePath(u"gone.orc"_s);
    EXPECT_TRUE(IsSameFile(gone, gone));
    EXPECT_FALSE(IsSameFile(gone, folder.filePath(u"./gone.orc"_s)));
    EXPECT_FALSE(IsSameFile(gone, folder.filePath(u"lost.orc"_s)));
    EXPECT_FALSE(IsSameFile(gone, Made(folder.filePath(u"song.orc"_s))));
}

TEST(SameFile, NoPathIsNoFile)
{
    EXPECT_FALSE(IsSameFile({}, {}));
    EXPECT_FALSE(IsSameFile({}, QDir::currentPath()));
    EXPECT_FALSE(IsSameFile(QDir::currentPath(), {}));
}

} // namespace zelvane::test
