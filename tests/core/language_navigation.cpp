// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/navigation.h"

#include "oracle/navigationoracle.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/documentsteps.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"
#include "support/randomtext.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// The history behind the real opening of files.
struct HistoryTest : LifecycleFixture, HistoryStep {
    Navigation navigation{editor};

    HistoryTest() { view.steps.history.Take(*this); }
    void navBeforeOpen() override { navigation.navBeforeOpen(); }
    void navAfterOpen() override { navigation.navAfterOpen(); }

    QString Make(const QString &name) { return context.WriteFile(name, "0123456789\n"); }
    /// The names of the list, the current one in brackets.
    QString Shown() const
    {
        QStringList names;
        const int current = navigation.backCount() + 1;
        for (int position = 1; position <= current + navigation.nextCount(); ++position) {
            const QString name = navigation.Item(position).displayName;
            names.append(position == current ? u'[' + name + u']' : name);
        }
        return names.join(u' ');
    }

    QString a = Make(u"a.orc"_s);
    QString b = Make(u"b.orc"_s);
    QString c = Make(u"c.orc"_s);
    QString d = Make(u"d.orc"_s);
};

const NavigationFile NoFile;

} // namespace

TEST_F(HistoryTest, BeginsEmpty)
{
    EXPECT_EQ(navigation.currentItem(), NoFile);
    EXPECT_EQ(navigation.backItem(), NoFile);
    EXPECT_EQ(navigation.nextItem(), NoFile);
    EXPECT_FALSE(navigation.canGoBack());
    EXPECT_FALSE(navigation.canGoNext());
    EXPECT_EQ(navigation.nextCount(), 0);
    EXPECT_EQ(navigation.backCount(), -1);
    EXPECT_EQ(BackButton(navigation), NavigationButton());
    EXPECT_EQ(NextButton(navigation), NavigationButton());
}

TEST_F(HistoryTest, GoesBackAndOnAndDropsWhatFollowed)
{
    for (const QString &file : {a, b, c})
        documents.OpenFile(file);
    EXPECT_EQ(Shown(), u"a.orc b.orc [c.orc]"_s);
    EXPECT_TRUE(navigation.go(-2));
    EXPECT_EQ(document.CurrentFile, a);
    EXPECT_EQ(Shown(), u"[a.orc] b.orc c.orc"_s);
    EXPECT_EQ(BackButton(navigation), NavigationButton());
    EXPECT_EQ(NextButton(navigation), (NavigationButton{true, u"Go to b.orc"_s, {u"&b.orc"_s, u"&c.orc"_s}}));
    EXPECT_TRUE(navigation.go(1));
    EXPECT_EQ(document.CurrentFile, b);
    EXPECT_EQ(BackButton(navigation), (NavigationButton{true, u"Back to a.orc"_s, {u"&a.orc"_s}}));
    EXPECT_TRUE(navigation.go(-1));
    documents.OpenFile(d);
    EXPECT_EQ(Shown(), u"a.orc [d.orc]"_s);
    EXPECT_FALSE(navigation.canGoNext());
}

TEST_F(HistoryTest, ListsTheNearestFileFirst)
{
    for (const QString &file : {a, b, c})
        documents.OpenFile(file);
    EXPECT_EQ(BackButton(navigation),
              (NavigationButton{true, u"Back to b.orc"_s, {u"&b.orc"_s, u"&a.orc"_s}}));
    EXPECT_EQ(navigation.backItem().filename, b);
    EXPECT_EQ(navigation.currentItem().filename, c);
    EXPECT_EQ(navigation.backCount(), 2);
}

TEST_F(HistoryTest, AFileOpenedAgainMovesToTheEnd)
{
    for (const QString &file : {a, b, a})
        documents.OpenFile(file);
    EXPECT_EQ(Shown(), u"b.orc [a.orc]"_s);
    EXPECT_EQ(BackButton(navigation).tooltip, u"Back to b.orc"_s);
}

TEST_F(HistoryTest, TheCurrentFileOpenedAgainMovesNothing)
{
    documents.OpenFile(a);
    documents.OpenFile(a);
    EXPECT_EQ(Shown(), u"[a.orc]"_s);
    EXPECT_FALSE(navigation.canGoBack());
}

TEST_F(HistoryTest, NamesAreComparedWithoutRegardToCase)
{
    const QString upper = Make(u"A.ORC"_s);
    for (const QString &file : {a, b, upper})
        documents.OpenFile(file);
    EXPECT_EQ(Shown(), u"b.orc [A.ORC]"_s);
}

