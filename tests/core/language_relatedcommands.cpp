// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/relatedcommands.h"
#include "shell/documentkeys.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr RelatedOperation Operations[] = {RelatedOperation::Open,          RelatedOperation::OpenWith,
                                           RelatedOperation::Move,          RelatedOperation::Copy,
                                           RelatedOperation::Rename,        RelatedOperation::Delete,
                                           RelatedOperation::OpenContainer, RelatedOperation::Properties};

/// The rooms for sounds and files: they write down what is asked of them.
struct Rooms : SoundStep, FileStep {
    DocumentSteps steps;
    QStringList calls;
    bool answer = true;

    void MCIopen(const QString &path) override { calls += u"play "_s + path; }
    bool ServesFiles() const override { return true; }
    void OpenWith(const QString &path) override { calls += u"with "_s + path; }
    bool RunFileOperation(FileOperation operation, const QString &path) override
    {
        calls += u"%1 %2"_s.arg(int(operation)).arg(path);
        return answer;
    }
};

/// What opens documents, with where the opening came from.
struct Openings : TestOperations {
    void OpenFile(const QString &name, OpenOrigin origin) override
    {
        calls += u"open %1 %2"_s.arg(name).arg(int(origin));
    }
};

struct RelatedCommands : testing::Test, TestContext {
    Rooms rooms;
    Openings openings;
    EditorContext withOpenings{document, text, settings, desktop, status, windows, openings};

    QStringList Opened(const QString &path)
    {
        rooms.calls.clear();
        openings.calls.clear();
        OpenRelatedFile(withOpenings, rooms.steps, path);
        return rooms.calls + openings.calls;
    }
    bool Run(RelatedOperation operation, const QString &path = u"/x y/a.orc"_s)
    {
        return RunOnRelatedFile(withOpenings, rooms.steps, operation, path);
    }
};

} // namespace

TEST_F(RelatedCommands, ASoundIsPlayedAndAllElseOpened)
{
    rooms.steps.sound.Take(rooms);
    EXPECT_EQ(Opened(u"/a.WAV"_s), QStringList{u"play /a.WAV"_s});
    for (const QString &name : {u"/a.orc"_s, u"/a.sco"_s, u"/a.csd"_s, u"/a.txt"_s, u"/wav"_s})
        EXPECT_EQ(Opened(name), QStringList{u"open %1 %2"_s.arg(name).arg(int(OpenOrigin::RelatedFiles))});
    // Of the sounds only this one is known where the list was never stored.
    EXPECT_EQ(Opened(u"/a.aif"_s).value(0), u"open /a.aif 1"_s);
    settings.SaveText(Keys::SoundExtensions, u"aif"_s);
    EXPECT_EQ(Opened(u"/a.aif"_s), QStringList{u"play /a.aif"_s});
    EXPECT_EQ(Opened(u"/a.wav"_s).value(0), u"open /a.wav 1"_s);
}

TEST_F(RelatedCommands, NothingHappensToAFileThatWasNotFound)
{
    rooms.steps.sound.Take(rooms);
    rooms.steps.files.Take(rooms);
    EXPECT_EQ(Opened({}), QStringList());
    for (const RelatedOperation operation : Operations) {
        EXPECT_FALSE(CanRunOnRelatedFile(rooms.steps, operation, {}));
        EXPECT_FALSE(Run(operation, {}));
    }
    EXPECT_EQ(rooms.calls, QStringList());
}

TEST_F(RelatedCommands, TheShellOpensAFileAndItsFolder)
{
    desktop.ExpectShellRun({.file = u"\"/x y/a.orc\""_s, .folder = u"/x y"_s});
    EXPECT_FALSE(Run(RelatedOperation::Open));
    desktop.ExpectShellRun({.file = u"\"/x y\""_s, .folder = u"/"_s});
    EXPECT_FALSE(Run(RelatedOperation::OpenContainer));
}

TEST_F(RelatedCommands, OtherRoomsWorkOnFiles)
{
    rooms.steps.files.Take(rooms);
    for (const RelatedOperation operation : Operations)
        EXPECT_TRUE(CanRunOnRelatedFile(rooms.steps, operation, u"/a.orc"_s));
    EXPECT_FALSE(Run(RelatedOperation::OpenWith));
    EXPECT_TRUE(Run(RelatedOperation::Move));
    EXPECT_TRUE(Run(RelatedOperation::Copy));
    EXPECT_TRUE(Run(RelatedOperation::Rename));
    EXPECT_TRUE(Run(RelatedOperation::Delete));
    rooms.answer = false;
    EXPECT_FALSE(Run(RelatedOperation::Properties));
    EXPECT_EQ(rooms.calls, (QStringList{u"with /x y/a.orc"_s, u"0 /x y/a.orc"_s, u"1 /x y/a.orc"_s,
                                        u"2 /x y/a.orc"_s, u"3 /x y/a.orc"_s, u"5 /x y/a.orc"_s}));
}

TEST_F(RelatedCommands, WithoutARoomForFilesTheShellIsLeft)
{
    for (const RelatedOperation operation : Operations) {
        const bool byTheShell =
            operation == RelatedOperation::Open || operation == RelatedOperation::OpenContainer;
        EXPECT_EQ(CanRunOnRelatedFile(rooms.steps, operation, u"/a.orc"_s), byTheShell);
        if (!byTheShell) {
            EXPECT_FALSE(Run(operation));
        }
    }
}

} // namespace zelvane::test
