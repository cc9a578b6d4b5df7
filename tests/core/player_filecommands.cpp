// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/parameters.h"
#include "platform/unsavedcopy.h"
#include "player/filecommands.h"
#include "player/fileproperties.h"
#include "player/playerkeys.h"
#include "shell/documentkeys.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"
#include "support/scriptedfileoperations.h"
#include "support/statefolder.h"

#include <cerrno>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

constexpr FileOperation AllOperations[] = {FileOperation::Move, FileOperation::Copy, FileOperation::Rename,
                                           FileOperation::Delete, FileOperation::Properties};

struct ShownProperties : FileWindows {
    QStringList paths;
    void ShowProperties(const QString &path) override { paths.append(path); }
};

struct FileCommandsTest : LifecycleFixture {
    OwnStateFolder state;
    ScriptedFileOperations files;
    ShownProperties windows;
    FileCommands commands{editor, documents, files, windows};
    QString folder = context.folder.path();
    int stops = 0;
    std::function<void()> stop = [this] { ++stops; };

    QString Path(const QString &name) const { return folder + u'/' + name; }

    /// A document that is opened.
    QString Open(const QString &name, const QByteArray &bytes = "instr 1\r\nendin\r\n")
    {
        const QString path = context.WriteFile(name, bytes);
        documents.OpenFile(path);
        EXPECT_EQ(document.CurrentFile, path);
        return path;
    }
    void ExpectTarget(const QString &title, const QString &start, const QString &name, const QString &answer)
    {
        desktop.ExpectSaveDialog(
            {.title = title, .folder = start, .fileName = name, .overwritePrompt = false}, {.path = answer});
    }
    void ExpectNewName(const QString &name, std::optional<QString> answer)
    {
        desktop.ExpectInput(u"Rename"_s, u"Rename '"_s + name + u"' to:"_s, std::move(answer));
    }
    static MessageBoxRequest OpenNew()
    {
        return {.text = u"Do you want to open the new file?"_s,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNo};
    }
    /// A changed document is moved, and the user answers whether it is to be saved. @return its new path
    QString MoveChanged(const QString &name, BoxAnswer answer)
    {
        const QString path = Open(u"a.orc"_s, "old\r\n");
        Type(u"new "_s);
        const QString target = Path(name);
        EXPECT_TRUE(QFile::rename(path, target)); // what the operation is to have done
        ExpectTarget(u"Move to"_s, folder, u"a.orc"_s, target);
        desktop.ExpectMessage(SaveChanges(target), answer);
        commands.mnuFSO(FileOperation::Move);
        desktop.CheckAllCame();
        return target;
    }
    /// The texts that are kept for a week.
    static QStringList KeptTexts()
    {
        QStringList texts;
        for (const QString &path : OwnStateFolder::Copies(u".kept"_s))
            texts.append(QString::fromUtf8(OwnStateFolder::TextIn(path)));
        return texts;
    }
};

} // namespace

TEST_F(FileCommandsTest, NothingHappensWithoutAPath)
{
    for (const FileOperation operation : AllOperations) {
        commands.mnuFSO(operation);
        commands.mnuSSO(operation, {}, stop);
        EXPECT_FALSE(commands.RunFileOperation(operation, {}));
    }
    commands.mnuOpenWith();
    commands.mnuSearchFiles();
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(windows.paths, QStringList());
    EXPECT_EQ(stops, 0);
}

TEST_F(FileCommandsTest, MovedDocumentIsOpenedFromItsNewPlace)
{
    const QString path = Open(u"a.orc"_s);
    const QString target = context.WriteFile(u"b.sco"_s, "i1 0 1\r\n"); // what the operation is to have moved
    ExpectTarget(u"Move to"_s, folder, u"a.orc"_s, target);
    commands.mnuFSO(FileOperation::Move);
    EXPECT_EQ(files.calls, QStringList({u"move "_s + path + u" > "_s + target}));
    EXPECT_EQ(document.CurrentFile, target);
    EXPECT_EQ(document.DocumentKind, FileKind::Score);
    EXPECT_EQ(text.Text(), u"i1 0 1\n"_s);
    EXPECT_EQ(settings.Text(Keys::CopyTo), folder);
    EXPECT_EQ(settings.GetSetting(Sections::RecentFiles, u"1"_s), target);
}

