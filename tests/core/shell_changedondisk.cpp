// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/changedondisk.h"

#include "platform/nativefile.h"
#include "support/boxes.h"
#include "support/childprocess.h"
#include "support/lifecyclefixture.h"

#include <fcntl.h>
#include <functional>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

using test::SaveChanges;

MessageBoxRequest Question(const QString &text, BoxAnswer byDefault)
{
    return {.text = text, .icon = BoxIcon::Warning, .buttons = BoxButtons::YesNo, .defaultAnswer = byDefault};
}

struct OnDisk : test::LifecycleFixture {
    QString path = context.WriteFile(QStringLiteral("piece.orc"), "one\r\n");

    OnDisk() { documents.OpenFile(path); }

    /// Another program writes the file, in place.
    void Write(const QByteArray &bytes) { context.WriteFile(QStringLiteral("piece.orc"), bytes); }
    /// Another program writes a second file and renames it over this one.
    void Replace(const QByteArray &bytes)
    {
        const QString beside = context.WriteFile(QStringLiteral("beside"), bytes);
        EXPECT_EQ(rename(QFile::encodeName(beside).constData(), QFile::encodeName(path).constData()), 0);
    }
    void SetTime(time_t seconds)
    {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        EXPECT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    }
    void ExpectLoad(BoxAnswer byDefault, BoxAnswer answer, std::function<void()> during = {})
    {
        desktop.ExpectMessage(
            Question(path + u" was changed by another program. Load it again?"_s, byDefault), answer,
            std::move(during));
    }
    void ExpectSaveOver(BoxAnswer answer, std::function<void()> during = {})
    {
        desktop.ExpectMessage(
            Question(path + u" was changed by another program. Save over it?"_s, BoxAnswer::No), answer,
            std::move(during));
    }
    void ExpectWriteAgain(BoxAnswer answer)
    {
        desktop.ExpectMessage(Question(path + u" is not there any more. Write it again?"_s, BoxAnswer::Yes),
                              answer);
    }
    void ExpectAnotherName(const QString &name, BoxAnswer answer)
    {
        desktop.ExpectMessage(Question(u"The folder of "_s + name +
                                           u" is not there any more. Save the text under another name?"_s,
                                       BoxAnswer::Yes),
                              answer);
    }
    void Save(const QString &typed = u";"_s)
    {
        Type(typed);
        documents.Save();
    }
};

TEST_F(OnDisk, TheProgramsOwnSavesAskNothing)
{
    for (int i = 0; i < 3; ++i) {
        documents.WindowActivated();
        Save();
    }
    EXPECT_EQ(FileBytes(path), ";;;one\r\n"_ba);
}

TEST_F(OnDisk, AnUnchangedTextIsLoadedAgain)
{
    Write("two\r\n");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::Yes);
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"two\n"_s);
    EXPECT_FALSE(document.Modified);
    documents.WindowActivated();
    Save();
    EXPECT_EQ(FileBytes(path), ";two\r\n"_ba);
}

TEST_F(OnDisk, AChangedTextIsLoadedAgainOnYesWithoutASecondQuestion)
{
    Type(u";mine"_s);
    Replace("two\r\n");
    ExpectLoad(BoxAnswer::No, BoxAnswer::Yes);
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"two\n"_s);
}

TEST_F(OnDisk, NoIsLeaveToSaveOverThatStateAndNoOther)
{
    Write("two\r\n");
    Type(u";mine "_s);
    ExpectLoad(BoxAnswer::No, BoxAnswer::No);
    documents.WindowActivated();
    documents.WindowActivated();
    SetTime(1000); // the same bytes
    documents.WindowActivated();
    Save();
    EXPECT_EQ(FileBytes(path), ";mine ;one\r\n"_ba);

    Write("three");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::No);
    documents.WindowActivated();
    Write("four!");
    Type(u";"_s);
    ExpectSaveOver(BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "four!"_ba);
}

TEST_F(OnDisk, EachStateIsAskedAboutOnce)
{
    Write("two\r\n");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::No);
    documents.WindowActivated();
    Write("one\r\n"); // as it was
    documents.WindowActivated();
    Write("two\r\n");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::No);
    documents.WindowActivated();
    Replace("three\r\n");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::Yes);
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"three\n"_s);
}

TEST_F(OnDisk, ASaveAsksEachTime)
{
    Write("two\r\n");
    Type(u";mine "_s);
    for (int i = 0; i < 2; ++i) {
        ExpectSaveOver(BoxAnswer::No);
        documents.Save();
        EXPECT_EQ(FileBytes(path), "two\r\n"_ba);
        EXPECT_TRUE(document.Modified);
        documents.WindowActivated(); // it has just been asked about
    }
    // Nor does a close lose the text.
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::Yes);
    ExpectSaveOver(BoxAnswer::No);
    EXPECT_FALSE(documents.QuerySave());
    ExpectSaveOver(BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), ";mine one\r\n"_ba);
    Save();
}

