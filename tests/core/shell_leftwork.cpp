// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/leftwork.h"

#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/unsavedcopy.h"
#include "shell/documentkeys.h"
#include "support/boxes.h"
#include "support/childprocess.h"
#include "support/lifecyclefixture.h"
#include "support/statefolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

struct LeftBehind : LifecycleFixture {
    OwnStateFolder state;
    bool answersCount = true;

    void Offer()
    {
        OfferLeftWork(documents, editor, [this] { return answersCount; });
    }
    /// The one question about a copy that stands.
    MessageBoxRequest TextQuestion(const QString &name, const QString &copy) const
    {
        return {.text = name + u" was not saved when its editor ended. Open the copy of its text of "_s +
                        QFileInfo(copy).lastModified().toString(u"yyyy-MM-dd hh:mm"_s) + u'?',
                .icon = BoxIcon::Question,
                .buttons = BoxButtons::YesNo};
    }
    MessageBoxRequest FileQuestion(const QString &name) const
    {
        return {.text = name + u" was being written when its editor ended. Open what it held before?"_s,
                .icon = BoxIcon::Question,
                .buttons = BoxButtons::YesNo};
    }
    ShellRequest NewEditor() const
    {
        return {.verb = u"open"_s, .file = QCoreApplication::applicationFilePath(), .parameters = u"/i"_s};
    }
    CopyInfo Piece() const
    {
        return {.name = context.folder.filePath(u"piece.orc"_s), .kind = 1, .encoding = TextEncoding{}};
    }
    static QString OnlyCopy(const QString &ending = {})
    {
        const QStringList copies = OwnStateFolder::Copies(ending);
        EXPECT_EQ(copies.size(), 1);
        return copies.value(0);
    }
};

} // namespace

TEST_F(LeftBehind, NothingLeftNothingAsked)
{
    Offer();
    EXPECT_EQ(view.calls, QStringList());
}

TEST_F(LeftBehind, AYesOpensAnUntitledChangedTextThatKnowsItsName)
{
    context.WriteFile(u"piece.orc"_s, "instr 1\r\n");
    const CopyInfo info{
        .name = Piece().name, .kind = 1, .encoding = TextEncoding{TextEncoding::Form::Windows1252, false}};
    OwnStateFolder::Leave(info, "caf\u00E9\ninstr 1\n");
    const QString copy = OnlyCopy(u".open"_s);
    documents.OpenFile(context.WriteFile(u"another.sco"_s, "i1"));
    desktop.ExpectMessage(TextQuestion(info.name, copy), BoxAnswer::Yes);
    Offer();
    EXPECT_EQ(text.text, u"caf\u00E9\ninstr 1\n"_s);
    EXPECT_EQ(document.CurrentFile, QString());
    EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
    EXPECT_TRUE(document.Modified);
    EXPECT_FALSE(document.Loading);
    EXPECT_TRUE(view.saveEnabled);
    EXPECT_EQ(view.caption, u"Zelvane - Untitled* (Orchestra)"_s);
    EXPECT_TRUE(view.calls.contains(u"highlight"_s));
    EXPECT_EQ(status.text, u"Not saved: "_s + info.name);
    // It is still asked about should this editor be killed before the text is saved.
    documents.SecureText();
    EXPECT_EQ(OnlyCopy(), copy);

    // The save proposes the name, and keeps the encoding.
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = info.name,
                              .fileName = u"piece.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = info.name});
    documents.Save();
    EXPECT_EQ(FileBytes(info.name), "caf\xE9\r\ninstr 1\r\n");
    EXPECT_EQ(document.CurrentFile, info.name);
    documents.SecureText();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
    Offer();
}

TEST_F(LeftBehind, TheNameIsProposedWhereItWasWhateverWasSavedLast)
{
    OwnStateFolder::Leave(Piece(), "x");
    settings.SaveText(Keys::SaveFolder, u"/elsewhere"_s);
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::Yes);
    Offer();
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = Piece().name,
                              .fileName = u"piece.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {});
    documents.Save();
    EXPECT_TRUE(document.Modified);
}

