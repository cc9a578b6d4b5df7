// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "shell/windowsteps.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(WindowSteps, AMomentWithoutWorkDoesNothing)
{
    const WindowSteps steps;
    steps.Run(WindowMoment::Closing);
}

TEST(WindowSteps, WorkIsDoneAtItsMomentInTheOrderOfAdding)
{
    WindowSteps steps;
    QStringList done;
    steps.Add(WindowMoment::Lists, [&] { done.append(u"list"_s); });
    steps.Add(WindowMoment::Tables, [&] { done.append(u"first"_s); });
    steps.Add(WindowMoment::Tables, [&] { done.append(u"second"_s); });
    steps.Run(WindowMoment::Tables);
    EXPECT_EQ(done, (QStringList{u"first"_s, u"second"_s}));
    steps.Run(WindowMoment::Lists);
    EXPECT_EQ(done.last(), u"list"_s);
}

TEST(WindowSteps, AFailureStopsWhatComesBehindIt)
{
    WindowSteps steps;
    bool done = false;
    steps.Add(WindowMoment::Bars, [] { throw RunTimeError(ErrorNumber::TypeMismatch, u"no"_s); });
    steps.Add(WindowMoment::Bars, [&] { done = true; });
    EXPECT_THROW(steps.Run(WindowMoment::Bars), RunTimeError);
    EXPECT_FALSE(done);
}

} // namespace zelvane::test
