// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/listfiles.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

struct Listing : ::testing::Test {
    QTemporaryDir temporary;
    QString folder = temporary.path();
    QStringList names{u"left over"_s};

    QString Path(const QString &name) const { return folder + u'/' + name; }
    QByteArray Native(const QString &name) const { return QFile::encodeName(Path(name)); }
    void Put(const QString &name) const
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
};

} // namespace

TEST_F(Listing, FilesOfThePatternComeInTheOrderOfTheirNames)
{
    for (const QString &name :
         {u"csound2.tmp"_s, u"cs"_s, u"cs\u00E9 1"_s, u"acs"_s, u"c"_s, u".cs"_s, u"CS1"_s})
        Put(name);
    ASSERT_TRUE(QDir(folder).mkdir(u"csfolder"_s));
    const QStringList expected = {Path(u"cs"_s), Path(u"csound2.tmp"_s), Path(u"cs\u00E9 1"_s)};
    for (const QString &place : {folder, folder + u'/', folder + u'\\'}) {
        EXPECT_TRUE(ListFiles(place, u"cs*"_s, names));
        EXPECT_EQ(names, expected);
    }
    EXPECT_TRUE(ListFiles(folder, u"?s"_s, names));
    EXPECT_EQ(names, QStringList({Path(u"cs"_s)}));
}

TEST_F(Listing, OtherCharactersOfAPatternStandForThemselves)
{
    Put(u"a[1].orc"_s);
    Put(u"a1.orc"_s);
    Put(u"a\nb"_s);
    EXPECT_TRUE(ListFiles(folder, u"a[1].*"_s, names));
    EXPECT_EQ(names, QStringList({Path(u"a[1].orc"_s)}));
    EXPECT_TRUE(ListFiles(folder, u"a*b"_s, names));
    EXPECT_EQ(names, QStringList({Path(u"a\nb"_s)}));
}

TEST_F(Listing, FoldersMatchAndAreNotListed)
{
    EXPECT_FALSE(ListFiles(folder, u"cs*"_s, names));
    EXPECT_EQ(names, QStringList());
    EXPECT_FALSE(ListFiles(Path(u"gone"_s), u"cs*"_s, names));
    ASSERT_TRUE(QDir(folder).mkdir(u"cs"_s));
    EXPECT_TRUE(ListFiles(folder, u"cs*"_s, names));
    EXPECT_EQ(names, QStringList());
}

TEST_F(Listing, LinksAreFilesAndPipesAreNone)
{
    ASSERT_EQ(mkfifo(Native(u"cspipe"_s), 0600), 0);
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = Native(u"cssocket"_s);
    ASSERT_LT(size_t(path.size()), sizeof address.sun_path);
    std::copy(path.begin(), path.end(), address.sun_path);
    ASSERT_EQ(bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_FALSE(ListFiles(folder, u"cs*"_s, names));
    ASSERT_EQ(symlink("/", Native(u"csfolderlink"_s)), 0);
    ASSERT_EQ(symlink("gone", Native(u"csdead"_s)), 0);
    EXPECT_TRUE(ListFiles(folder, u"cs*"_s, names));
    EXPECT_EQ(names, QStringList({Path(u"csdead"_s), Path(u"csfolderlink"_s)}));
    close(made);
}

TEST_F(Listing, FilesOfOtherUsersAreNotThere)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the administrator makes files of others";
    Put(u"cs1"_s);
    ASSERT_EQ(chown(Native(u"cs1"_s), 12345, 12345), 0);
    ASSERT_EQ(symlink("cs1", Native(u"cs2"_s)), 0);
    ASSERT_EQ(lchown(Native(u"cs2"_s), 12345, 12345), 0);
    EXPECT_FALSE(ListFiles(folder, u"cs*"_s, names));
    Put(u"cs3"_s);
    EXPECT_TRUE(ListFiles(folder, u"cs*"_s, names));
    EXPECT_EQ(names, QStringList({Path(u"cs3"_s)}));
}
