// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commandline.h"

#include "core/oracle/commandlineoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <sys/stat.h>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

struct Case {
    QStringList arguments;
    StartForm form;
    QString text;
    QString document;
};

void Check(const Case &one)
{
    const CommandLine command(one.arguments);
    const std::string name = one.arguments.join(u'|').toStdString();
    EXPECT_EQ(int(command.Form()), int(one.form)) << name;
    EXPECT_EQ(command.Text(), one.text) << name;
    EXPECT_EQ(command.Document(), one.document) << name;
}

TEST(CommandLine, HasFiveForms)
{
    const std::vector<Case> cases = {
        {{}, StartForm::Nothing, u""_s, u""_s},
        {{u""_s}, StartForm::Nothing, u""_s, u""_s},
        {{u"/i"_s}, StartForm::NewInstance, u"/i"_s, u""_s},
        {{u"x.orc"_s}, StartForm::Document, u"x.orc"_s, u"x.orc"_s},
        {{u"/no/x.orc"_s}, StartForm::Document, u"/no/x.orc"_s, u"/no/x.orc"_s},
        {{u"/p"_s, u"/no/x.orc"_s}, StartForm::QuickPreset, u"/p /no/x.orc"_s, u"/no/x.orc"_s},
        {{u"/p /no/x y.orc"_s}, StartForm::QuickPreset, u"/p /no/x y.orc"_s, u"/no/x y.orc"_s},
        {{u"/r"_s, u"/no/x.orc"_s}, StartForm::RunCsound, u"/r /no/x.orc"_s, u"/no/x.orc"_s},
        {{u"/p "_s}, StartForm::QuickPreset, u"/p "_s, u""_s},
        {{u"/r "_s}, StartForm::RunCsound, u"/r "_s, u""_s},
    };
    for (const Case &one : cases)
        Check(one);
}

TEST(CommandLine, TestsTheSwitchesInTheirOrder)
{
    Check({{u"/r"_s, u"/p"_s, u"x"_s}, StartForm::QuickPreset, u"/r /p x"_s, u"/r x"_s});
    Check({{u"/i"_s, u"/p"_s, u"x"_s}, StartForm::QuickPreset, u"/i /p x"_s, u"/i x"_s});
    // A switch with a file name behind it is not the switch alone, and case counts.
    Check({{u"/i"_s, u"x.orc"_s}, StartForm::Document, u"/i x.orc"_s, u"/i x.orc"_s});
    Check({{u"/I"_s}, StartForm::Document, u"/I"_s, u"/I"_s});
    Check({{u"/P"_s, u"x"_s}, StartForm::Document, u"/P x"_s, u"/P x"_s});
    // Without the blank there is no switch.
    Check({{u"/p"_s}, StartForm::Document, u"/p"_s, u"/p"_s});
    Check({{u"/px"_s}, StartForm::Document, u"/px"_s, u"/px"_s});
    // The first "/r" is cut, with the character behind it, also where it is not the switch.
    Check({{u"a/rb.orc"_s, u"/r"_s, u"c"_s}, StartForm::RunCsound, u"a/rb.orc /r c"_s, u"a.orc /r c"_s});
    Check(
        {{u"/no/p/x.orc"_s, u"/p"_s, u""_s}, StartForm::QuickPreset, u"/no/p/x.orc /p "_s, u"/nox.orc /p"_s});
    // The switch counts anywhere.
    Check({{u"x.orc"_s, u"/r"_s, u""_s}, StartForm::RunCsound, u"x.orc /r "_s, u"x.orc"_s});
}

TEST(CommandLine, IsCutAsItsStepsSay)
{
    test::RandomText texts(
        {u"/p"_s, u"/r"_s, u"/i"_s, u" "_s, u" "_s, u"\""_s, u"/no/x.orc"_s, u"/p "_s, u"/r "_s, u"\t"_s}, 6);
    for (int i = 0; i < 20000; ++i) {
        const QString text = texts.Next();
        const CommandLine found({text});
        const oracle::CommandLineEnd expected = oracle::CutCommandLine(text);
        ASSERT_EQ(int(found.Form()), int(expected.form)) << ::testing::PrintToString(text);
        ASSERT_EQ(found.Text(), expected.text);
        ASSERT_EQ(found.Document(), expected.document) << ::testing::PrintToString(text);
    }
}

TEST(CommandLine, APathWithBlanksNeedsNoQuotesAndMayHaveThem)
{
    Check({{u"/no/a b/x y.orc"_s}, StartForm::Document, u"/no/a b/x y.orc"_s, u"/no/a b/x y.orc"_s});
    Check({{u"/no/a"_s, u"b/x y.orc"_s}, StartForm::Document, u"/no/a b/x y.orc"_s, u"/no/a b/x y.orc"_s});
    Check({{u"\"/no/a b.orc\""_s}, StartForm::Document, u"\"/no/a b.orc\""_s, u"\"/no/a b.orc\""_s});
    Check(
        {{u"/p"_s, u"\"/no/a b.orc\""_s}, StartForm::QuickPreset, u"/p \"/no/a b.orc\""_s, u"/no/a b.orc"_s});
}

