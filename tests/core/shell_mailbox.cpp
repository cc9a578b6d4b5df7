// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "platform/runtimeerror.h"
#include "shell/commandline.h"
#include "shell/documentkeys.h"
#include "support/lifecyclefixture.h"

#include <gtest/gtest.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

struct MailboxTest : LifecycleFixture {
    bool mayOpen = true;
    Mailbox mailbox{editor, [this] { return mayOpen; }};
    QString recent = context.WriteFile(u"recent.orc"_s, "recent");

    QString Stored() const { return settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s); }
};

} // namespace

TEST_F(MailboxTest, MultipleInstancesAndNewInstanceForbidTheHandOver)
{
    const CommandLine file({u"x.orc"_s});
    const CommandLine none{QStringList()};
    const CommandLine instance({u"/i"_s});
    EXPECT_TRUE(MayHandOver(file, settings));
    EXPECT_TRUE(MayHandOver(none, settings));
    EXPECT_FALSE(MayHandOver(instance, settings));
    settings.SaveSetting(u"Options"_s, u"MultipleInstances"_s, u"1"_s);
    EXPECT_FALSE(MayHandOver(file, settings));
    settings.SaveSetting(u"Options"_s, u"MultipleInstances"_s, u"0"_s);
    EXPECT_TRUE(MayHandOver(file, settings));
}

TEST_F(MailboxTest, TheSenderPutsTheWholeStringIntoTheMailbox)
{
    EXPECT_FALSE(PutMail(CommandLine{QStringList()}, settings));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_TRUE(PutMail(CommandLine({u"\"/no/a b.orc\""_s}), settings));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s), u"\"/no/a b.orc\""_s);
}

TEST_F(MailboxTest, AWakeUpOpensTheMailAndRaisesTheWindow)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, u'"' + recent + u'"');
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
}

TEST_F(MailboxTest, ASecondWakeUpFindsAnEmptyMailbox)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    mailbox.Wake();
    view.calls.clear();
    mailbox.Wake();
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(context.windows.calls, (QStringList{u"raise"_s, u"raise"_s}));
}

TEST_F(MailboxTest, MailThatComesDuringAnOpeningIsOpenedAfterIt)
{
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    bool woken = false;
    view.duringHighlight = [&] {
        if (std::exchange(woken, true))
            return;
        settings.SaveSetting(u"Options"_s, u"Open"_s, second);
        mailbox.Wake();
        EXPECT_EQ(document.CurrentFile, recent) << "no opening inside an opening";
    };
    mailbox.Wake();
    EXPECT_TRUE(woken);
    EXPECT_EQ(document.CurrentFile, second);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
}

TEST_F(MailboxTest, AFailureOfAHandOverIsReportedAndTheNextOneIsServed)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    view.duringHighlight = [] {
        throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch"_s, u"test"_s);
    };
    desktop.ExpectMessage({.text =
                               u"An error has occurred:\n\nType mismatch (13)\nError source: test\n\nDo you "
                               "want to report this bug via email?"_s,
                           .icon = BoxIcon::Critical,
                           .buttons = BoxButtons::OkCancel},
                          BoxAnswer::Cancel);
    mailbox.Wake();
    view.duringHighlight = {};
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    settings.SaveSetting(u"Options"_s, u"Open"_s, second);
    desktop.ExpectMessage({.text = u"Save changes to "_s + recent + u"?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNoCancel},
                          BoxAnswer::No);
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, second);
}

TEST_F(MailboxTest, MailThatFailedToOpenIsNotOpenedAgain)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    view.duringHighlight = [] { throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch"_s); };
    desktop.ExpectMessage({.text = u"An error has occurred:\n\nType mismatch (13)\nError source: Zelvane\n\n"
                                   "Do you want to report this bug via email?"_s,
                           .icon = BoxIcon::Critical,
                           .buttons = BoxButtons::OkCancel},
                          BoxAnswer::Cancel);
    mailbox.Wake();
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
}

TEST_F(MailboxTest, MailWaitsWhileADialogIsOpen)
{
    settings.SaveText(Keys::Open, recent);
    mayOpen = false;
    mailbox.Wake();
    EXPECT_TRUE(mailbox.HasMail());
    EXPECT_EQ(document.CurrentFile, u""_s);
    EXPECT_EQ(Stored(), recent);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
    mailbox.Wake(); // a second start while the dialog stands
    EXPECT_TRUE(mailbox.HasMail());
    EXPECT_EQ(document.CurrentFile, u""_s);

    mayOpen = true;
    mailbox.Wake();
    EXPECT_FALSE(mailbox.HasMail());
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, TheQuestionOfAnOpeningIsADialogToo)
{
    // Mail that comes while the first one's question stands waits, and is not lost when the question ends.
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    settings.SaveText(Keys::Open, recent);
    view.duringHighlight = [&] {
        mayOpen = false;
        settings.SaveText(Keys::Open, second);
        mailbox.Wake();
        EXPECT_TRUE(mailbox.HasMail());
        EXPECT_EQ(document.CurrentFile, recent) << "no opening inside an opening";
    };
    mailbox.Wake();
    EXPECT_TRUE(mailbox.HasMail());
    EXPECT_EQ(Stored(), second);
    view.duringHighlight = {};
    mayOpen = true;
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, second);
    EXPECT_FALSE(mailbox.HasMail());
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, MailIsTakenOnce)
{
    EXPECT_EQ(TakeMail(settings), u""_s);
    EXPECT_EQ(Stored(), u"absent"_s);
    settings.SaveText(Keys::Open, recent);
    EXPECT_EQ(TakeMail(settings), recent);
    EXPECT_EQ(Stored(), u"absent"_s);
    EXPECT_EQ(TakeMail(settings), u""_s);
}

} // namespace zelvane::test
