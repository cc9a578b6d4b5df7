// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/mailbox.h"

#include "platform/runtimeerror.h"
#include "shell/commandline.h"
#include "shell/documentkeys.h"
#include "shell/mailboxkeys.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"

#include <atomic>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QStringList>
#include <thread>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

struct MailboxTest : LifecycleFixture {
    bool mayOpen = true;
    Mailbox mailbox{editor, [this] { return mayOpen; }};
    bool running = true;
    bool answers = true;
    QStringList calls; ///< of the sender
    QString recent = context.WriteFile(u"recent.orc"_s, "recent");

    QString Stored() const { return settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s); }
    bool Send(const QStringList &arguments)
    {
        return Mailbox::Send(CommandLine(arguments), settings,
                             {.find =
                                  [this] {
                                      calls.append(u"find"_s);
                                      return running;
                                  },
                              .call =
                                  [this](bool hasMail) {
                                      calls.append(hasMail ? u"mail"_s : u"raise"_s);
                                      return answers;
                                  }});
    }
};

} // namespace

TEST_F(MailboxTest, MultipleInstancesAndNewInstanceForbidTheHandOver)
{
    EXPECT_TRUE(Send({u"x.orc"_s}));
    EXPECT_TRUE(Send({}));
    calls.clear();
    EXPECT_FALSE(Send({u"/i"_s}));
    settings.SaveSetting(u"Options"_s, u"MultipleInstances"_s, u"1"_s);
    EXPECT_FALSE(Send({u"x.orc"_s}));
    EXPECT_EQ(calls, QStringList()) << "nobody is looked for";
    settings.SaveSetting(u"Options"_s, u"MultipleInstances"_s, u"0"_s);
    EXPECT_TRUE(Send({u"x.orc"_s}));
}

TEST_F(MailboxTest, TheSenderPutsTheWholeStringIntoTheMailbox)
{
    EXPECT_TRUE(Send({}));
    EXPECT_EQ(Stored(), u"absent"_s);
    EXPECT_TRUE(Send({u"\"/no/a b.orc\""_s}));
    EXPECT_EQ(Stored(), u"\"/no/a b.orc\""_s);
    EXPECT_EQ(calls, (QStringList{u"find"_s, u"raise"_s, u"find"_s, u"mail"_s}));
}

TEST_F(MailboxTest, WithoutARunningEditorThereIsNoMail)
{
    running = false;
    EXPECT_FALSE(Send({u"x.orc"_s}));
    EXPECT_EQ(Stored(), u"absent"_s);
    EXPECT_EQ(calls, QStringList{u"find"_s});
}

TEST_F(MailboxTest, MailForAnEditorThatHasJustEndedIsTakenBack)
{
    answers = false;
    EXPECT_FALSE(Send({u"x.orc"_s}));
    EXPECT_EQ(Stored(), u"absent"_s);
    EXPECT_EQ(calls, (QStringList{u"find"_s, u"mail"_s}));
}

TEST_F(MailboxTest, AWakeUpOpensTheMailAndRaisesTheWindow)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, u'"' + recent + u'"');
    view.duringHighlight = [this] { EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s}); };
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, (QStringList{u"raise"_s, u"raise"_s}));
}

TEST_F(MailboxTest, ASecondWakeUpFindsAnEmptyMailbox)
{
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    mailbox.Wake();
    view.calls.clear();
    mailbox.Wake();
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(context.windows.calls.size(), 4);
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
    desktop.ExpectMessage(ErrorBox(u"Type mismatch (13)"_s, u"test"_s), BoxAnswer::Cancel);
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
    desktop.ExpectMessage(ErrorBox(u"Type mismatch (13)"_s), BoxAnswer::Cancel);
    mailbox.Wake();
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, (QStringList{u"raise"_s, u"raise"_s}));
}

TEST_F(MailboxTest, MailWaitsWhileADialogIsOpen)
{
    settings.SaveText(Keys::Open, recent);
    mayOpen = false;
    mailbox.Wake();
    EXPECT_TRUE(mailbox.Left());
    EXPECT_EQ(document.CurrentFile, u""_s);
    EXPECT_EQ(Stored(), recent);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
    mailbox.Wake(); // a second start while the dialog stands
    EXPECT_TRUE(mailbox.Left());
    EXPECT_EQ(document.CurrentFile, u""_s);

    mayOpen = true;
    mailbox.Wake();
    EXPECT_FALSE(mailbox.Left());
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
        EXPECT_TRUE(mailbox.Left());
        EXPECT_EQ(document.CurrentFile, recent) << "no opening inside an opening";
    };
    mailbox.Wake();
    EXPECT_TRUE(mailbox.Left());
    EXPECT_EQ(Stored(), second);
    view.duringHighlight = {};
    mayOpen = true;
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, second);
    EXPECT_FALSE(mailbox.Left());
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, MailIsTakenOnce)
{
    Mailbox::Take({}, settings);
    EXPECT_EQ(Stored(), u"absent"_s);
    settings.SaveText(Keys::Open, recent);
    settings.SaveNumber(Keys::OpenLine, 2);
    for (const Mailbox::Mail &other :
         {Mailbox::Mail{.file = recent}, Mailbox::Mail{.file = u"/x"_s, .line = 2}}) {
        Mailbox::Take(other, settings);
        EXPECT_EQ(Mailbox::Look(settings), (Mailbox::Mail{.file = recent, .line = 2})) << "another's stays";
    }
    Mailbox::Take({.file = recent, .line = 2}, settings);
    EXPECT_EQ(Stored(), u"absent"_s);
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail());
}