TEST_F(OnDisk, WhatIsWrittenWhileTheQuestionStandsIsAskedAboutToo)
{
    Write("two\r\n");
    Type(u";mine "_s);
    ExpectSaveOver(BoxAnswer::Yes, [this] { Write("three"); });
    ExpectSaveOver(BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "three"_ba);
    ExpectSaveOver(BoxAnswer::Yes, [this] { ASSERT_TRUE(QFile::remove(path)); });
    ExpectWriteAgain(BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), ";mine one\r\n"_ba);

    // So it is at the question whether to load it.
    Write("four");
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::No, [this] { Write("five"); });
    documents.WindowActivated();
    Type(u";"_s);
    ExpectSaveOver(BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "five"_ba);
    Write("six");
    ExpectLoad(BoxAnswer::No, BoxAnswer::Yes, [this] { Write("seven"); });
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"seven"_s);
}

TEST_F(OnDisk, AProgramThatWritesWithoutAPauseIsNotWrittenOver)
{
    int writings = 0;
    const auto write = [&] { Write(QByteArray::number(++writings)); };
    write();
    Type(u";mine "_s);
    for (int i = 0; i < 3; ++i)
        ExpectSaveOver(BoxAnswer::Yes, write);
    desktop.ExpectMessage(
        {.text = u"Unable to save "_s + path + u".\n\nAnother program writes it again and again"_s,
         .icon = BoxIcon::Warning});
    documents.Save();
    EXPECT_EQ(FileBytes(path), "4"_ba);
    EXPECT_TRUE(document.Modified);
    // It has come to rest.
    ExpectSaveOver(BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), ";mine one\r\n"_ba);
}

TEST_F(OnDisk, TheDiskIsLookedAtAfterAllOtherQuestions)
{
    context.WriteFile(u"piece.orc"_s, QByteArray("a\0b", 3));
    documents.OpenFile(path);
    Type(u";"_s);
    desktop.ExpectMessage(Question(path + u" holds NUL bytes: it may be no text. Saving it rewrites its line "
                                          "ends. Save it?"_s,
                                   BoxAnswer::No),
                          BoxAnswer::Yes, [this] { Write("of another"); });
    ExpectSaveOver(BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "of another"_ba);
}

TEST_F(OnDisk, TheSameBytesAskNothing)
{
    SetTime(2000);
    documents.WindowActivated();
    Write("one\r\n");
    documents.WindowActivated();
    Replace("one\r\n");
    documents.WindowActivated();
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0600), 0);
    Save();
    EXPECT_EQ(FileBytes(path), ";one\r\n"_ba);
}

TEST_F(OnDisk, OtherBytesOfTheSameSizeAndTimeAreFound)
{
    SetTime(3000);
    documents.WindowActivated(); // the state with that time has been looked at
    Write("two\r\n");
    SetTime(3000);
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::No);
    documents.WindowActivated();
}

TEST_F(OnDisk, AWritingInTheSameMomentIsFound)
{
    Save();
    // Faster than the clocks of files tick.
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        Write(QByteArray(1, letter) + "one\r\n");
        Type(u"x"_s);
        ExpectSaveOver(BoxAnswer::Yes);
        documents.Save();
        Write(FileBytes(path));
    }
}

TEST_F(OnDisk, AVanishedFileAsksBeforeItIsMadeAgain)
{
    ASSERT_TRUE(QFile::remove(path));
    documents.WindowActivated(); // there is nothing to load
    Type(u";"_s);
    ExpectWriteAgain(BoxAnswer::No);
    documents.Save();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(document.Modified);
    ExpectWriteAgain(BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), ";one\r\n"_ba);

    // Away for a moment, as some programs write, is no change.
    ASSERT_TRUE(QFile::remove(path));
    documents.WindowActivated();
    Write(";one\r\n");
    documents.WindowActivated();
    Save();
}