TEST_F(LeftBehind, EditsOfItAreCopiedAndAKillLeavesItAgain)
{
    OwnStateFolder::Leave(Piece(), "left");
    const QString copy = OnlyCopy();
    EXPECT_FALSE(ChildSucceeded(StartChild([&] {
        desktop.ExpectMessage(TextQuestion(Piece().name, copy), BoxAnswer::Yes);
        Offer();
        Type(u"more and "_s);
        documents.SecureText();
        ::kill(::getpid(), SIGKILL);
    })));
    const QString second = OnlyCopy(u".open"_s);
    EXPECT_EQ(OwnStateFolder::TextIn(second), "more and left");
    desktop.ExpectMessage(TextQuestion(Piece().name, second), BoxAnswer::Yes);
    Offer();
    EXPECT_EQ(text.text, u"more and left"_s);
    EXPECT_EQ(document.OfferedName, Piece().name);
}

TEST_F(LeftBehind, ANoKeepsItAndAsksNoMore)
{
    OwnStateFolder::Leave(Piece(), "left");
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::No);
    Offer();
    EXPECT_EQ(OwnStateFolder::TextIn(OnlyCopy(u".kept"_s)), "left");
    Offer();
    EXPECT_EQ(view.calls, QStringList());
}

TEST_F(LeftBehind, DiscardingItKeepsIt)
{
    OwnStateFolder::Leave(Piece(), "left");
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::Yes);
    Offer();
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    documents.OpenFile(context.WriteFile(u"other.orc"_s, "other"));
    documents.SecureText();
    EXPECT_EQ(OwnStateFolder::TextIn(OnlyCopy(u".kept"_s)), "left");
}

TEST_F(LeftBehind, OneOfSeveralIsOpenedHereAndAnotherEditorAsksAboutTheRest)
{
    for (const char *name : {"1", "2", "3"})
        OwnStateFolder::Leave({.name = QString::fromLatin1(name), .encoding = TextEncoding{}}, name);
    const QStringList copies = OwnStateFolder::Copies();
    ASSERT_EQ(copies.size(), 3);
    // The last written first.
    desktop.ExpectMessage(TextQuestion(u"3"_s, copies[2]), BoxAnswer::No);
    desktop.ExpectMessage(TextQuestion(u"2"_s, copies[1]), BoxAnswer::Yes);
    desktop.ExpectShellRun(NewEditor());
    Offer();
    EXPECT_EQ(text.text, u"2"_s);
    desktop.CheckAllCame();
    // As that editor sees it: this one's is not to be had.
    EXPECT_TRUE(ChildSucceeded(StartChild([] {
        const std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
        ASSERT_EQ(left.size(), 1u);
        EXPECT_EQ(OwnStateFolder::TextIn(left[0].Path()), "1");
    })));
}

TEST_F(LeftBehind, AChangedTextIsNotReplaced)
{
    Type(u"typed during the start"_s);
    OwnStateFolder::Leave(Piece(), "left");
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy(u".open"_s)), BoxAnswer::Yes);
    desktop.ExpectShellRun(NewEditor());
    Offer();
    EXPECT_EQ(text.text, u"typed during the start"_s);
    EXPECT_TRUE(ChildSucceeded(StartChild([] { EXPECT_EQ(UnsavedCopy::TakeLeft().size(), 1u); })));
}

TEST_F(LeftBehind, AnEditorThatDoesNotStartLosesNothing)
{
    for (const char *name : {"1", "2"})
        OwnStateFolder::Leave({.name = QString::fromLatin1(name), .encoding = TextEncoding{}}, name);
    desktop.ExpectMessage(TextQuestion(u"2"_s, OwnStateFolder::Copies()[1]), BoxAnswer::Yes);
    desktop.ExpectShellRun(NewEditor(), ShellFailure);
    EXPECT_THROW(Offer(), RunTimeError);
    EXPECT_EQ(text.text, u"2"_s);
    EXPECT_TRUE(ChildSucceeded(StartChild([] { EXPECT_EQ(UnsavedCopy::TakeLeft().size(), 1u); })));
}