TEST(CommandLine, AFileIsMadeAbsoluteAndNotSearchedForSwitches)
{
    QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    const QString here = QDir::currentPath();
    for (const QString &sub : {u"p "_s, u"r "_s})
        ASSERT_TRUE(QDir().mkdir(sub));
    for (const QString &name : {u"x.orc"_s, u"x y.orc"_s, u"p /z.orc"_s, u"r /z.orc"_s}) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    Check({{u"x.orc"_s}, StartForm::Document, here + u"/x.orc"_s, here + u"/x.orc"_s});
    Check({{u"x"_s, u"y.orc"_s}, StartForm::Document, here + u"/x y.orc"_s, here + u"/x y.orc"_s});
    Check({{u"/r"_s, u"x.orc"_s}, StartForm::RunCsound, u"/r "_s + here + u"/x.orc"_s, here + u"/x.orc"_s});
    for (const QString &file : {here + u"/p /z.orc"_s, here + u"/r /z.orc"_s}) {
        Check({{file}, StartForm::Document, file, file});
        Check({{u"/r"_s, file}, StartForm::RunCsound, u"/r "_s + file, file});
        Check({{u"/p"_s, file}, StartForm::QuickPreset, u"/p "_s + file, file});
    }
    // A folder is no document, and a file that is not there is taken as it stands.
    Check({{here + u"/p /none.orc"_s},
           StartForm::QuickPreset,
           here + u"/p /none.orc"_s,
           here + u"/none.orc"_s});
    Check({{u"none.orc"_s}, StartForm::Document, u"none.orc"_s, u"none.orc"_s});
    ASSERT_TRUE(QDir::setCurrent(before));
}