TEST_F(MailboxTest, WhatIsLeftAtTheEndIsPassedOn)
{
    const QString mail = u"\"/no/a b.orc\""_s;
    settings.SaveText(Keys::Open, mail);
    mailbox.PassOn(); // nobody has called this editor: the mail is another one's
    EXPECT_EQ(Stored(), mail);

    mayOpen = false;
    mailbox.Wake();
    desktop.ExpectShellRun(
        {.verb = u"open"_s, .file = QCoreApplication::applicationFilePath(), .parameters = mail});
    mailbox.PassOn();
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, APlaceThatIsLeftGetsItsLineInTheNextEditor)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    settings.SaveText(Keys::Open, file);
    settings.SaveNumber(Keys::OpenLine, 2);
    mayOpen = false;
    mailbox.Wake();
    desktop.ExpectShellRun(
        {.verb = u"open"_s, .file = QCoreApplication::applicationFilePath(), .parameters = file});
    mailbox.PassOn();

    Mailbox next{editor, [] { return true; }};
    documents.OpenFile(recent);
    next.TakeLeftLine(); // an editor that somebody else started
    EXPECT_EQ(Mailbox::Look(settings), (Mailbox::Mail{.file = file, .line = 2}));
    documents.OpenFile(file);
    next.TakeLeftLine();
    EXPECT_EQ(text.SelectedText(), u"two"_s);
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail());
    next.TakeLeftLine();
    EXPECT_EQ(text.SelectedText(), u"two"_s);
}

TEST_F(MailboxTest, APlaceThatIsLeftMayBeHandedOverToAnotherEditor)
{
    settings.SaveText(Keys::Open, recent);
    settings.SaveNumber(Keys::OpenLine, 3);
    EXPECT_TRUE(Send({u'"' + recent + u'"'}));
    EXPECT_EQ(Mailbox::Look(settings).line, 3);
    EXPECT_TRUE(Send({u"x.orc"_s}));
    EXPECT_EQ(Mailbox::Look(settings).line, 0);
}

TEST_F(MailboxTest, ACallThatFailsTakesBackItsOwnMailOnly)
{
    const Mailbox::Mail others{.file = u"/other.orc"_s, .line = 5};
    const Mailbox::RunningEditor sender{.find = [] { return true; },
                                        .call =
                                            [&](bool) {
                                                settings.SaveText(Keys::Open, others.file);
                                                settings.SaveNumber(Keys::OpenLine, others.line);
                                                return false;
                                            }};
    EXPECT_FALSE(Mailbox::SendPlace(u"/x.orc"_s, 7, settings, sender));
    EXPECT_EQ(Mailbox::Look(settings), others);
    EXPECT_FALSE(Mailbox::Send(CommandLine({u"y.orc"_s}), settings, sender));
    EXPECT_EQ(Mailbox::Look(settings), others);
}

TEST_F(MailboxTest, APlaceIsHandedOverWhateverTheSettingsSay)
{
    settings.SaveSetting(u"Options"_s, u"MultipleInstances"_s, u"1"_s);
    const Mailbox::RunningEditor sender{.find = [this] { return running; },
                                        .call = [this](bool) { return answers; }};
    EXPECT_TRUE(Mailbox::SendPlace(u"/x.orc"_s, 7, settings, sender));
    EXPECT_EQ(Stored(), u"/x.orc"_s);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenLine"_s), u"7"_s);
    EXPECT_TRUE(Mailbox::SendPlace(u"/y.orc"_s, 0, settings, sender));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenLine"_s, u"absent"_s), u"absent"_s)
        << "not the last one's";
    answers = false;
    EXPECT_FALSE(Mailbox::SendPlace(u"/x.orc"_s, 7, settings, sender));
    EXPECT_EQ(Stored(), u"absent"_s) << "taken back";
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenLine"_s, u"absent"_s), u"absent"_s);
    running = false;
    EXPECT_FALSE(Mailbox::SendPlace(u"/x.orc"_s, 7, settings, sender));
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, SelectsTheLineOfTheFileThatItOpens)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    for (const auto &[line, selected] :
         {std::pair{2, u"two"_s}, std::pair{3, u"three"_s}, std::pair{99, u"three"_s}}) {
        settings.SaveText(Keys::Open, file);
        settings.SaveNumber(Keys::OpenLine, line);
        mailbox.Wake();
        EXPECT_EQ(document.CurrentFile, file);
        EXPECT_EQ(text.SelectedText(), selected);
        EXPECT_EQ(Stored(), u"absent"_s);
        EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenLine"_s, u"absent"_s), u"absent"_s);
    }
}

