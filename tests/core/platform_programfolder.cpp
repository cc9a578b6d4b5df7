// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/programfolder.h"

#include "platform/userfolders.h"
#include "support/childprocess.h"
#include "support/filebytes.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class FolderOfProgram : public ::testing::Test
{
protected:
    FolderOfProgram()
    {
        EXPECT_EQ(chmod(QFile::encodeName(m_temporary.path()).constData(), 0755), 0);
        for (const QString &name : {u"bin"_s, u"shipped"_s, u"user"_s})
            EXPECT_TRUE(QDir(m_temporary.path()).mkdir(name));
        executable = m_temporary.filePath(u"bin"_s);
        data = m_temporary.filePath(u"user/data/zelvane"_s);
        shipped = m_temporary.filePath(u"shipped"_s);
        Put(shipped + u"/opcodes.txt"_s, "oscil\r\n");
        Put(shipped + u"/zelvane.html"_s, "<html>");
    }

    static void Put(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QString Root() const { return m_temporary.path(); }
    QString executable, data, shipped;

private:
    QTemporaryDir m_temporary;
};

} // namespace

TEST_F(FolderOfProgram, TheEnvironmentOverridesAll)
{
    Put(executable + u"/opcodes.txt"_s, "");
    const QString home = Root() + u"/home"_s;
    EXPECT_EQ(ChooseProgramFolder(home + u"/"_s, executable, data, shipped), home);
    EXPECT_TRUE(QDir(home).exists());
    EXPECT_EQ(NamesIn(home), QStringList());
    EXPECT_FALSE(QDir(data).exists());
}

TEST_F(FolderOfProgram, AWritableExecutableFolderWithAnOpcodeListIsPortable)
{
    Put(executable + u"/opcodes.txt"_s, "");
    EXPECT_EQ(ChooseProgramFolder({}, executable, data, shipped), executable);
    EXPECT_FALSE(QDir(data).exists());
}

TEST_F(FolderOfProgram, WithoutAnOpcodeListTheUsersFolderIsMadeAndFilled)
{
    EXPECT_EQ(ChooseProgramFolder({}, executable, data, shipped), data);
    EXPECT_EQ(NamesIn(data), (QStringList{u"opcodes.txt"_s, u"zelvane.html"_s}));
    EXPECT_EQ(BytesOf(data + u"/opcodes.txt"_s), "oscil\r\n"_ba);
    // What the user made of it stays.
    Put(data + u"/opcodes.txt"_s, "mine");
    EXPECT_EQ(ChooseProgramFolder({}, executable, data, shipped), data);
    EXPECT_EQ(BytesOf(data + u"/opcodes.txt"_s), "mine"_ba);
    ASSERT_TRUE(QDir(executable).mkdir(u"opcodes.txt"_s));
    EXPECT_EQ(ChooseProgramFolder({}, executable, data, shipped), data) << "a folder is no list";
}

TEST_F(FolderOfProgram, TheHelpPageIsThatOfTheInstalledVersion)
{
    ASSERT_TRUE(QDir().mkpath(data));
    Put(data + u"/zelvane.html"_s, "<html>of an earlier version");
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_EQ(BytesOf(data + u"/zelvane.html"_s), "<html>"_ba);
    // It is written only then.
    const QDateTime written(QDate(2020, 1, 2), QTime(3, 4));
    QFile page(data + u"/zelvane.html"_s);
    ASSERT_TRUE(page.open(QIODevice::ReadWrite));
    ASSERT_TRUE(page.setFileTime(written, QFileDevice::FileModificationTime));
    page.close();
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_EQ(QFileInfo(page).lastModified(), written);
}

TEST_F(FolderOfProgram, ARepositoryFileIsGivenOnce)
{
    Put(shipped + u"/zelvane.csr"_s, "[a]\n");
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_EQ(BytesOf(data + u"/zelvane.csr"_s), "[a]\n"_ba);
    // The user has deleted its fragments, then the file.
    Put(data + u"/zelvane.csr"_s, "");
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_EQ(BytesOf(data + u"/zelvane.csr"_s), ""_ba);
    ASSERT_TRUE(QFile::remove(data + u"/zelvane.csr"_s));
    ASSERT_TRUE(QFile::remove(data + u"/opcodes.txt"_s));
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_FALSE(QFile::exists(data + u"/zelvane.csr"_s));
    EXPECT_TRUE(QFile::exists(data + u"/opcodes.txt"_s)) << "the others come back";
}

TEST_F(FolderOfProgram, ARepositoryFileOfTheUsersStays)
{
    Put(shipped + u"/zelvane.csr"_s, "[a]\n");
    ASSERT_TRUE(QDir().mkpath(data));
    Put(data + u"/zelvane.csr"_s, "[mine]\n");
    ChooseProgramFolder({}, executable, data, shipped);
    EXPECT_EQ(BytesOf(data + u"/zelvane.csr"_s), "[mine]\n"_ba);
}

TEST_F(FolderOfProgram, AnInstalledExecutableIsNotPortable)
{
    Put(executable + u"/opcodes.txt"_s, "");
    ASSERT_EQ(chmod(QFile::encodeName(executable).constData(), 0555), 0);
    EXPECT_TRUE(
        AsOrdinaryUser(Root(), [&] { EXPECT_EQ(ChooseProgramFolder({}, executable, data, shipped), data); }));
    EXPECT_EQ(BytesOf(data + u"/opcodes.txt"_s), "oscil\r\n"_ba);
    ASSERT_EQ(chmod(QFile::encodeName(executable).constData(), 0755), 0);
}

TEST_F(FolderOfProgram, NothingShippedAndNothingWritableStillHasAnAnswer)
{
    EXPECT_EQ(ChooseProgramFolder({}, executable, data, Root() + u"/none"_s), data);
    EXPECT_EQ(NamesIn(data), QStringList());
    Put(Root() + u"/file"_s, "");
    EXPECT_EQ(ChooseProgramFolder({}, executable, Root() + u"/file/zelvane"_s, shipped),
              Root() + u"/file/zelvane"_s);
}

TEST_F(FolderOfProgram, TheProcessAsksItsEnvironment)
{
    const QByteArray home = qgetenv("ZELVANE_HOME");
    EXPECT_EQ(ProgramFolder(), QString::fromUtf8(home));
    qunsetenv("ZELVANE_HOME");
    const bool portable = QFile::exists(QCoreApplication::applicationDirPath() + u"/opcodes.txt"_s);
    EXPECT_EQ(ProgramFolder(), portable ? QCoreApplication::applicationDirPath()
                                        : qEnvironmentVariable("XDG_DATA_HOME") + u"/zelvane"_s);
    qputenv("ZELVANE_HOME", home);
    EXPECT_EQ(ConfigFolder(), qEnvironmentVariable("XDG_CONFIG_HOME") + u"/zelvane"_s);
}
