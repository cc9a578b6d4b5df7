// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/consoleanswer.h"

#include "platform/programinfo.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

TEST(AnswerOnConsole, HelpAndVersionArePrinted)
{
    for (const QString &help : {u"-h"_s, u"--help"_s}) {
        const auto answer = AnswerOnConsole({help});
        ASSERT_TRUE(answer);
        EXPECT_FALSE(answer->failure);
        EXPECT_TRUE(answer->text.startsWith(u"Usage: zelvane [FILE]\n"_s));
    }
    for (const QString &version : {u"-v"_s, u"--version"_s}) {
        const auto answer = AnswerOnConsole({version});
        ASSERT_TRUE(answer);
        EXPECT_FALSE(answer->failure);
        EXPECT_EQ(answer->text, u"Zelvane "_s + ProgramVersion() + u'\n' + LegalLine() + u'\n');
    }
}

TEST(AnswerOnConsole, UnknownOptionIsAFailure)
{
    const auto answer = AnswerOnConsole({u"--colour"_s, u"piece.csd"_s});
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->failure);
    EXPECT_TRUE(answer->text.startsWith(u"zelvane: unknown option --colour\n\nUsage: "_s));
}

TEST(AnswerOnConsole, EverythingElseStartsTheProgram)
{
    EXPECT_FALSE(AnswerOnConsole({}));
    for (const QString &first : {u""_s, u"piece.csd"_s, u"/i"_s, u"/p"_s, u"-"_s, u"--"_s, u"-x"_s,
                                 u"-platform"_s, u"--platform"_s, u"--style=fusion"_s, u"-session"_s})
        EXPECT_FALSE(AnswerOnConsole({first, u"x"_s})) << first.toStdString();
    EXPECT_FALSE(AnswerOnConsole({u"piece.csd"_s, u"--help"_s}));
}

TEST(AnswerOnConsole, FileOfThatNameIsADocument)
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    for (const QString &name : {u"--help"_s, u"-v"_s, u"--my piece"_s}) {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_FALSE(AnswerOnConsole({u"--help"_s}));
    EXPECT_FALSE(AnswerOnConsole({u"-v"_s}));
    EXPECT_FALSE(AnswerOnConsole({u"--my"_s, u"piece"_s}));
    EXPECT_TRUE(AnswerOnConsole({u"--my"_s, u"song"_s}));
    QDir::setCurrent(before);
}

} // namespace zelvane