TEST_F(LeftBehind, AnEndWithoutAnAnswerLeavesItToTheNext)
{
    OwnStateFolder::Leave(Piece(), "left");
    answersCount = false;
    Offer();
    EXPECT_EQ(OwnStateFolder::Copies(u".open"_s).size(), 1);
    EXPECT_TRUE(ChildSucceeded(StartChild([] { EXPECT_EQ(UnsavedCopy::TakeLeft().size(), 1u); })));
}

TEST_F(LeftBehind, WhatTheFileHoldsIsNotAskedAbout)
{
    context.WriteFile(u"piece.orc"_s, "a\r\nb\r\n");
    OwnStateFolder::Leave(Piece(), "a\nb\n"); // killed right after the save
    OwnStateFolder::Leave({.encoding = TextEncoding{}}, "");
    OwnStateFolder::Leave(Piece(), "a\r\nb\r\n", UnsavedCopy::Kind::Replaced); // before it, or after
    OwnStateFolder::Leave({.name = Piece().name, .replacedBy = ContentHash("a\r\nb\r\n")}, "former",
                          UnsavedCopy::Kind::Replaced);
    ASSERT_EQ(OwnStateFolder::Copies().size(), 4);
    Offer();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
}

TEST_F(LeftBehind, AFileThatWasBeingWrittenIsOfferedAsItWas)
{
    context.WriteFile(u"piece.orc"_s, "new text, cut in the mi");
    OwnStateFolder::Leave({.name = Piece().name, .replacedBy = ContentHash("new text, cut in the midst")},
                          "caf\xE9\r\nold\r\n", UnsavedCopy::Kind::Replaced);
    desktop.ExpectMessage(FileQuestion(Piece().name), BoxAnswer::Yes);
    Offer();
    EXPECT_EQ(text.text, u"caf\u00E9\nold\n"_s);
    EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
    EXPECT_EQ(document.Encoding, (TextEncoding{TextEncoding::Form::Windows1252, false}));
    EXPECT_EQ(document.OfferedName, Piece().name);
    EXPECT_EQ(FileBytes(Piece().name), "new text, cut in the mi") << "a save alone writes it";
    // What stands for it becomes a copy of the text with the first edit.
    EXPECT_EQ(OwnStateFolder::Copies(u".old"_s).size(), 1);
    Type(u"x"_s);
    documents.SecureText();
    EXPECT_EQ(OwnStateFolder::TextIn(OnlyCopy(u".open"_s)), "xcaf\u00E9\nold\n");
}

TEST_F(LeftBehind, ATextWhoseFileIsALinkInACircleIsOffered)
{
    ASSERT_EQ(::symlink("piece.orc", QFile::encodeName(Piece().name).constData()), 0);
    OwnStateFolder::Leave(Piece(), "left");
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::Yes);
    Offer();
    EXPECT_EQ(text.text, u"left"_s);
}

TEST_F(LeftBehind, ACopyThatBreaksWhileTheQuestionStandsIsToldAndKept)
{
    OwnStateFolder::Leave(Piece(), "left");
    const QString path = OnlyCopy();
    desktop.ExpectMessage(TextQuestion(Piece().name, path), BoxAnswer::Yes, [&] {
        QFile copy(path);
        EXPECT_TRUE(copy.resize(copy.size() - 1));
    });
    desktop.ExpectMessage(
        {.text = u"Unable to open "_s + path + u".\n\nIt is not whole"_s, .icon = BoxIcon::Warning});
    Offer();
    EXPECT_EQ(text.text, QString());
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
}