TEST_F(HistoryTest, GivesBackTheSelectionThatAFileWasLeftWith)
{
    documents.OpenFile(a);
    text.SetSelection(1, 1);
    text.SetSelection(3, 7);
    documents.OpenFile(b);
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
    EXPECT_EQ(navigation.backItem(), (NavigationFile{a, u"a.orc"_s, 0, 3, 7}));
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_EQ(text.selection, (TextSpan{3, 7}));
}

TEST_F(HistoryTest, TheSelectionEndsWithAFileThatBecameShorter)
{
    documents.OpenFile(a);
    text.SetSelection(3, 7);
    documents.OpenFile(b);
    context.WriteFile(u"a.orc"_s, "01234");
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_EQ(text.selection, (TextSpan{3, 5}));
    documents.OpenFile(b);
    context.WriteFile(u"a.orc"_s, "0");
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_EQ(text.selection, (TextSpan{1, 1}));
}

TEST_F(HistoryTest, AFileThatIsLeftByTheHistoryKeepsItsEarlierSelection)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    text.SetSelection(5, 6);
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_TRUE(navigation.go(1));
    EXPECT_EQ(document.CurrentFile, b);
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
}

TEST_F(HistoryTest, ANewDocumentEntersNoHistory)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    documents.NewFile(FileKind::Orchestra, {});
    EXPECT_EQ(Shown(), u"a.orc [b.orc]"_s);
    Type(u"1234"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    documents.OpenFile(c);
    EXPECT_EQ(Shown(), u"a.orc b.orc [c.orc]"_s);
    // The place in the unnamed text goes to the file before it.
    EXPECT_EQ(navigation.backItem().selStart, 4);
}

TEST_F(HistoryTest, LeavesTheRecentListAlone)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    const QStringList recent = view.recentFiles;
    EXPECT_EQ(recent, (QStringList{b, a}));
    view.recentFiles.clear();
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_TRUE(view.recentFiles.isEmpty());
}

TEST_F(HistoryTest, ARefusedOpeningTakesTheMoveBack)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    Type(u"x"_s);
    text.SetSelection(4, 5);
    desktop.ExpectMessage(SaveChanges(b), BoxAnswer::Cancel);
    EXPECT_FALSE(navigation.go(-1));
    EXPECT_EQ(Shown(), u"a.orc [b.orc]"_s);
    EXPECT_EQ(text.selection, (TextSpan{4, 5}));
    // The next opening is one of its own again.
    desktop.ExpectMessage(SaveChanges(b), BoxAnswer::No);
    documents.OpenFile(c);
    EXPECT_EQ(Shown(), u"a.orc b.orc [c.orc]"_s);
    EXPECT_EQ(navigation.backItem().selEnd, 5);
}

TEST_F(HistoryTest, AFileThatHasVanishedStaysInTheList)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    ASSERT_TRUE(QFile::remove(a));
    QString description;
    try {
        ReadFileBytes(a);
    } catch (const RunTimeError &error) {
        description = error.Description();
    }
    desktop.ExpectMessage(
        {.text = u"Unable to open "_s + a + u".\n\n"_s + description, .icon = BoxIcon::Warning});
    EXPECT_FALSE(navigation.go(-1));
    EXPECT_EQ(Shown(), u"a.orc [b.orc]"_s);
    EXPECT_EQ(document.CurrentFile, b);
    EXPECT_TRUE(navigation.canGoBack());
}

TEST_F(HistoryTest, AnOpeningThatThrowsEndsTheNavigation)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    view.duringHighlight = [] { throw RunTimeError(ErrorNumber::InvalidCall, u"colours"_s); };
    EXPECT_THROW(navigation.go(-1), RunTimeError);
    view.duringHighlight = {};
    EXPECT_EQ(navigation.currentItem().filename, b);
    document.Modified = document.Loading = false;
    documents.OpenFile(c);
    EXPECT_EQ(Shown(), u"a.orc b.orc [c.orc]"_s);
}

TEST_F(HistoryTest, AMoveOutOfTheListIsKeptAndOpensNothing)
{
    documents.OpenFile(a);
    documents.OpenFile(b);
    EXPECT_FALSE(navigation.go(1));
    EXPECT_EQ(document.CurrentFile, b);
    EXPECT_EQ(navigation.currentItem(), NoFile);
    EXPECT_EQ(navigation.nextCount(), -1);
    EXPECT_EQ(navigation.backCount(), 2);
    EXPECT_FALSE(navigation.canGoBack());
    EXPECT_FALSE(navigation.canGoNext());
    EXPECT_EQ(navigation.backItem(), NoFile);
    EXPECT_EQ(navigation.nextItem(), NoFile);
    EXPECT_TRUE(navigation.go(-1));
    EXPECT_FALSE(navigation.go(-2));
    EXPECT_TRUE(navigation.canGoNext());
    EXPECT_EQ(navigation.nextItem().filename, a);
    EXPECT_EQ(navigation.backItem(), NoFile);
    EXPECT_FALSE(navigation.go(-1));
    EXPECT_FALSE(navigation.canGoNext());
    EXPECT_EQ(navigation.nextItem(), NoFile);
    EXPECT_EQ(navigation.backItem(), NoFile);
    documents.OpenFile(c);
    EXPECT_EQ(Shown(), u"[c.orc]"_s);
}

