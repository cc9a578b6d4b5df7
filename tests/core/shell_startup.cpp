// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/startup.h"

#include "platform/runtimeerror.h"
#include "shell/layoutkeys.h"
#include "support/boxes.h"
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
    Start({});
    EXPECT_EQ(document.CurrentFile, recent) << "the default";
    EXPECT_EQ(settings.TakeUnreadable().size(), 1u);
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
    desktop.ExpectMessage(test::Welcome());
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