TEST_F(FileCommandsTest, CancelledOrFailedMoveChangesNothing)
{
    const QString path = Open(u"a.orc"_s);
    settings.SaveText(Keys::CopyTo, u"/kept"_s);
    ExpectTarget(u"Move to"_s, u"/kept"_s, u"a.orc"_s, {});
    commands.mnuFSO(FileOperation::Move);
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(settings.Text(Keys::CopyTo), u"/kept"_s);

    files.answers = {false};
    ExpectTarget(u"Move to"_s, u"/kept"_s, u"a.orc"_s, Path(u"sub/a.orc"_s));
    commands.mnuFSO(FileOperation::Move);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(settings.Text(Keys::CopyTo), Path(u"sub"_s));
}

TEST_F(FileCommandsTest, CtrlPicksAFolder)
{
    const QString path = Open(u"a.orc"_s);
    ASSERT_TRUE(QDir(folder).mkdir(u"sub"_s));
    desktop.keysDown = {KeyCode::Ctrl};
    desktop.ExpectBrowseFolder(u"Pick a target folder."_s, folder, {});
    commands.mnuFSO(FileOperation::Copy);
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(settings.Text(Keys::CopyTo), QString());

    desktop.ExpectBrowseFolder(u"Pick a target folder."_s, folder, Path(u"sub/"_s));
    desktop.ExpectMessage(OpenNew(), BoxAnswer::No);
    commands.mnuFSO(FileOperation::Copy);
    EXPECT_EQ(files.calls, QStringList({u"copy "_s + path + u" > "_s + Path(u"sub/a.orc"_s)}));
    EXPECT_EQ(settings.Text(Keys::CopyTo), Path(u"sub"_s));
    files.calls.clear();
    desktop.ExpectBrowseFolder(u"Pick a target folder."_s, Path(u"sub"_s), u"/"_s);
    desktop.ExpectMessage(OpenNew(), BoxAnswer::No);
    commands.mnuFSO(FileOperation::Copy);
    EXPECT_EQ(files.calls, QStringList({u"copy "_s + path + u" > /a.orc"_s}));
    EXPECT_EQ(settings.Text(Keys::CopyTo), u"/"_s);
}

TEST_F(FileCommandsTest, CopyOfTheDocumentIsOpenedWhenTheUserSaysSo)
{
    const QString path = Open(u"a.orc"_s);
    const QString target = context.WriteFile(u"b.orc"_s, "copy\r\n");
    ExpectTarget(u"Copy to"_s, folder, u"a.orc"_s, target);
    desktop.ExpectMessage(OpenNew(), BoxAnswer::No);
    commands.mnuFSO(FileOperation::Copy);
    EXPECT_EQ(files.calls, QStringList({u"copy "_s + path + u" > "_s + target}));
    EXPECT_EQ(document.CurrentFile, path);

    ExpectTarget(u"Copy to"_s, folder, u"a.orc"_s, target);
    desktop.ExpectMessage(OpenNew(), BoxAnswer::Yes);
    commands.mnuFSO(FileOperation::Copy);
    EXPECT_EQ(document.CurrentFile, target);
    EXPECT_EQ(text.Text(), u"copy\n"_s);

    // A failure asks nothing more.
    files.answers = {false};
    ExpectTarget(u"Copy to"_s, folder, u"b.orc"_s, path);
    commands.mnuFSO(FileOperation::Copy);
}

TEST_F(FileCommandsTest, RenamedDocumentIsOpenedByItsNewName)
{
    const QString path = Open(u"a.orc"_s);
    const QString target = context.WriteFile(u"new name.orc"_s, "new\r\n");
    ExpectNewName(u"a.orc"_s, u"new name.orc"_s);
    commands.mnuFSO(FileOperation::Rename);
    EXPECT_EQ(files.calls, QStringList({u"rename "_s + path + u" > new name.orc"_s}));
    EXPECT_EQ(document.CurrentFile, target);
    EXPECT_EQ(text.Text(), u"new\n"_s);
}