TEST_F(HistoryTest, CaptionsShowAnAmpersandOfTheName)
{
    documents.OpenFile(Make(u"R&B.orc"_s));
    documents.OpenFile(b);
    EXPECT_EQ(BackButton(navigation).captions, QStringList{u"&R&&B.orc"_s});
    EXPECT_EQ(BackButton(navigation).tooltip, u"Back to R&B.orc"_s);
}

namespace
{

/// A document that is opened at once, unless it is refused.
struct InstantOperations : TestOperations {
    DocumentRecord *document = nullptr;
    Navigation *navigation = nullptr;
    bool refuses = false;
    void OpenFile(const QString &name, OpenOrigin) override
    {
        if (refuses)
            return;
        navigation->navBeforeOpen();
        document->CurrentFile = name;
        navigation->navAfterOpen();
    }
};

} // namespace

TEST(Navigation, IsThatOfItsSteps)
{
    RandomText random({u"a"_s, u"A"_s, u"b"_s, u"B"_s}, 2);
    TestContext context;
    context.text.text = u"0123456789"_s;
    InstantOperations operations;
    operations.document = &context.document;
    EditorContext editor{context.document, context.text,    context.settings, context.desktop,
                         context.status,   context.windows, operations};
    for (int round = 0; round < 20000; ++round) {
        Navigation navigation(editor);
        operations.navigation = &navigation;
        oracle::History history;
        QString trail;
        for (int step = random.Number(1, 12); step > 0; --step) {
            const int caret = random.Number(0, 9);
            const int length = random.Number(0, 10 - caret);
            context.text.SetSelection(caret, caret + length);
            if (random.Number(0, 2) > 0) {
                const QString file = u'/' + random.Next();
                trail += u" open "_s + file;
                operations.refuses = false;
                operations.OpenFile(file, OpenOrigin::Command);
                history.BeforeOpen(caret, length);
                history.AfterOpen(file);
            } else {
                const int delta = random.Number(-3, 3);
                operations.refuses = random.Number(0, 4) == 0;
                trail += u" go %1%2"_s.arg(delta).arg(operations.refuses ? u" refused"_s : QString());
                const int before = history.current;
                history.current += delta;
                oracle::HistoryEntry *entry = history.ItemAt(history.current);
                const bool opened = entry && !operations.refuses;
                ASSERT_EQ(navigation.go(delta), opened) << ::testing::PrintToString(trail);
                if (opened) {
                    history.navigating = true;
                    history.BeforeOpen(caret, length);
                    history.AfterOpen(entry->filename);
                    ASSERT_EQ(context.document.CurrentFile, entry->filename);
                    ASSERT_EQ(context.text.selection, (TextSpan{entry->selStart, entry->selEnd}))
                        << ::testing::PrintToString(trail);
                } else if (entry) {
                    history.current = before;
                }
            }
            ASSERT_EQ(navigation.backCount(), history.current - 1) << ::testing::PrintToString(trail);
            ASSERT_EQ(navigation.nextCount(), history.items.size() - history.current)
                << ::testing::PrintToString(trail);
            ASSERT_EQ(navigation.canGoBack(), history.CanGoBack()) << ::testing::PrintToString(trail);
            ASSERT_EQ(navigation.canGoNext(), history.CanGoNext()) << ::testing::PrintToString(trail);
            ASSERT_EQ(navigation.backItem().filename, history.BackItem().filename)
                << ::testing::PrintToString(trail);
            ASSERT_EQ(navigation.nextItem().filename, history.NextItem().filename)
                << ::testing::PrintToString(trail);
            for (int position = 0; position <= history.items.size() + 1; ++position) {
                const oracle::HistoryEntry *entry = history.ItemAt(position);
                const NavigationFile item = navigation.Item(position);
                ASSERT_EQ(item.filename, entry ? entry->filename : QString())
                    << ::testing::PrintToString(trail);
                ASSERT_EQ(item.selStart, entry ? entry->selStart : 0) << ::testing::PrintToString(trail);
                ASSERT_EQ(item.selEnd, entry ? entry->selEnd : 0) << ::testing::PrintToString(trail);
            }
        }
    }
}

} // namespace zelvane::test
