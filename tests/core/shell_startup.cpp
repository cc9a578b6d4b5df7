// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/startup.h"

#include "platform/runtimeerror.h"
#include "shell/layoutkeys.h"
#include "support/lifecyclefixture.h"

#include <utility>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QString Author = QString::fromUtf16(AuthorAddress);

struct Startup : test::LifecycleFixture {
    QString recent = context.WriteFile(u"recent.orc"_s, "recent");
    Startup() { settings.SaveSetting(u"Recent File List"_s, u"1"_s, recent); }
    void Start(const QStringList &arguments) { RigaDiComando(CommandLine(arguments), documents, settings); }
};

TEST_F(Startup, ANewInstanceStaysBare)
{
    Start({u"/i"_s});
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(document.CurrentFile, u""_s);
}

TEST_F(Startup, ADocumentOpensWithAndWithoutQuotes)
{
    const QString path = context.WriteFile(u"a b.csd"_s, "x");
    Start({path});
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_FALSE(view.calls.contains(u"colours"_s)) << "no new document comes first";
    documents.NewFile(FileKind::Other, {});
    Start({u'"' + path + u'"'});
    EXPECT_EQ(document.CurrentFile, path);
    documents.NewFile(FileKind::Other, {});
    Start(path.split(u' '));
    EXPECT_EQ(document.CurrentFile, path);
}

TEST_F(Startup, WithoutADocumentTheLastOneOpens)
{
    Start({});
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_TRUE(view.calls.contains(u"caption Zelvane - Untitled ()"_s)) << "a new document comes first";
}

TEST_F(Startup, AnEmptyRecentListLeavesAnUntitledDocument)
{
    settings.DeleteSetting(u"Recent File List"_s);
    Start({});
    EXPECT_EQ(view.caption, u"Zelvane - Untitled ()"_s);
    EXPECT_FALSE(document.Modified);
}

TEST_F(Startup, TheOpenDialogMayComeFirst)
{
    settings.SaveSetting(u"Options"_s, u"Startup"_s, u"1"_s);
    desktop.ExpectOpenDialog({.filters = {{u"All Csound types"_s, u"*.orc;*.sco;*.csd"_s},
                                          {u"Orchestra files"_s, u"*.orc"_s},
                                          {u"Score files"_s, u"*.sco"_s},
                                          {u"Unified Format files"_s, u"*.csd"_s},
                                          {u"Text files"_s, u"*.txt"_s},
                                          {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                                          {u"All files"_s, u"*.*"_s}}},
                             {.path = recent});
    Start({});
    EXPECT_EQ(document.CurrentFile, recent);
}

TEST_F(Startup, AnyOtherRuleOpensNothing)
{
    for (const QString &rule : {u"2"_s, u"7"_s, u"-1"_s}) {
        settings.SaveSetting(u"Options"_s, u"Startup"_s, rule);
        Start({});
        EXPECT_EQ(view.caption, u"Zelvane - Untitled ()"_s);
        EXPECT_EQ(document.CurrentFile, u""_s);
    }
    settings.SaveSetting(u"Options"_s, u"Startup"_s, u"first"_s);
    EXPECT_THROW(Start({}), RunTimeError);
}

TEST_F(Startup, MultipleInstancesAndNewInstanceForbidTheHandOver)
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

TEST_F(Startup, TheSenderPutsTheWholeStringIntoTheMailbox)
{
    EXPECT_FALSE(PutHandOver(CommandLine{QStringList()}, settings));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_TRUE(PutHandOver(CommandLine({u"\"/no/a b.orc\""_s}), settings));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s), u"\"/no/a b.orc\""_s);
}

TEST_F(Startup, AWakeUpOpensTheMailAndRaisesTheWindow)
{
    HandOver handOver(editor);
    settings.SaveSetting(u"Options"_s, u"Open"_s, u'"' + recent + u'"');
    handOver.Wake();
    EXPECT_EQ(document.CurrentFile, recent);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
}