TEST_F(FileCommandsTest, NoNewNameRenamesNothing)
{
    Open(u"a.orc"_s);
    for (const std::optional<QString> &answer :
         {std::optional<QString>(), std::optional(u""_s), std::optional(QString(261, u'x')),
          std::optional(u"a.orc"_s), std::optional(u"A.ORC"_s)}) {
        ExpectNewName(u"a.orc"_s, answer);
        commands.mnuFSO(FileOperation::Rename);
    }
    EXPECT_EQ(files.calls, QStringList());
    files.answers = {false};
    ExpectNewName(u"a.orc"_s, QString(260, u'x'));
    commands.mnuFSO(FileOperation::Rename);
    EXPECT_EQ(files.calls.size(), 1);
    EXPECT_EQ(document.CurrentFile, Path(u"a.orc"_s));
}

TEST_F(FileCommandsTest, BackslashInANameIsNoSeparator)
{
    const QString path = Open(u"a\\b.orc"_s);
    const QString target = context.WriteFile(u"c.orc"_s, "x");
    ExpectNewName(u"a\\b.orc"_s, u"c.orc"_s);
    commands.mnuFSO(FileOperation::Rename);
    EXPECT_EQ(files.calls, QStringList({u"rename "_s + path + u" > c.orc"_s}));
    EXPECT_EQ(document.CurrentFile, target);
}

// A changed document that moves

TEST_F(FileCommandsTest, ChangedDocumentIsSavedToItsNewPlace)
{
    const QString target = MoveChanged(u"b.orc"_s, BoxAnswer::Yes);
    EXPECT_EQ(FileBytes(target), "new old\r\n");
    EXPECT_FALSE(QFileInfo::exists(Path(u"a.orc"_s)));
    EXPECT_EQ(document.CurrentFile, target);
    EXPECT_EQ(text.Text(), u"new old\n"_s);
    EXPECT_FALSE(document.Modified);
}

TEST_F(FileCommandsTest, ChangesThatAreNotSavedToTheNewPlaceAreKept)
{
    const QString target = MoveChanged(u"b.orc"_s, BoxAnswer::No);
    EXPECT_EQ(FileBytes(target), "old\r\n");
    EXPECT_EQ(text.Text(), u"old\n"_s);
    EXPECT_FALSE(document.Modified);
    documents.SecureText(); // waits for the disk
    EXPECT_EQ(KeptTexts(), QStringList({u"new old\n"_s}));
}

TEST_F(FileCommandsTest, ChangedDocumentGoesOnUnderItsNewNameAfterACancel)
{
    const QString target = MoveChanged(u"b.sco"_s, BoxAnswer::Cancel);
    EXPECT_EQ(document.CurrentFile, target);
    EXPECT_EQ(document.DocumentKind, FileKind::Score);
    EXPECT_TRUE(document.Modified);
    EXPECT_EQ(text.Text(), u"new old\n"_s);
    // Nobody else has changed the file: nothing is asked.
    documents.WindowActivated();
    documents.Save();
    desktop.CheckAllCame();
    EXPECT_EQ(FileBytes(target), "new old\r\n");
    EXPECT_FALSE(QFileInfo::exists(Path(u"a.orc"_s)));
}

TEST_F(FileCommandsTest, MovedDocumentThatCannotBeReadHasItsNewNameEverywhere)
{
    for (const bool changed : {false, true}) {
        Open(u"a.orc"_s, "old\r\n");
        if (changed)
            Type(u"new "_s);
        const QString target = Path(changed ? u"c.sco"_s : u"b.sco"_s); // another program has taken it away
        ExpectTarget(u"Move to"_s, folder, u"a.orc"_s, target);
        settings.SaveText(Keys::CopyTo, {});
        if (changed)
            desktop.ExpectMessage(SaveChanges(target), BoxAnswer::No);
        desktop.ExpectMessage({.text = u"Unable to open "_s + target + u".\n\n"_s +
                                       QString::fromLocal8Bit(std::strerror(ENOENT)),
                               .icon = BoxIcon::Warning});
        commands.mnuFSO(FileOperation::Move);
        desktop.CheckAllCame();
        EXPECT_EQ(document.CurrentFile, target);
        EXPECT_EQ(document.DocumentKind, FileKind::Score);
        EXPECT_EQ(view.caption, u"Zelvane - "_s + target + (changed ? u"* (Score)"_s : u" (Score)"_s));
        EXPECT_EQ(settings.GetSetting(Sections::RecentFiles, u"1"_s), target);
        EXPECT_EQ(text.Text(), changed ? u"new old\n"_s : u"old\n"_s);
        document.Modified = false;
    }
}