TEST_F(OnDisk, ATextWhoseFolderIsGoneIsOfferedAnotherName)
{
    QDir folder(context.folder.path());
    ASSERT_TRUE(folder.mkdir(u"disk"_s));
    const QString gone = context.WriteFile(u"disk/lost.orc"_s, "one\r\n");
    documents.OpenFile(gone);
    Type(u";"_s);
    ASSERT_TRUE(QDir(folder.filePath(u"disk"_s)).removeRecursively());
    documents.WindowActivated(); // there is nothing to load

    const FileDialogRequest dialog{.filters = {{u"Orchestra"_s, u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                                   .folder = gone,
                                   .fileName = u"lost.orc"_s,
                                   .defaultExtension = u"orc"_s};
    const auto expectUnsaved = [&] {
        EXPECT_EQ(document.CurrentFile, gone);
        EXPECT_TRUE(document.Modified);
        EXPECT_EQ(text.text, u";one\n"_s);
        desktop.CheckAllCame();
    };
    ExpectAnotherName(gone, BoxAnswer::No);
    documents.Save();
    expectUnsaved();
    // Nor does Cancel discard the text at a close.
    desktop.ExpectMessage(SaveChanges(gone), BoxAnswer::Yes);
    ExpectAnotherName(gone, BoxAnswer::Yes);
    desktop.ExpectSaveDialog(dialog, {});
    EXPECT_FALSE(documents.QuerySave());
    expectUnsaved();
    // It is asked again and again.
    ExpectAnotherName(gone, BoxAnswer::Yes);
    desktop.ExpectSaveDialog(dialog, {.path = folder.filePath(u"found.orc"_s)});
    documents.Save();
    EXPECT_EQ(FileBytes(folder.filePath(u"found.orc"_s)), ";one\r\n"_ba);
    EXPECT_EQ(document.CurrentFile, folder.filePath(u"found.orc"_s));
    EXPECT_FALSE(document.Modified);
    Type(u";"_s);
    documents.Save();
    EXPECT_EQ(FileBytes(folder.filePath(u"found.orc"_s)), ";;one\r\n"_ba);
}

TEST_F(OnDisk, ANewDocumentDoesNotTakeTheNameOfAFile)
{
    documents.NewFile(FileKind::Orchestra, path);
    documents.WindowActivated();
    text.ReplaceSelection(u"mine"_s);
    const MessageBoxRequest question = Question(path + u" exists already. Save over it?"_s, BoxAnswer::No);
    desktop.ExpectMessage(question, BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "one\r\n"_ba);
    desktop.ExpectMessage(question, BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "mine"_ba);
    Save();

    documents.NewFile(FileKind::Orchestra, context.folder.filePath(u"fresh.orc"_s));
    Save();
    EXPECT_EQ(FileBytes(context.folder.filePath(u"fresh.orc"_s)), ";"_ba);
}

TEST_F(OnDisk, ANameThatTheDialogAskedAboutIsNotAskedAboutAgain)
{
    Write("two\r\n");
    const QString other = context.WriteFile(u"other.orc"_s, "there");
    documents.SaveFile(other);
    EXPECT_EQ(FileBytes(other), "one\r\n"_ba);
    documents.WindowActivated(); // the first file is none of the document's any more
    Save();
}

TEST_F(OnDisk, UnnamedTextsAreLeftAlone)
{
    documents.NewFile(FileKind::Other, {});
    Write("two\r\n");
    documents.WindowActivated();
}

TEST_F(OnDisk, AFailedReloadIsToldAndAsksNoMore)
{
    ASSERT_EQ(rename(QFile::encodeName(path).constData(), QFile::encodeName(path + u"~"_s).constData()), 0);
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    ExpectLoad(BoxAnswer::Yes, BoxAnswer::Yes);
    desktop.ExpectMessage({.text = u"Unable to open "_s + path + u".\n\nIt is a named pipe, not a file"_s,
                           .icon = BoxIcon::Warning});
    documents.WindowActivated();
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"one\n"_s);
}

TEST(ChangedOnDisk, ASettledFileIsNotReadAgain)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"x"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("abc");
    file.close();
    DiskPicture picture = DiskPicture::Of("another content", *StampOf(path));
    EXPECT_FALSE(picture.settled); // just written
    ChangedOnDisk disk;
    disk.Remember(path, picture);
    EXPECT_TRUE(disk.AskToSave());
    picture.settled = true;
    disk.Remember(path, picture);
    EXPECT_FALSE(disk.AskToSave()); // by its stamp it is what it was
}

TEST(ChangedOnDisk, AFileThatThereIsNoMemoryForIsLookedAtByItsStamp)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "takes its memory in another way";
#endif
    QTemporaryDir folder;
    const QString path = folder.filePath(u"large"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(900'000'000)); // of holes
    file.close();
    EXPECT_TRUE(test::ChildSucceeded(test::StartChild([&] {
        const rlimit limit = {800'000'000, 800'000'000};
        ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
        ChangedOnDisk disk;
        disk.Remember(path, DiskPicture::Of("as it was read", *StampOf(path)));
        for (int i = 0; i < 2; ++i) {
            EXPECT_FALSE(disk.AskToLoad());
            EXPECT_FALSE(disk.AskToSave());
        }
        ASSERT_TRUE(file.resize(900'000'001));
        EXPECT_TRUE(disk.AskToLoad());
        EXPECT_FALSE(disk.AskToLoad());
        EXPECT_TRUE(disk.AskToSave());
    })));
}

TEST(ChangedOnDisk, ATimeThatWasSetBackSettlesNothing)
{
    const qint64 second = 1'000'000'000;
    const qint64 now = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
    EXPECT_TRUE(IsSettled({.modified = now - 9 * second, .changed = now - 9 * second}));
    EXPECT_FALSE(IsSettled({.modified = now - 9 * second, .changed = now}));
    EXPECT_FALSE(IsSettled({.modified = now, .changed = now - 9 * second}));
}

} // namespace
