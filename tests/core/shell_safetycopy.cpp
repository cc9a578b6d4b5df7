// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/safetycopy.h"

#include "shell/documentkeys.h"
#include "support/boxes.h"
#include "support/childprocess.h"
#include "support/lifecyclefixture.h"
#include "support/statefolder.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

struct Unsaved : LifecycleFixture {
    OwnStateFolder state;

    /// A document that was opened and then edited.
    QString OpenAndType(const QByteArray &bytes = "instr 1\r\n", const QString &typed = u";mine\n"_s)
    {
        const QString path = context.WriteFile(u"piece.orc"_s, bytes);
        documents.OpenFile(path);
        Type(typed);
        return path;
    }
    /// The one copy that is kept for its week; a test failure when there is another.
    QByteArray Kept()
    {
        documents.SecureText();
        EXPECT_EQ(OwnStateFolder::Copies().size(), 1);
        const QStringList kept = OwnStateFolder::Copies(u".kept"_s);
        return kept.size() == 1 ? OwnStateFolder::TextIn(kept.first()) : QByteArray();
    }
    /// The one copy that stands for the text in the window.
    QByteArray Standing()
    {
        documents.SecureText();
        const QStringList open = OwnStateFolder::Copies(u".open"_s);
        EXPECT_EQ(open.size(), 1);
        return open.size() == 1 ? OwnStateFolder::TextIn(open.first()) : QByteArray();
    }
    static bool Eventually(const std::function<bool()> &condition, std::chrono::milliseconds patience = 20s)
    {
        const QDeadlineTimer limit(patience);
        while (!condition() && !limit.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return condition();
    }
};

} // namespace

TEST(CopyTimes, ThreeSecondsAfterTheLastEdit)
{
    const CopyTimes::Clock::time_point start;
    CopyTimes times;
    EXPECT_FALSE(times.Due());
    times.Edited(start, 0);
    EXPECT_EQ(*times.Due(), start + 3s);
    times.Edited(start + 2s, 0);
    EXPECT_EQ(*times.Due(), start + 5s);
    times.Taken();
    EXPECT_FALSE(times.Due());
    times.Edited(start + 60s, 0);
    EXPECT_EQ(*times.Due(), start + 63s);
}

TEST(CopyTimes, WhoeverTypesOnIsNotWaitedForForLong)
{
    const CopyTimes::Clock::time_point start;
    for (const auto &[size, latest] : {std::pair(CopyTimes::Large, 6s), {CopyTimes::Large + 1, 30s}}) {
        CopyTimes times;
        for (auto passed = 0s; passed < latest; ++passed)
            times.Edited(start + passed, size);
        EXPECT_EQ(*times.Due(), start + latest);
        times.Edited(start + 100s, size);
        EXPECT_EQ(*times.Due(), start + latest)
            << "long overdue: a dialog of the desktop may have held it up";
        times.Taken();
        times.Edited(start + 101s, size);
        EXPECT_EQ(*times.Due(), start + 104s);
    }
}

TEST(CopyTimes, AFailureIsTriedAgain)
{
    const CopyTimes::Clock::time_point start;
    CopyTimes times;
    times.Failed(start);
    EXPECT_EQ(*times.Due(), start + 30s);
    times.Edited(start + 1s, 0);
    EXPECT_EQ(*times.Due(), start + 4s);
    times.Failed(start + 2s);
    EXPECT_EQ(*times.Due(), start + 4s);
}

