// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/links.h"

#include "oracle/sectionsoracle.h"
#include "platform/windowstate.h"
#include "support/randomtext.h"
#include "support/scripteddesktop.h"
#include "support/stringbuffer.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(LinkOver, TakesOneMoreThanEndCharactersFromStart)
{
    const QString text = u"see http://a.b now"_s;
    EXPECT_EQ(LinkAddress(text, 0, 2), u"see"_s);
    EXPECT_EQ(LinkAddress(text, 4, 13), u"http://a.b now"_s);
    EXPECT_EQ(LinkAddress(text, 4, 100), u"http://a.b now"_s);
    EXPECT_EQ(LinkAddress(text, 18, 18), QString());
    RandomText random({u"a"_s, u"b"_s, u":"_s, u"/"_s, u"\n"_s, u"é"_s});
    for (int i = 0; i < 20000; ++i) {
        const QString any = random.Next();
        const int start = random.Number(0, int(any.size()));
        const int end = random.Number(start, int(any.size()) + 2);
        ASSERT_EQ(LinkAddress(any, start, end), oracle::Characters(any, start, end + 1))
            << ::testing::PrintToString(any) << start << ' ' << end;
    }
}

TEST(LinkOver, OpensTheAddressWhenTheButtonIsReleased)
{
    StringBuffer text;
    ScriptedDesktop desktop;
    text.text = u"http://a.b"_s;
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"http://a.b"_s, .showState = WindowState::Normal});
    LinkOver(LeftButtonReleased, 0, 9, text, desktop);
    desktop.CheckAllCame();
}

TEST(LinkOver, DoesNothingOnOtherMessages)
{
    StringBuffer text;
    ScriptedDesktop desktop;
    text.text = u"http://a.b"_s;
    for (const int message : {512, 513, 515, 516, 517, 0})
        LinkOver(message, 0, 9, text, desktop);
}

TEST(LinkOver, TellsOfAFileThatIsNotFoundAlone)
{
    StringBuffer text;
    ScriptedDesktop desktop;
    text.text = u"gone.txt"_s;
    const ShellRequest request{.verb = u"open"_s, .file = u"gone.txt"_s};
    desktop.ExpectShellRun(request, 2);
    desktop.ExpectMessage({.text = u"Link Failed"_s, .icon = BoxIcon::Warning});
    LinkOver(514, 0, 7, text, desktop);
    for (const int result : {0, 3, 5, 31, 32, 42}) {
        desktop.ExpectShellRun(request, result);
        LinkOver(514, 0, 7, text, desktop);
    }
    desktop.CheckAllCame();
}

} // namespace zelvane::test