TEST_F(LeftBehind, AnUnwieldyLineIsAskedAbout)
{
    const qsizetype length = 8'000'001;
    const MessageBoxRequest longLine{.text = Piece().name + u" holds a line of "_s + QString::number(length) +
                                             u" characters. So long a line is not shown well up to its end, "
                                             "and keys in it take seconds. Open it?"_s,
                                     .icon = BoxIcon::Warning,
                                     .buttons = BoxButtons::YesNo,
                                     .defaultAnswer = BoxAnswer::No};
    OwnStateFolder::Leave(Piece(), QByteArray(length, 'a'));
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::Yes);
    desktop.ExpectMessage(longLine, BoxAnswer::No);
    Offer();
    EXPECT_EQ(text.text, QString());
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);

    OwnStateFolder::Leave(Piece(), QByteArray(length, 'a'));
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy(u".open"_s)), BoxAnswer::Yes);
    desktop.ExpectMessage(longLine, BoxAnswer::Yes);
    Offer();
    EXPECT_EQ(text.text.size(), length);
}

TEST_F(LeftBehind, TextsAreAskedAboutBeforeFiles)
{
    context.WriteFile(u"piece.orc"_s, "cut");
    OwnStateFolder::Leave(Piece(), "newer");
    const QString copy = OnlyCopy();
    OwnStateFolder::Leave({.name = Piece().name, .replacedBy = ContentHash("x")}, "former",
                          UnsavedCopy::Kind::Replaced);
    desktop.ExpectMessage(TextQuestion(Piece().name, copy), BoxAnswer::No);
    desktop.ExpectMessage(FileQuestion(Piece().name), BoxAnswer::No);
    Offer();
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 2);
}

TEST_F(LeftBehind, ATextWithNulBytesIsSavedByItsNameAfterAQuestion)
{
    OwnStateFolder::Leave(Piece(), QByteArray("a\0b", 3));
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::Yes);
    Offer();
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = Piece().name,
                              .fileName = u"piece.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = Piece().name});
    desktop.ExpectMessage({.text = Piece().name + u" holds NUL bytes: it may be no text. Saving it rewrites "
                                                  "its line ends. Save it?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(Piece().name), QByteArray("a\0b", 3));
}

TEST_F(LeftBehind, WhatKilledSavesHaveLeftGoes)
{
    context.WriteFile(u"piece.orc"_s, "whole");
    const QString beside = context.WriteFile(u".zelvane-abcdefgh"_s, "half");
    const QString like = context.WriteFile(u".zelvane-notes"_s, "a user's");
    OwnStateFolder::Leave(Piece(), "left");
    QFile inFolder(UnsavedCopy::Folder() + u"/.zelvane-12345678"_s);
    ASSERT_TRUE(inFolder.open(QIODevice::WriteOnly));
    inFolder.close();
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy(u".open"_s)), BoxAnswer::No);
    Offer();
    EXPECT_FALSE(QFile::exists(beside));
    EXPECT_TRUE(QFile::exists(like));
    EXPECT_EQ(OwnStateFolder::Copies().size(), 1);
}

TEST_F(LeftBehind, WhatWasKeptForItsWeekGoes)
{
    OwnStateFolder::Leave(Piece(), "left");
    desktop.ExpectMessage(TextQuestion(Piece().name, OnlyCopy()), BoxAnswer::No);
    Offer();
    constexpr qint64 hour = 60 * 60;
    desktop.now = QDateTime::currentDateTime().addSecs((7 * 24 - 1) * hour);
    Offer();
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
    desktop.now = QDateTime::currentDateTime().addSecs((7 * 24 + 1) * hour);
    Offer();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
}

TEST_F(LeftBehind, ABrokenCopyIsKeptForAPerson)
{
    OwnStateFolder::Leave(Piece(), "left");
    QFile copy(OnlyCopy());
    ASSERT_TRUE(copy.resize(copy.size() - 1));
    Offer();
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
}