/// A folder that is the current one, with three files, as long as the test runs.
class CommandLineFiles : public ::testing::Test
{
protected:
    CommandLineFiles() : before(QDir::currentPath())
    {
        QDir::setCurrent(folder.path());
        here = QDir::currentPath();
        for (const QString &name : {u"a.orc"_s, u"b.sco"_s, u"c d#1?.csd"_s, u"-style"_s}) {
            QFile file(name);
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    ~CommandLineFiles() override { QDir::setCurrent(before); }

    void Opens(const QStringList &arguments, const QString &name) const
    {
        Check({arguments, StartForm::Document, here + u'/' + name, here + u'/' + name});
    }

    QTemporaryDir folder;
    QString before;
    QString here;
};

TEST_F(CommandLineFiles, TheFirstOfSeveralIsOpened)
{
    Opens({u"a.orc"_s, u"b.sco"_s}, u"a.orc"_s);
    Opens({u"b.sco"_s, u"a.orc"_s, u"b.sco"_s}, u"b.sco"_s);
    Opens({u"none.orc"_s, u"b.sco"_s, u"a.orc"_s}, u"b.sco"_s);
    Opens({u""_s, u"\"b.sco\""_s, u"a.orc"_s}, u"b.sco"_s);
    Check({{u"/r"_s, u"b.sco"_s, u"a.orc"_s},
           StartForm::RunCsound,
           u"/r "_s + here + u"/b.sco "_s + here + u"/a.orc"_s,
           here + u"/b.sco"_s});
    // No file: the string as it stands. A switch that is no switch there is none either.
    Check({{u"none.orc"_s, u"none.sco"_s},
           StartForm::Document,
           u"none.orc none.sco"_s,
           u"none.orc none.sco"_s});
    const QString asItStands = u"/i "_s + here + u"/a.orc"_s;
    Check({{u"/i"_s, u"a.orc"_s}, StartForm::Document, asItStands, asItStands});
}

TEST_F(CommandLineFiles, TheWholeLineGoesBeforeItsParts)
{
    QFile file(u"a.orc b.sco"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    Opens({u"a.orc"_s, u"b.sco"_s}, u"a.orc b.sco"_s);
    Opens({u"--"_s, u"a.orc"_s, u"b.sco"_s}, u"a.orc b.sco"_s);
    Check({{u"/p"_s, u"a.orc"_s, u"c d#1?.csd"_s},
           StartForm::QuickPreset,
           u"/p "_s + here + u"/a.orc "_s + here + u"/c d#1?.csd"_s,
           here + u"/a.orc"_s});
    // The toolkit may have taken words of it.
    QFile styled(u"a -style b.sco"_s);
    ASSERT_TRUE(styled.open(QIODevice::WriteOnly));
    EXPECT_EQ(CommandLine({u"a"_s}, {u"a"_s, u"-style"_s, u"b.sco"_s}).Document(),
              here + u"/a -style b.sco"_s);
    EXPECT_EQ(CommandLine({u"a.orc"_s}, {u"-style"_s, u"fusion"_s, u"a.orc"_s}).Document(),
              here + u"/a.orc"_s);
    EXPECT_EQ(CommandLine({}, {u"-style"_s, u"b.sco"_s}).Form(), StartForm::Nothing);
    // The switch of a split name is not its end.
    Check({{u"/r"_s, u"c"_s, u"d#1?.csd"_s},
           StartForm::RunCsound,
           u"/r c d#1?.csd"_s,
           here + u"/c d#1?.csd"_s});
}

TEST_F(CommandLineFiles, APipeOrADeviceHidesNoFile)
{
    ASSERT_EQ(mkfifo("pipe.csd", 0600), 0);
    Opens({u"pipe.csd"_s, u"/dev/null"_s, u"b.sco"_s}, u"b.sco"_s);
    Check({{u"pipe.csd"_s}, StartForm::Document, u"pipe.csd"_s, u"pipe.csd"_s});
    Check({{u"/r"_s, u"pipe.csd"_s, u"a.orc"_s},
           StartForm::RunCsound,
           u"/r pipe.csd "_s + here + u"/a.orc"_s,
           here + u"/a.orc"_s});
    // What leads to a file is one.
    ASSERT_TRUE(QFile::link(u"a.orc"_s, u"link.orc"_s));
    Opens({u"link.orc"_s, u"b.sco"_s}, u"link.orc"_s);
}

TEST_F(CommandLineFiles, TwoDashesEndTheOptions)
{
    Opens({u"--"_s, u"a.orc"_s}, u"a.orc"_s);
    Opens({u"--"_s, u"-style"_s}, u"-style"_s);
    Opens({u"--"_s, u"b.sco"_s, u"a.orc"_s}, u"b.sco"_s);
    Check({{u"--"_s}, StartForm::Nothing, {}, {}});
    Check({{u"--"_s, u"/i"_s}, StartForm::Document, u"/i"_s, u"/i"_s});
    Check({{u"/i"_s, u"--"_s}, StartForm::NewInstance, u"/i"_s, {}});
    Check({{u"--"_s, u"/r /no/x.orc"_s}, StartForm::Document, u"/r /no/x.orc"_s, u"/r /no/x.orc"_s});
    Check({{u"--"_s, u"/p"_s, u"/no"_s}, StartForm::Document, u"/p /no"_s, u"/p /no"_s});
    Check({{u"/r"_s, u"--"_s, u"/p /no.orc"_s}, StartForm::RunCsound, u"/r /p /no.orc"_s, u"/p /no.orc"_s});
    // Only the first one: the second is a name.
    Check({{u"--"_s, u"--"_s}, StartForm::Document, u"--"_s, u"--"_s});
    QFile dashes(u"--"_s);
    ASSERT_TRUE(dashes.open(QIODevice::WriteOnly));
    Opens({u"--"_s}, u"--"_s);
    Opens({u"--"_s, u"a.orc"_s}, u"a.orc"_s);
}

TEST_F(CommandLineFiles, AnAddressIsAPath)
{
    const QString start = u"file://"_s + here;
    Opens({start + u"/a.orc"_s}, u"a.orc"_s);
    Opens({u"FILE://localhost"_s + here + u"/a.orc"_s}, u"a.orc"_s);
    Opens({u"file://"_s + QSysInfo::machineHostName() + here + u"/a.orc"_s}, u"a.orc"_s);
    Opens({start + u"/c%20d%231%3f.csd"_s}, u"c d#1?.csd"_s);
    Opens({start + u"/c d#1?.csd"_s}, u"c d#1?.csd"_s);
    Opens({start + u"/c"_s, u"d#1?.csd"_s}, u"c d#1?.csd"_s);
    Opens({u"--"_s, start + u"/b.sco"_s, start + u"/a.orc"_s}, u"b.sco"_s);
    Opens({u"file:"_s + here + u"/c%20d%231%3f.csd"_s}, u"c d#1?.csd"_s);
    Check({{u"/p"_s, start + u"/a.orc"_s},
           StartForm::QuickPreset,
           u"/p "_s + here + u"/a.orc"_s,
           here + u"/a.orc"_s});
    // A file that is not there is told by its path, and is searched for no switch either.
    Check({{u"file:///no/p%20/x.orc"_s}, StartForm::Document, u"/no/p /x.orc"_s, u"/no/p /x.orc"_s});
    // Another machine's file, and what is no path.
    for (const QString &other : {u"file://elsewhere.example.org/x.orc"_s, u"file:x.orc"_s, u"file://"_s,
                                 u"file:///a%00b.orc"_s, u"http://localhost/x.orc"_s})
        Check({{other}, StartForm::Document, other, other});
}

} // namespace