TEST_F(MailboxTest, AFileThatIsOpenStaysAsItIs)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    documents.OpenFile(file);
    text.SetText(u"typed\nlines"_s);
    document.Modified = true;
    settings.SaveText(Keys::Open, file);
    settings.SaveNumber(Keys::OpenLine, 2);
    mailbox.Wake(); // no question either
    EXPECT_EQ(text.Text(), u"typed\nlines"_s);
    EXPECT_EQ(text.SelectedText(), u"lines"_s);
}

TEST_F(MailboxTest, ACancelledHandOverSelectsNothing)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    documents.OpenFile(recent);
    Type(u"typed "_s);
    text.SetSelection(1, 2);
    settings.SaveText(Keys::Open, file);
    settings.SaveNumber(Keys::OpenLine, 3);
    view.calls.clear();
    desktop.ExpectMessage(SaveChanges(recent), BoxAnswer::Cancel);
    mailbox.Wake();
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_EQ(text.Selection().start, 1);
    EXPECT_EQ(Stored(), u"absent"_s);
}

TEST_F(MailboxTest, WithoutAnEditorAPlaceIsForTheOneThatIsStarted)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    const Mailbox::RunningEditor sender{.find = [this] { return running; },
                                        .call =
                                            [this](bool hasMail) {
                                                EXPECT_TRUE(hasMail);
                                                mailbox.Wake();
                                                return true;
                                            }};
    running = false;
    EXPECT_FALSE(Mailbox::SendPlace(file, 2, settings, sender));
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail()) << "another editor would take it for its own";
    documents.OpenFile(file); // what the started editor does
    running = true;
    view.calls.clear();
    EXPECT_TRUE(Mailbox::SendPlace(file, 2, settings, sender));
    EXPECT_EQ(text.SelectedText(), u"two"_s);
    EXPECT_EQ(view.calls, QStringList()) << "nothing is loaded again";
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail());
}

TEST_F(MailboxTest, APlaceThatComesDuringAnOpeningIsOpenedAfterIt)
{
    const QString file = context.WriteFile(u"place.orc"_s, "one\ntwo\nthree");
    const Mailbox::RunningEditor sender{.find = [] { return true; },
                                        .call =
                                            [this](bool) {
                                                mailbox.Wake();
                                                return true;
                                            }};
    bool sent = false;
    view.duringHighlight = [&] {
        if (!std::exchange(sent, true)) {
            EXPECT_TRUE(Mailbox::SendPlace(file, 3, settings, sender));
        }
    };
    EXPECT_TRUE(Mailbox::SendPlace(file, 2, settings, sender)); // the same file, and another line
    EXPECT_TRUE(sent);
    EXPECT_EQ(text.SelectedText(), u"three"_s);
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail());
}

TEST_F(MailboxTest, AFileAndItsLineComeTogether)
{
    const QString name = context.folder.filePath(u"shared"_s);
    constexpr int rounds = 60;
    std::atomic<bool> done = false;
    const auto sends = [&](const QString &file, int line) {
        SettingsStore own(name);
        const Mailbox::RunningEditor sender{.find = [] { return true; }, .call = [](bool) { return true; }};
        for (int i = 0; i < rounds; ++i) {
            try {
                Mailbox::SendPlace(file, line, own, sender);
            } catch (const RunTimeError &) {
                // The lock was not to be had in time.
            }
        }
    };
    std::thread first([&] { sends(u"/one"_s, 1); });
    std::thread second([&] { sends(u"/two"_s, 0); });
    std::thread reader([&] {
        SettingsStore own(name);
        while (!done) {
            const Mailbox::Mail mail = Mailbox::Look(own);
            if (!mail.file.isEmpty()) {
                EXPECT_EQ(mail.line, mail.file == u"/one"_s ? 1 : 0) << mail.file.toStdString();
            }
            EXPECT_FALSE(mail.file.isEmpty() && mail.line > 0);
        }
    });
    first.join();
    second.join();
    done = true;
    reader.join();
}

TEST_F(MailboxTest, ALineIsNotForTheNextFile)
{
    settings.SaveNumber(Keys::OpenLine, 3);
    EXPECT_TRUE(Send({u"x.orc"_s}));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenLine"_s, u"absent"_s), u"absent"_s);
}

} // namespace zelvane::test