// Delete

TEST_F(FileCommandsTest, DeletedDocumentLeavesANewOne)
{
    const QString path = Open(u"a.orc"_s);
    commands.mnuFSO(FileOperation::Delete);
    EXPECT_EQ(files.calls, QStringList({u"trash "_s + path}));
    EXPECT_EQ(document.CurrentFile, QString());
    EXPECT_EQ(document.DocumentKind, FileKind::Other);
    EXPECT_EQ(text.Text(), QString());
    EXPECT_FALSE(document.Modified);
    documents.SecureText();
    EXPECT_EQ(KeptTexts(), QStringList());
}

TEST_F(FileCommandsTest, ShiftDeletesForGood)
{
    const QString path = Open(u"a.orc"_s);
    desktop.keysDown = {KeyCode::Shift};
    commands.mnuFSO(FileOperation::Delete);
    commands.mnuSSO(FileOperation::Delete, u"/x.wav"_s, stop);
    EXPECT_EQ(files.calls, QStringList({u"delete "_s + path, u"delete /x.wav"_s}));
}

TEST_F(FileCommandsTest, DocumentThatWasNotDeletedStays)
{
    const QString path = Open(u"a.orc"_s);
    Type(u"new "_s);
    files.answers = {false};
    commands.mnuFSO(FileOperation::Delete);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_TRUE(document.Modified);
    EXPECT_TRUE(text.Text().startsWith(u"new "_s));
}

TEST_F(FileCommandsTest, UnsavedTextOfADeletedDocumentIsKept)
{
    const QString path = Open(u"a.orc"_s, "old\r\n");
    Type(u"new "_s);
    commands.mnuFSO(FileOperation::Delete);
    EXPECT_EQ(text.Text(), QString());
    documents.SecureText();
    EXPECT_EQ(KeptTexts(), QStringList({u"new old\n"_s}));
    EXPECT_EQ(files.calls, QStringList({u"trash "_s + path}));
}