TEST_F(Startup, ASecondWakeUpFindsAnEmptyMailbox)
{
    HandOver handOver(editor);
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    handOver.Wake();
    view.calls.clear();
    handOver.Wake();
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(context.windows.calls, (QStringList{u"raise"_s, u"raise"_s}));
}

TEST_F(Startup, MailThatComesDuringAnOpeningIsOpenedAfterIt)
{
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    HandOver handOver(editor);
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    bool woken = false;
    view.duringHighlight = [&] {
        if (std::exchange(woken, true))
            return;
        settings.SaveSetting(u"Options"_s, u"Open"_s, second);
        handOver.Wake();
        EXPECT_EQ(document.CurrentFile, recent) << "no opening inside an opening";
    };
    handOver.Wake();
    EXPECT_TRUE(woken);
    EXPECT_EQ(document.CurrentFile, second);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
}

TEST_F(Startup, AFailureOfAHandOverIsReportedAndTheNextOneIsServed)
{
    HandOver handOver(editor);
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
    handOver.Wake();
    view.duringHighlight = {};
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    settings.SaveSetting(u"Options"_s, u"Open"_s, second);
    desktop.ExpectMessage({.text = u"Save changes to "_s + recent + u"?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNoCancel},
                          BoxAnswer::No);
    handOver.Wake();
    EXPECT_EQ(document.CurrentFile, second);
}

TEST_F(Startup, MailThatFailedToOpenIsNotOpenedAgain)
{
    HandOver handOver(editor);
    settings.SaveSetting(u"Options"_s, u"Open"_s, recent);
    view.duringHighlight = [] { throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch"_s); };
    desktop.ExpectMessage({.text = u"An error has occurred:\n\nType mismatch (13)\nError source: Zelvane\n\n"
                                   "Do you want to report this bug via email?"_s,
                           .icon = BoxIcon::Critical,
                           .buttons = BoxButtons::OkCancel},
                          BoxAnswer::Cancel);
    handOver.Wake();
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"Open"_s, u"absent"_s), u"absent"_s);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
}

TEST_F(Startup, OnlyTheFirstDroppedFileOpens)
{
    const QString second = context.WriteFile(u"second.orc"_s, "second");
    FilesDropped({second, recent, recent}, editor);
    EXPECT_EQ(document.CurrentFile, second);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
    FilesDropped({}, editor);
    EXPECT_EQ(context.windows.calls, QStringList{u"raise"_s});
}

TEST_F(Startup, TheFirstUseWelcomesAndShowsThePreferences)
{
    desktop.ExpectMessage(
        {.text =
             u"Welcome to Zelvane! This program is FREE, you may download new versions at "_s +
             QString::fromUtf16(WebAddress) +
             u"\n\nIf you have questions, suggestions or you find a bug, please feel free to contact me at "_s +
             Author + u"\n\nHappy Csounding!"_s,
         .icon = BoxIcon::Information,
         .title = u"Welcome!"_s});
    ShowFirstUseMessages(editor);
    EXPECT_EQ(context.windows.calls, QStringList{u"preferences"_s});
}

TEST_F(Startup, TheHundredthUseAsksForComments)
{
    settings.SaveNumber(Keys::Used, 100);
    desktop.ExpectMessage(
        {.text = u"You used Zelvane 100 times. At this time you should be an experienced user, so "
                 "please send me your comments, suggestions, new ideas. I really need them to make "
                 "Zelvane always better. Thank you."_s,
         .icon = BoxIcon::Information});
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"mailto:"_s + Author + u"?subject=&body="_s});
    ShowFirstUseMessages(editor);
    EXPECT_EQ(context.windows.calls, QStringList());
}

TEST_F(Startup, AnyOtherUseIsSilent)
{
    for (const int used : {0, 2, 99, 101, 200}) {
        settings.SaveNumber(Keys::Used, used);
        ShowFirstUseMessages(editor);
    }
    EXPECT_EQ(context.windows.calls, QStringList());
}

} // namespace