TEST_F(Unsaved, ACopyComesSomeSecondsAfterTheLastEdit)
{
    QElapsedTimer passed;
    passed.start();
    const QString path = OpenAndType();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
    ASSERT_TRUE(Eventually([] { return OwnStateFolder::Copies(u".open"_s).size() == 1; }));
    EXPECT_GE(passed.elapsed(), 2'900);
    EXPECT_EQ(OwnStateFolder::TextIn(OwnStateFolder::Copies().first()), ";mine\ninstr 1\n");
    const QString copy = OwnStateFolder::Copies().first();
    EXPECT_TRUE(copy.endsWith(u".open"_s)) << copy.toStdString();
    EXPECT_EQ(int(QFileInfo(copy).permissions() & 0x7777), 0x6600) << "nobody else may read it";
    EXPECT_TRUE(FileBytes(copy).contains("\nName: " + path.toUtf8() + "\nKind: 1\nEncoding: UTF-8\n"));
    // Nothing more comes of it.
    const QByteArray before = FileBytes(copy);
    Type(u"more "_s);
    EXPECT_EQ(Standing(), ";mine\nmore instr 1\n");
    EXPECT_EQ(OwnStateFolder::Copies(), QStringList(copy));
    EXPECT_NE(FileBytes(copy), before);
    EXPECT_EQ(FileBytes(path), "instr 1\r\n") << "the document itself is written by saves alone";
}

TEST_F(Unsaved, ASaveTakesTheCopyAway)
{
    const QString path = OpenAndType();
    EXPECT_EQ(Standing(), ";mine\ninstr 1\n");
    documents.Save();
    documents.SecureText();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
    EXPECT_EQ(FileBytes(path), ";mine\r\ninstr 1\r\n");
    // A save that fails does not.
    Type(u"x"_s);
    documents.SecureText();
    desktop.ExpectMessage(
        {.text = u"Unable to save /no/such.orc.\n\nNo such file or directory"_s, .icon = BoxIcon::Warning});
    documents.SaveFile(u"/no/such.orc"_s);
    EXPECT_EQ(Standing(), ";mine\nxinstr 1\n");
}

TEST_F(Unsaved, ATextWithoutEditsHasNone)
{
    documents.OpenFile(context.WriteFile(u"a.orc"_s, "a"));
    documents.NewFile(FileKind::Unified, {});
    documents.OpenFile(context.WriteFile(u"b.orc"_s, "b"));
    documents.KeepUnsaved();
    documents.SecureText();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
}

TEST_F(Unsaved, TheSettingTurnsItOff)
{
    OpenAndType();
    EXPECT_TRUE(documents.SecureText());
    EXPECT_EQ(OwnStateFolder::Copies().size(), 1);
    settings.SaveFlag(Keys::SafetyCopy, false);
    Type(u"x"_s);
    EXPECT_FALSE(documents.SecureText());
    EXPECT_FALSE(documents.SecureText());
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
    documents.KeepUnsaved();
    EXPECT_TRUE(documents.SecureText()) << "there is no text that is not let go of";
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
}

// Whatever discards unsaved text, it is kept.

TEST_F(Unsaved, ANoKeepsTheText)
{
    const QString path = OpenAndType();
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    documents.OpenFile(context.WriteFile(u"other.orc"_s, "other"));
    EXPECT_EQ(text.text, u"other"_s);
    EXPECT_EQ(Kept(), ";mine\ninstr 1\n");
}

TEST_F(Unsaved, ANoBeforeANewDocumentKeepsTheText)
{
    const QString path = OpenAndType();
    documents.SecureText(); // also what the copy had already
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    view.chosenKind = FileKind::Score;
    documents.New();
    EXPECT_EQ(Kept(), ";mine\ninstr 1\n");
    // A cancelled chooser discards nothing.
    Type(u"i1"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    view.chosenKind = FileKind::Cancelled;
    documents.New();
    EXPECT_EQ(Standing(), "i1");
}

TEST_F(Unsaved, ACancelledSaveAsKeepsTheText)
{
    documents.NewFile(FileKind::Other, {});
    Type(u"only here"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Yes);
    desktop.ExpectSaveDialog({.filters = {{u"All files"_s, u"*.*"_s}}}, {});
    documents.OpenFile(context.WriteFile(u"other.orc"_s, "other"));
    EXPECT_EQ(Kept(), "only here");
    EXPECT_TRUE(QFileInfo(OwnStateFolder::Copies().first()).fileName().startsWith(u"Untitled-"_s));
}

TEST_F(Unsaved, LoadingTheLastSavedVersionKeepsTheText)
{
    const QString path = OpenAndType();
    desktop.ExpectMessage({.text = u"Load last saved version of "_s + path + u'?',
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo},
                          BoxAnswer::Yes);
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"instr 1\n"_s);
    EXPECT_EQ(Kept(), ";mine\ninstr 1\n");
}

TEST_F(Unsaved, AReloadOfAFileThatChangedKeepsTheText)
{
    const QString path = OpenAndType();
    context.WriteFile(u"piece.orc"_s, "of another");
    desktop.ExpectMessage({.text = path + u" was changed by another program. Load it again?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::Yes);
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"of another"_s);
    EXPECT_EQ(Kept(), ";mine\ninstr 1\n");
}

TEST_F(Unsaved, ALoadAfterAFailedLoadKeepsTheText)
{
    const QString path = OpenAndType();
    const QString missing = context.folder.filePath(u"missing.orc"_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    desktop.ExpectMessage({.text = u"Unable to open "_s + missing + u".\n\nNo such file or directory"_s,
                           .icon = BoxIcon::Warning});
    documents.OpenFile(missing);
    // The text is still there, and so is what stands for it.
    EXPECT_EQ(text.text, u";mine\ninstr 1\n"_s);
    EXPECT_EQ(Standing(), ";mine\ninstr 1\n");
    Type(u";later\n"_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    documents.OpenFile(context.WriteFile(u"other.orc"_s, "other"));
    EXPECT_EQ(Kept(), ";later\n;mine\ninstr 1\n");
}

TEST_F(Unsaved, WhoeverTakesTheTextAwayHimselfKeepsItFirst)
{
    OpenAndType();
    editor.operations.KeepUnsaved();
    editor.operations.KeepUnsaved(); // once is enough
    EXPECT_EQ(Kept(), ";mine\ninstr 1\n");
    // What comes then is another text.
    Type(u"x"_s);
    documents.Save();
    documents.SecureText();
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
    EXPECT_EQ(OwnStateFolder::Copies().size(), 1);
}

// The first edit after a failed load.

TEST_F(Unsaved, TheFirstEditEndsWhatAFailedLoadLeft)
{
    const QString path = context.WriteFile(u"piece.orc"_s, "instr 1\r\n");
    documents.OpenFile(path);
    const QString missing = context.folder.filePath(u"missing.orc"_s);
    desktop.ExpectMessage({.text = u"Unable to open "_s + missing + u".\n\nNo such file or directory"_s,
                           .icon = BoxIcon::Warning});
    documents.OpenFile(missing);
    EXPECT_TRUE(document.Loading);
    EXPECT_TRUE(document.Modified);
    EXPECT_FALSE(view.saveEnabled);
    view.calls.clear();
    Type(u";mine\n"_s);
    EXPECT_FALSE(document.Loading);
    EXPECT_TRUE(document.Modified);
    EXPECT_TRUE(view.saveEnabled);
    EXPECT_TRUE(view.caption.contains(path + u'*')) << view.caption.toStdString();
    EXPECT_EQ(Standing(), ";mine\ninstr 1\n");
}

TEST_F(Unsaved, AnotherLoadAfterAFailedOneIsNoEdit)
{
    const QString path = context.WriteFile(u"piece.orc"_s, "instr 1\r\n");
    documents.OpenFile(path);
    const QString missing = context.folder.filePath(u"missing.orc"_s);
    desktop.ExpectMessage({.text = u"Unable to open "_s + missing + u".\n\nNo such file or directory"_s,
                           .icon = BoxIcon::Warning});
    documents.OpenFile(missing);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    documents.OpenFile(context.WriteFile(u"other.orc"_s, "other"));
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(document.Modified);
    documents.SecureText();
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty()) << "nothing was typed";
}

// What goes wrong disturbs nobody.

TEST_F(Unsaved, WhatIsTypedBehindAFailureIsTriedAsSoonAsAnyOther)
{
    QFile obstacle(state.Path() + u"/zelvane"_s);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    Type(u"a"_s);
    documents.SecureText();
    ASSERT_TRUE(Eventually([&] { return !status.text.isEmpty(); }));
    status.text.clear();
    ASSERT_TRUE(obstacle.remove());
    Type(u"b"_s);
    // Without a key the next try comes after half a minute.
    EXPECT_TRUE(Eventually([] { return !OwnStateFolder::Copies(u".open"_s).isEmpty(); }));
    EXPECT_EQ(status.text, QString());
}

TEST_F(Unsaved, AStateFolderThatTakesNothingIsToldAfterEachTry)
{
    QFile obstacle(state.Path() + u"/zelvane"_s);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    Type(u"a"_s);
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_TRUE(status.text.startsWith(u"No copy of the unsaved text can be kept: "_s))
        << status.text.toStdString();
    status.text.clear();
    Type(u"b"_s);
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_EQ(status.text, u"No copy of the unsaved text can be kept: Not a directory"_s) << "told again";
    status.text.clear();

    ASSERT_TRUE(obstacle.remove());
    Type(u"c"_s);
    EXPECT_EQ(Standing(), "abc");
    QCoreApplication::processEvents();
    EXPECT_EQ(status.text, QString()) << "it is kept now";
    ASSERT_TRUE(QDir(state.Path() + u"/zelvane"_s).removeRecursively());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    Type(u"d"_s);
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_NE(status.text, QString()) << "another failure";
    documents.NewFile(FileKind::Other, {}); // nothing can be kept, and nobody is kept from going on
    documents.SecureText();
    EXPECT_EQ(text.text, QString());
    QCoreApplication::processEvents();
    EXPECT_TRUE(status.text.startsWith(u"No copy of the unsaved text can be kept: "_s)) << "it is gone now";
    status.text.clear();
    // A text that comes too late for a copy to be tried before it goes.
    Type(u"e"_s);
    documents.NewFile(FileKind::Other, {});
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_TRUE(status.text.startsWith(u"No copy of the unsaved text can be kept: "_s));
    // One that went into its file lost nothing.
    Type(u"f"_s);
    documents.SecureText();
    QCoreApplication::processEvents();
    documents.SaveFile(context.folder.filePath(u"f.txt"_s));
    status.text.clear();
    documents.NewFile(FileKind::Other, {});
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_EQ(status.text, QString());
}

TEST_F(Unsaved, TheReasonIsThatOfTheFolderThatCannotBeMade)
{
    const char *const nowhere = "/sys/zelvane";
    ASSERT_NE(::mkdir(nowhere, 0700), 0);
    const QString reason = QString::fromLocal8Bit(std::strerror(errno));
    qputenv("XDG_STATE_HOME", nowhere);
    Type(u"a"_s);
    documents.SecureText();
    QCoreApplication::processEvents();
    EXPECT_EQ(status.text, u"No copy of the unsaved text can be kept: "_s + reason);
}

TEST_F(Unsaved, AFullDiskLeavesTheFormerCopy)
{
    EXPECT_TRUE(WithFileSizeLimit(10'000, [this] {
        Type(u"short"_s);
        EXPECT_EQ(Standing(), "short");
        EXPECT_TRUE(documents.SecureText());
        Type(QString(20'000, u'x'));
        EXPECT_FALSE(documents.SecureText());
        EXPECT_EQ(Standing(), "short");
        QCoreApplication::processEvents();
        EXPECT_TRUE(status.text.startsWith(u"No copy of the unsaved text can be kept: "_s));
        documents.KeepUnsaved();
        EXPECT_EQ(Kept(), "short");
    }));
}

TEST(SafetyCopy, MemoryThatDoesNotSufficeIsToldAfterEachTry)
{
    struct NoRoom : StringBuffer {
        QByteArray Utf8() const override { throw std::bad_alloc(); }
    };
    const OwnStateFolder state;
    TestContext context;
    const NoRoom text;
    SafetyCopy copy(context.document, text, context.settings, context.status);
    copy.Edited();
    EXPECT_FALSE(copy.Finish());
    copy.Edited();
    EXPECT_FALSE(copy.Finish());
    const QString told = u"No copy of the unsaved text can be kept: Out of memory"_s;
    EXPECT_EQ(context.status.shown, QStringList({told, told}));
    copy.Discarded();
    QCoreApplication::processEvents();
    EXPECT_EQ(context.status.shown, QStringList({told, told, told})) << "it is gone now";
    copy.Discarded();
    QCoreApplication::processEvents();
    EXPECT_EQ(context.status.shown.size(), 3);
    EXPECT_TRUE(OwnStateFolder::Copies().isEmpty());
}