TEST_F(FileCommandsTest, UnsavedTextWithoutACopyIsAskedAbout)
{
    const QString path = Open(u"a.orc"_s, "old\r\n");
    settings.SaveFlag(Keys::SafetyCopy, false);
    Type(u"new "_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::Cancel);
    commands.mnuFSO(FileOperation::Delete);
    EXPECT_EQ(files.calls, QStringList());
    EXPECT_EQ(text.Text(), u"new old\n"_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    commands.mnuFSO(FileOperation::Delete);
    EXPECT_EQ(files.calls, QStringList({u"trash "_s + path}));
    EXPECT_EQ(text.Text(), QString());
}

// The desktop's own windows

TEST_F(FileCommandsTest, PropertiesComeFromTheDesktopOrFromABoxOfOurs)
{
    const QString path = Open(u"a b.orc"_s);
    const ShellRequest request{.verb = u"properties"_s, .file = QuoteFile(path)};
    desktop.ExpectShellRun(request);
    commands.mnuFSO(FileOperation::Properties);
    EXPECT_EQ(windows.paths, QStringList());
    desktop.ExpectShellRun(request, ShellFailure);
    commands.mnuFSO(FileOperation::Properties);
    EXPECT_EQ(windows.paths, QStringList({path}));
    desktop.ExpectShellRun({.verb = u"properties"_s, .file = u"/x.wav"_s}, 2);
    commands.mnuSSO(FileOperation::Properties, u"/x.wav"_s, stop);
    EXPECT_EQ(windows.paths, QStringList({path, u"/x.wav"_s}));
    EXPECT_EQ(stops, 0);
}

TEST_F(FileCommandsTest, OpenWithAndFindTellTheirFailure)
{
    const QString path = Open(u"a b.orc"_s);
    const ShellRequest open{.verb = u"openas"_s, .file = QuoteFile(path)};
    const ShellRequest find{.verb = u"find"_s, .file = QuoteFile(folder)};
    desktop.ExpectShellRun(open, ShellFailure + 1);
    commands.mnuOpenWith();
    desktop.ExpectShellRun(open, ShellFailure);
    desktop.ExpectMessage({.text = u"Cannot run 'Open with...' dialog box."_s, .icon = BoxIcon::Warning});
    commands.mnuOpenWith();
    desktop.ExpectShellRun(find, ShellFailure + 1);
    commands.mnuSearchFiles();
    desktop.ExpectShellRun(find, ShellFailure);
    desktop.ExpectMessage({.text = u"Cannot find files in this folder."_s, .icon = BoxIcon::Warning});
    commands.mnuSearchFiles();
}

// Sounds

TEST_F(FileCommandsTest, SoundIsClosedBeforeItsFileIsTouched)
{
    const QString path = Open(u"a.orc"_s);
    const QString sound = u"/sounds/x.wav"_s;
    const auto stopped = [&] { files.calls.append(u"stop"_s); };
    ExpectTarget(u"Move to"_s, u"/sounds"_s, u"x.wav"_s, u"/new/x.wav"_s);
    commands.mnuSSO(FileOperation::Move, sound, stopped);
    ExpectTarget(u"Copy to"_s, u"/new"_s, u"x.wav"_s, u"/copies/y.wav"_s);
    commands.mnuSSO(FileOperation::Copy, sound, stopped);
    ExpectNewName(u"x.wav"_s, u"z.wav"_s);
    commands.mnuSSO(FileOperation::Rename, sound, stopped);
    commands.mnuSSO(FileOperation::Delete, sound, stopped);
    EXPECT_EQ(
        files.calls,
        QStringList({u"stop"_s, u"move /sounds/x.wav > /new/x.wav"_s, u"copy /sounds/x.wav > /copies/y.wav"_s,
                     u"stop"_s, u"rename /sounds/x.wav > z.wav"_s, u"stop"_s, u"trash /sounds/x.wav"_s}));
    EXPECT_EQ(settings.Text(Keys::SFCopyTo), u"/copies"_s);
    EXPECT_EQ(settings.Text(Keys::CopyTo), QString());
    EXPECT_EQ(document.CurrentFile, path);
}

TEST_F(FileCommandsTest, CancelledCommandLeavesTheSoundPlaying)
{
    ExpectTarget(u"Move to"_s, u"/s"_s, u"x.wav"_s, {});
    commands.mnuSSO(FileOperation::Move, u"/s/x.wav"_s, stop);
    ExpectNewName(u"x.wav"_s, {});
    commands.mnuSSO(FileOperation::Rename, u"/s/x.wav"_s, stop);
    EXPECT_EQ(stops, 0);
}

// Any file

TEST_F(FileCommandsTest, AnyFileIsWorkedOnAndTheDocumentFollowsItsOwn)
{
    const QString path = Open(u"a.orc"_s);
    EXPECT_TRUE(commands.RunFileOperation(FileOperation::Delete, u"/x.sco"_s));
    EXPECT_EQ(document.CurrentFile, path);
    files.answers = {false};
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Delete, u"/x.sco"_s));
    ExpectTarget(u"Copy to"_s, u"/s"_s, u"x.sco"_s, u"/t/x.sco"_s);
    EXPECT_TRUE(commands.RunFileOperation(FileOperation::Copy, u"/s/x.sco"_s));
    desktop.ExpectShellRun({.verb = u"properties"_s, .file = u"/x.sco"_s});
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Properties, u"/x.sco"_s));
    EXPECT_TRUE(commands.RunFileOperation(FileOperation::Delete, path));
    EXPECT_EQ(document.CurrentFile, QString());
}

