// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consoleoptions.h"

#include "platform/consolestart.h"
#include "platform/windowstate.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <optional>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

TEST(ConsoleOptions, ReadWhatTheStarterWrites)
{
    const ConsoleRun run{.title = u"--title"_s,
                         .program = u"/usr/bin/csound"_s,
                         .arguments = {u"--"_s, u"-o"_s, u""_s, u"a b.wav"_s, u"--window"_s},
                         .folder = u"/a b"_s,
                         .showState = WindowState::Maximized,
                         .starter = 4711};
    EXPECT_EQ(ReadConsoleOptions(ConsoleArguments(run, 7)), (ConsoleOptions{.run = run, .notify = 7}));
    const ConsoleRun bare{.title = u"x"_s, .program = u"x"_s};
    EXPECT_EQ(ReadConsoleOptions(ConsoleArguments(bare)), (ConsoleOptions{.run = bare}));
}

TEST(ConsoleOptions, AProgramIsEnough)
{
    const auto options = ReadConsoleOptions({u"/usr/bin/csound"_s, u"-d"_s});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->run.title, u"csound"_s);
    EXPECT_EQ(options->run.arguments, QStringList{u"-d"_s});
    EXPECT_EQ(options->run.showState, WindowState::Normal);
}

TEST(ConsoleOptions, AnythingElseIsNone)
{
    for (const QStringList &arguments :
         {QStringList{}, QStringList{u"--title"_s}, QStringList{u"--title"_s, u"x"_s},
          QStringList{u"--window"_s, u"x"_s, u"--"_s, u"p"_s},
          QStringList{u"--else"_s, u"1"_s, u"--"_s, u"p"_s}, QStringList{u"--"_s},
          QStringList{u"--"_s, u""_s}})
        EXPECT_EQ(ReadConsoleOptions(arguments), std::nullopt) << arguments.join(u' ').toStdString();
}
