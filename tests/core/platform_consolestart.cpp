// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/consolestart.h"

#include "support/printers.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// A console that does what a test says.
QString FakeConsole(const QTemporaryDir &folder, const QByteArray &script)
{
    const QString path = folder.path() + u"/console"_s;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    // The descriptor is the argument behind "--notify".
    file.write("#!/bin/bash\nwhile [ \"$1\" != --notify ]; do shift; done; fd=$2\n" + script);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

} // namespace

TEST(ConsoleWait, LastsAsLongAsTheProgram)
{
    const QTemporaryDir folder;
    // The console itself goes on: it shows the output until it is closed.
    const QString console =
        FakeConsole(folder, "printf s >&$fd; sleep 0.3; touch \"$0.ended\"; printf e >&$fd; exit 0\n");
    int started = 0;
    int looks = 0;
    const bool ran = StartConsoleAndWait(console, {.title = u"x"_s, .program = u"y"_s},
                                         {.started = [&] { ++started; }, .looks = [&] { ++looks; }});
    EXPECT_TRUE(ran);
    EXPECT_EQ(started, 1);
    EXPECT_GE(looks, 1);
    EXPECT_TRUE(QFile::exists(console + u".ended"_s));
}

TEST(ConsoleWait, EndsWithAConsoleThatDies)
{
    const QTemporaryDir folder;
    int started = 0;
    EXPECT_TRUE(StartConsoleAndWait(FakeConsole(folder, "printf s >&$fd; exit 0\n"), {.program = u"y"_s},
                                    {.started = [&] { ++started; }, .looks = {}}));
    EXPECT_EQ(started, 1);
    EXPECT_FALSE(StartConsoleAndWait(FakeConsole(folder, "exit 0\n"), {.program = u"y"_s},
                                     {.started = [&] { ++started; }, .looks = {}}))
        << "the program has not started";
    EXPECT_FALSE(StartConsoleAndWait(u"/no/such/console"_s, {.program = u"y"_s}, {}));
    EXPECT_EQ(started, 1);
}