TEST_F(FileCommandsTest, DocumentIsKnownThroughALinkedFolder)
{
    ASSERT_TRUE(QDir(folder).mkdir(u"real"_s));
    ASSERT_EQ(symlink("real", QFile::encodeName(Path(u"linked"_s))), 0);
    for (const QString &spelled :
         {Path(u"linked/a.orc"_s), Path(u"real//a.orc"_s), Path(u"real/./a.orc"_s)}) {
        const QString path = Open(u"real/a.orc"_s, "old\r\n");
        Type(u"new "_s);
        files.calls.clear();
        EXPECT_TRUE(commands.RunFileOperation(FileOperation::Delete, spelled));
        EXPECT_EQ(files.calls, QStringList({u"trash "_s + path}));
        EXPECT_EQ(document.CurrentFile, QString());
    }
    // A link to the document's file is another file, and so is one of its name elsewhere.
    const QString path = Open(u"real/a.orc"_s);
    context.WriteFile(u"a.orc"_s, "other");
    ASSERT_EQ(symlink("real/a.orc", QFile::encodeName(Path(u"b.orc"_s))), 0);
    for (const QString &other : {Path(u"a.orc"_s), Path(u"b.orc"_s), Path(u"gone/a.orc"_s)}) {
        files.calls.clear();
        EXPECT_TRUE(commands.RunFileOperation(FileOperation::Delete, other));
        EXPECT_EQ(files.calls, QStringList({u"trash "_s + other}));
        EXPECT_EQ(document.CurrentFile, path);
    }
}

TEST_F(FileCommandsTest, DocumentThatStayedIsNoChangeOfFiles)
{
    const QString path = Open(u"a.orc"_s);
    ExpectTarget(u"Move to"_s, folder, u"a.orc"_s, {});
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Move, path));
    ExpectNewName(u"a.orc"_s, {});
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Rename, path));
    files.answers = {false};
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Delete, path));
    desktop.ExpectShellRun({.verb = u"properties"_s, .file = QuoteFile(path)});
    EXPECT_FALSE(commands.RunFileOperation(FileOperation::Properties, path));
    EXPECT_EQ(document.CurrentFile, path);
}

// Properties

TEST_F(FileCommandsTest, PropertiesTellWhatTheSystemKnows)
{
    const QString path = context.WriteFile(u"a.orc"_s, QByteArray(1536, 'x'));
    ASSERT_EQ(chmod(QFile::encodeName(path), 0640), 0);
    desktop.typeNames[path] = u"Csound orchestra"_s;
    std::map<QString, QString> rows;
    for (const FileProperty &row : FileProperties(path, desktop))
        rows[row.caption] = row.value;
    EXPECT_EQ(rows[u"Path"_s], path);
    EXPECT_EQ(rows[u"Kind"_s], u"Csound orchestra"_s);
    EXPECT_EQ(rows[u"Size"_s], u"1.5Kb (1536 bytes)"_s);
    EXPECT_EQ(rows[u"Permissions"_s], u"rw-r----- (640)"_s);
    EXPECT_FALSE(rows[u"Modified"_s].isEmpty());
    EXPECT_FALSE(rows[u"Accessed"_s].isEmpty());
    EXPECT_TRUE(rows[u"Owner"_s].startsWith(QFileInfo(path).owner()));
    EXPECT_FALSE(rows.contains(u"Link to"_s));

    desktop.executableKinds[path] = u"Script"_s;
    EXPECT_EQ(FileProperties(path, desktop)[1], (FileProperty{u"Kind"_s, u"Csound orchestra Script"_s}));

    const QString link = Path(u"link"_s);
    ASSERT_EQ(symlink(QFile::encodeName(path), QFile::encodeName(link)), 0);
    EXPECT_EQ(FileProperties(link, desktop)[1], (FileProperty{u"Link to"_s, path}));
    EXPECT_EQ(
        FileProperties(Path(u"gone"_s), desktop),
        (std::vector<FileProperty>{{u"Path"_s, Path(u"gone"_s)}, {u"Kind"_s, u"The file does not exist"_s}}));
}
