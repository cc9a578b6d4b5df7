// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/errorreport.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"

#include <gtest/gtest.h>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QString Author = QString::fromUtf16(AuthorAddress);

MessageBoxRequest Report(const QString &context)
{
    return {.text = u"An error has occurred:\n"_s + context +
                    u"\nType mismatch (13)\nError source: Settings\n\nDo you want to report this bug via "
                    "email?"_s,
            .icon = BoxIcon::Critical,
            .buttons = BoxButtons::OkCancel};
}

MessageBoxRequest MailFailure(const QString &address)
{
    return {
        .text =
            u"Cannot start Mail program. The following E-mail address will be copied to Clipboard:\n\n"_s +
            address + u"\n\nPlease run your Mail program manually then paste text in the Address field."_s,
        .icon = BoxIcon::Warning};
}

const RunTimeError Mismatch(ErrorNumber::TypeMismatch, u"Type mismatch"_s, u"Settings"_s);

TEST(ReportError, CancelSendsNothing)
{
    test::ScriptedDesktop desktop;
    desktop.ExpectMessage(Report(u""_s), BoxAnswer::Cancel);
    ReportError(desktop, Mismatch);
}

TEST(ReportError, GuardedWorkReportsWhatItThrows)
{
    test::ScriptedDesktop desktop;
    bool done = false;
    EXPECT_TRUE(Guarded(desktop, [&done] { done = true; }));
    EXPECT_TRUE(done);
    desktop.ExpectMessage(Report(u""_s), BoxAnswer::Cancel);
    EXPECT_FALSE(Guarded(desktop, [] { throw Mismatch; }));
}

TEST(ReportError, OkOpensAMailWithVersionAndDescription)
{
    test::ScriptedDesktop desktop;
    desktop.ExpectMessage(Report(u"while reading"_s), BoxAnswer::Ok);
    desktop.ExpectShellRun({.verb = u"open"_s,
                            .file = u"mailto:"_s + Author + u"?subject=Zelvane v"_s + ProgramVersion() +
                                    u" bug report&body=Type mismatch (13); Error source: Settings"_s});
    ReportError(desktop, Mismatch, u"while reading"_s);
}

TEST(ReportError, AnUnreachableClipboardEndsTheReportOnly)
{
    test::ScriptedDesktop desktop;
    desktop.clipboardFails = true;
    desktop.ExpectMessage(Report(u""_s), BoxAnswer::Ok);
    desktop.ExpectShellRun({.verb = u"open"_s,
                            .file = u"mailto:"_s + Author + u"?subject=Zelvane v"_s + ProgramVersion() +
                                    u" bug report&body=Type mismatch (13); Error source: Settings"_s},
                           ShellFailure);
    desktop.ExpectMessage(MailFailure(Author));
    EXPECT_NO_THROW(ReportError(desktop, Mismatch));
}

TEST(ReportError, GuardedWorkIsReportedAndEnds)
{
    test::ScriptedDesktop desktop;
    EXPECT_TRUE(Guarded(desktop, [] {}));
    desktop.ExpectMessage(Report(u""_s), BoxAnswer::Cancel);
    EXPECT_FALSE(Guarded(desktop, [] { throw Mismatch; }));
}

TEST(SendMail, EscapesOnlyWhatWouldBreakTheAddressApart)
{
    test::ScriptedDesktop desktop;
    desktop.ExpectShellRun(
        {.verb = u"open"_s,
         .file = u"mailto:a@b.org?subject=1 %2B 1? 100%25 %23&body=R%26D%0Anext; \u00E9"_s});
    SendMail(desktop, u"a@b.org"_s, u"1 + 1? 100% #"_s, u"R&D\nnext; \u00E9"_s);
}

TEST(SendMail, AFailureLeavesTheAddressOnTheClipboard)
{
    for (const int result : {0, 2, ShellFailure}) {
        test::ScriptedDesktop desktop;
        desktop.clipboard = u"before"_s;
        desktop.ExpectShellRun({.verb = u"open"_s, .file = u"mailto:a@b.org?subject=&body="_s}, result);
        desktop.ExpectMessage(MailFailure(u"a@b.org"_s));
        SendMail(desktop, u"a@b.org"_s, {}, {});
        EXPECT_EQ(desktop.clipboard, u"a@b.org"_s);
    }
}

TEST(SendMail, SuccessLeavesTheClipboardAlone)
{
    test::ScriptedDesktop desktop;
    desktop.clipboard = u"before"_s;
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"mailto:a@b.org?subject=s&body=b"_s},
                           ShellFailure + 1);
    SendMail(desktop, u"a@b.org"_s, u"s"_s, u"b"_s);
    EXPECT_EQ(desktop.clipboard, u"before"_s);
}

TEST(OpenWebAddress, AFailureLeavesTheAddressOnTheClipboard)
{
    test::ScriptedDesktop desktop;
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"https://b.org/"_s}, ShellFailure);
    desktop.ExpectMessage(
        {.text = u"Cannot start Browser. The following URL will be copied to "
                 "Clipboard:\n\nhttps://b.org/\n\nPlease run your Internet Browser manually then "
                 "paste text in the Address field."_s,
         .icon = BoxIcon::Warning});
    OpenWebAddress(desktop, u"https://b.org/"_s);
    EXPECT_EQ(desktop.clipboard, u"https://b.org/"_s);

    desktop.clipboard.clear();
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"https://b.org/"_s});
    OpenWebAddress(desktop, u"https://b.org/"_s);
    EXPECT_EQ(desktop.clipboard, u""_s);
}

} // namespace
