// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/documentkeys.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"
#include "support/stringbuffer.h"

#include <new>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

using Lifecycle = test::LifecycleFixture;
using test::ErrorBox;
using test::OpenRequest;
using test::SaveChanges;

const QString Skeleton =
    u"<CsoundSynthesizer>\n<CsOptions>\n\n</CsOptions>\n<CsInstruments>\n\n</CsInstruments>\n"
    "<CsScore>\n\n</CsScore>\n</CsoundSynthesizer>"_s;

/// The description that writing this file fails with.
QString WriteFailure(const QString &name)
{
    try {
        WriteFileBytes(name, "x");
    } catch (const RunTimeError &error) {
        return error.Description();
    }
    ADD_FAILURE() << "writes: " << name.toStdString();
    return {};
}

MessageBoxRequest UnableToSave(const QString &name)
{
    return {.text = u"Unable to save "_s + name + u".\n\n"_s + WriteFailure(name), .icon = BoxIcon::Warning};
}

/// The Save dialog of an unnamed text document.
const FileDialogRequest SaveUntitled{.filters = {{u"All files"_s, u"*.*"_s}}};

TEST_F(Lifecycle, ANewDocumentIsUntitledAndClean)
{
    view.outlineShown = true;
    documents.NewFile(FileKind::Other, {});
    EXPECT_EQ(view.caption, u"Zelvane - Untitled ()"_s);
    EXPECT_FALSE(document.Modified);
    EXPECT_FALSE(view.saveEnabled);
    EXPECT_EQ(status.text, u""_s);
    EXPECT_EQ(view.calls.mid(view.calls.indexOf(u"colours"_s)),
              (QStringList{u"colours"_s, u"caption Zelvane - Untitled ()"_s, u"save off"_s, u"status "_s,
                           u"enable"_s, u"outline"_s, u"clear related"_s}));
    documents.NewFile(FileKind::Orchestra, {});
    EXPECT_EQ(view.caption, u"Zelvane - Untitled (Orchestra)"_s);
    EXPECT_TRUE((view.enabled[Cmd::mnuHeader]));
}

TEST_F(Lifecycle, ANewUnifiedDocumentHasTheSkeleton)
{
    documents.NewFile(FileKind::Unified, {});
    EXPECT_EQ(text.text, Skeleton);
    EXPECT_FALSE(document.Modified);
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(text.CanUndo());
    EXPECT_EQ(view.caption, u"Zelvane - Untitled (Unified Format)"_s);
    const QString path = context.folder.filePath(u"x.csd"_s);
    documents.SaveFile(path);
    EXPECT_EQ(FileBytes(path), Skeleton.toUtf8().replace("\n", "\r\n"));
}

TEST_F(Lifecycle, ANewDocumentReplacesANamedOne)
{
    documents.OpenFile(context.WriteFile(u"x.txt"_s, "caf\xE9"));
    documents.NewFile(FileKind::Score, {});
    EXPECT_EQ(text.text, u""_s);
    EXPECT_EQ(document.CurrentFile, u""_s);
    EXPECT_EQ(document.Encoding, TextEncoding());
    EXPECT_EQ(document.DocumentKind, FileKind::Score);
    EXPECT_EQ(view.caption, u"Zelvane - Untitled (Score)"_s);
}

TEST_F(Lifecycle, ANewDocumentMayHaveAName)
{
    documents.NewFile(FileKind::Unified, u"piece.csd"_s);
    EXPECT_EQ(document.CurrentFile, u"piece.csd"_s);
    EXPECT_EQ(view.caption, u"Zelvane - piece.csd (Unified Format)"_s);
}

TEST_F(Lifecycle, NewAsksForTheKind)
{
    view.chosenKind = FileKind::Unified;
    documents.New();
    EXPECT_EQ(document.DocumentKind, FileKind::Unified);
    EXPECT_EQ(view.calls.first(), u"choose"_s);
}

TEST_F(Lifecycle, ACancelledChooserChangesNothing)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString before = document.CurrentFile;
    view.calls.clear();
    documents.New();
    EXPECT_EQ(view.calls, QStringList{u"choose"_s});
    EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
    EXPECT_EQ(document.CurrentFile, before);
    EXPECT_EQ(text.text, u"old"_s);
}

TEST_F(Lifecycle, NewGuardsUnsavedWork)
{
    documents.NewFile(FileKind::Other, {});
    Type(u"typed"_s);
    view.chosenKind = FileKind::Score;
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Cancel);
    documents.New();
    EXPECT_EQ(text.text, u"typed"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
    documents.New();
    EXPECT_EQ(text.text, u""_s);
    EXPECT_EQ(document.DocumentKind, FileKind::Score);
}

TEST_F(Lifecycle, TheFirstChangeMarksTheDocument)
{
    const QString path = context.WriteFile(u"x.orc"_s, "x");
    documents.OpenFile(path);
    view.calls.clear();
    Type(u"1"_s);
    Type(u"2"_s);
    EXPECT_EQ(view.calls, (QStringList{u"save on"_s, u"caption Zelvane - "_s + path + u"* (Orchestra)"_s}));
    EXPECT_TRUE(document.Modified);
    documents.Save();
    EXPECT_EQ(view.caption, u"Zelvane - "_s + path + u" (Orchestra)"_s);
    EXPECT_FALSE(view.saveEnabled);
    documents.NewFile(FileKind::Other, {});
    Type(u"x"_s);
    EXPECT_EQ(view.caption, u"Zelvane - Untitled* ()"_s);
}

TEST_F(Lifecycle, AChangeByTheProgramDoesNotCount)
{
    document.Loading = true;
    Type(u"x"_s);
    EXPECT_FALSE(document.Modified);
    EXPECT_EQ(view.calls, QStringList());
}

TEST_F(Lifecycle, SaveWritesPcLineEndsWhateverWasLoaded)
{
    const QString path = context.WriteFile(u"x.orc"_s, "a\nb\n");
    documents.OpenFile(path);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "a\r\nb\r\n");
    EXPECT_EQ(document.CurrentPlatform, LineEndForm::Unix) << "it tells what was found at load";
    EXPECT_TRUE(status.text.endsWith(u" - UNIX"_s));
}

TEST_F(Lifecycle, SaveFileTakesItsStepsInOrder)
{
    Type(u"text"_s);
    view.calls.clear();
    const QString path = context.folder.filePath(u"x.sco"_s);
    documents.SaveFile(path);
    ASSERT_EQ(view.calls.size(), 4);
    EXPECT_EQ(view.calls[0], u"save off"_s);
    EXPECT_EQ(view.calls[1], u"caption Zelvane - "_s + path + u" (Score)"_s);
    EXPECT_TRUE(view.calls[2].startsWith(u"status x.sco: last saved "_s));
    EXPECT_EQ(view.calls[3], u"recent"_s);
    EXPECT_TRUE(view.enabled.empty()) << "the commands of the kind wait for the next opening";
    EXPECT_EQ(view.recentFiles, QStringList{path});
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(document.DocumentKind, FileKind::Score);
    EXPECT_FALSE(document.Modified);
}

TEST_F(Lifecycle, SaveFileIgnoresAnEmptyName)
{
    Type(u"text"_s);
    view.calls.clear();
    EXPECT_TRUE(documents.SaveFile({}));
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_TRUE(document.Modified);
}

TEST_F(Lifecycle, AFailedSaveChangesNothing)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    Type(u"typed "_s);
    view.calls.clear();
    const QString bad = context.folder.filePath(u"no such folder/y.sco"_s);
    desktop.ExpectMessage(UnableToSave(bad));
    EXPECT_FALSE(documents.SaveFile(bad));
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
    EXPECT_TRUE(document.Modified);
    EXPECT_TRUE(view.saveEnabled);
    EXPECT_EQ(FileBytes(path), "old");
}

TEST_F(Lifecycle, AFailedSaveKeepsTheEncoding)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "caf\xE9"));
    Type(u"\u03C0"_s);
    const QString bad = context.folder.path();
    desktop.ExpectMessage(UnableToSave(bad));
    documents.SaveFile(bad);
    EXPECT_EQ(document.Encoding.form, TextEncoding::Form::Windows1252);
}

TEST_F(Lifecycle, SaveAsUnderAnotherKindChangesTheCaptionOnly)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "x"));
    const QString path = context.folder.filePath(u"x.sco"_s);
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = document.CurrentFile,
                              .fileName = u"x.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = path});
    view.enabled.clear();
    view.calls.clear();
    documents.SaveAs();
    EXPECT_EQ(view.caption, u"Zelvane - "_s + path + u" (Score)"_s);
    EXPECT_TRUE(view.enabled.empty());
    EXPECT_FALSE(view.calls.contains(u"highlight"_s));
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"SaveFolder"_s), context.folder.path());
}

TEST_F(Lifecycle, SaveAsksForTheNameOfAnUntitledDocument)
{
    settings.SaveText(Keys::OrchestraExtensions, u"orc inc"_s);
    settings.SaveText(Keys::SaveFolder, u"/music"_s);
    documents.NewFile(FileKind::Orchestra, {});
    Type(u"instr 1"_s);
    const QString path = context.folder.filePath(u"x.orc"_s);
    desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc;*.inc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = u"/music"_s,
                              .defaultExtension = u"orc"_s},
                             {.path = path});
    documents.Save();
    EXPECT_EQ(FileBytes(path), "instr 1");
    EXPECT_EQ(document.CurrentFile, path);
}

TEST_F(Lifecycle, ACancelledSaveDialogChangesNothing)
{
    Type(u"text"_s);
    view.calls.clear();
    desktop.ExpectSaveDialog(SaveUntitled, {});
    documents.Save();
    desktop.ExpectSaveDialog(SaveUntitled, {});
    documents.SaveAs();
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_TRUE(document.Modified);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"SaveFolder"_s, u"absent"_s), u"absent"_s);
}

TEST_F(Lifecycle, SaveBoxOffersTheTypeOfAnyFile)
{
    const QString path = context.WriteFile(u"notes.txt"_s, "x");
    desktop.typeNames[path] = u"plain text"_s;
    documents.OpenFile(path);
    desktop.ExpectSaveDialog({.filters = {{u"plain text"_s, u"*.txt"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = path,
                              .fileName = u"notes.txt"_s,
                              .defaultExtension = u"txt"_s},
                             {});
    EXPECT_EQ(documents.SaveBox(), u""_s);
}

TEST_F(Lifecycle, PickedPathsAreCutAtNulAndTrimmed)
{
    const QString path = context.folder.filePath(u"x.orc"_s);
    desktop.ExpectSaveDialog(SaveUntitled, {.path = u"  "_s + path + u"  \0rest"_s});
    EXPECT_EQ(documents.SaveBox(), path);
    desktop.ExpectSaveDialog(SaveUntitled, {.path = u"\0rest"_s});
    settings.DeleteSetting(u"Options"_s, u"SaveFolder"_s);
    EXPECT_EQ(documents.SaveBox(), u""_s);
    // A file may really be named so; then it is meant.
    const QString blank = context.WriteFile(u"y.orc "_s, "x");
    desktop.ExpectSaveDialog(SaveUntitled, {.path = blank});
    EXPECT_EQ(documents.SaveBox(), blank);
}

TEST_F(Lifecycle, AStoreThatCannotBeWrittenKeepsNobodyFromHisFiles)
{
    // The lock of the store's file cannot be had.
    ASSERT_TRUE(QDir(context.folder.path()).mkdir(u"settings.lock"_s));
    MessageBoxRequest report;
    try {
        settings.SaveSetting(u"Options"_s, u"SaveFolder"_s, u"x"_s);
        FAIL() << "the store can be written";
    } catch (const RunTimeError &error) {
        report = ErrorBox(error);
    }
    const QString path = context.folder.filePath(u"x.orc"_s);
    Type(u"typed"_s);
    desktop.ExpectSaveDialog(SaveUntitled, {.path = path});
    desktop.ExpectMessage(report, BoxAnswer::Cancel); // the folder
    desktop.ExpectMessage(report, BoxAnswer::Cancel); // the recent file
    documents.Save();
    EXPECT_EQ(FileBytes(path), "typed");
    EXPECT_FALSE(document.Modified);

    const QString other = context.WriteFile(u"y.sco"_s, "other");
    FileDialogRequest request = OpenRequest;
    request.folder = path;
    desktop.ExpectOpenDialog(request, {.path = other});
    desktop.ExpectMessage(report, BoxAnswer::Cancel);
    desktop.ExpectMessage(report, BoxAnswer::Cancel);
    documents.Open();
    EXPECT_EQ(document.CurrentFile, other);
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(document.Modified);
}

TEST_F(Lifecycle, TrimmingNeverNamesAnotherFile)
{
    const QString other = context.WriteFile(u"x.orc"_s, "precious");
    desktop.ExpectSaveDialog(SaveUntitled, {.path = other + u' '});
    EXPECT_EQ(documents.SaveBox(), other + u' ') << "the dialog has not asked about overwriting x.orc";
}

TEST_F(Lifecycle, OpenBoxOffersTheFiltersInOrder)
{
    settings.SaveText(Keys::OrchestraExtensions, u"orc inc"_s);
    settings.SaveText(Keys::OpenFolder, u"/music"_s);
    FileDialogRequest request{.filters = {{u"All Csound types"_s, u"*.orc;*.inc;*.sco;*.csd"_s},
                                          {u"Orchestra files"_s, u"*.orc;*.inc"_s},
                                          {u"Score files"_s, u"*.sco"_s},
                                          {u"Unified Format files"_s, u"*.csd"_s},
                                          {u"Text files"_s, u"*.txt"_s},
                                          {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                                          {u"All files"_s, u"*.*"_s}},
                              .folder = u"/music"_s};
    const QString path = context.WriteFile(u"x.sco"_s, "x");
    desktop.ExpectOpenDialog(request, {.path = path, .filterIndex = 2});
    documents.Open();
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"FilterIndex"_s), u"2"_s);
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"OpenFolder"_s), context.folder.path());

    request.filterIndex = 2;
    request.folder = path;
    desktop.ExpectOpenDialog(request, {});
    view.calls.clear();
    documents.Open();
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(settings.GetSetting(u"Options"_s, u"FilterIndex"_s), u"2"_s);
}

TEST_F(Lifecycle, AnExtensionListMayBeEmpty)
{
    settings.SaveText(Keys::ScoreExtensions, {});
    settings.SaveNumber(Keys::FilterIndex, 99);
    FileDialogRequest request{.filters = {{u"All Csound types"_s, u"*.orc;*.csd"_s},
                                          {u"Orchestra files"_s, u"*.orc"_s},
                                          {u"Score files"_s, u""_s},
                                          {u"Unified Format files"_s, u"*.csd"_s},
                                          {u"Text files"_s, u"*.txt"_s},
                                          {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                                          {u"All files"_s, u"*.*"_s}}};
    desktop.ExpectOpenDialog(request, {});
    EXPECT_EQ(documents.OpenBox(), u""_s);
}

TEST_F(Lifecycle, QuerySaveAsksOnlyAboutAModifiedText)
{
    EXPECT_TRUE(documents.QuerySave());
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    Type(u"typed "_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::Cancel);
    EXPECT_FALSE(documents.QuerySave());
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    EXPECT_TRUE(documents.QuerySave());
    EXPECT_EQ(FileBytes(path), "old");
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::Yes);
    EXPECT_TRUE(documents.QuerySave());
    EXPECT_EQ(FileBytes(path), "typed old");
    EXPECT_TRUE(documents.QuerySave()) << "saved: no question";
}

TEST_F(Lifecycle, QuerySaveGoesOnAfterACancelledSaveDialog)
{
    Type(u"typed"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Yes);
    desktop.ExpectSaveDialog(SaveUntitled, {});
    EXPECT_TRUE(documents.QuerySave());
}

TEST_F(Lifecycle, QuerySaveStopsAfterAFailedWrite)
{
    Type(u"typed"_s);
    const QString bad = context.folder.filePath(u"no such folder/y.sco"_s);
    desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Yes);
    desktop.ExpectSaveDialog(SaveUntitled, {.path = bad});
    desktop.ExpectMessage(UnableToSave(bad));
    EXPECT_FALSE(documents.QuerySave()) << "the text is nowhere but here";
}

TEST_F(Lifecycle, InsertFileReplacesTheSelectionAndSelectsTheInsertedText)
{
    view.outlineShown = true;
    Type(u"one two three"_s);
    text.SetSelection(4, 7);
    view.calls.clear();
    status.text = u"before"_s;
    documents.InsertFile(u'"' + context.WriteFile(u"a b.inc"_s, "2\r\n2\r") + u'"');
    EXPECT_EQ(text.text, u"one 2\n2\n three"_s);
    EXPECT_EQ(text.Selection(), (TextSpan{4, 8}));
    EXPECT_TRUE(document.Modified);
    EXPECT_EQ(view.calls, (QStringList{u"status before"_s, u"outline"_s}));
    documents.InsertFile({});
    EXPECT_EQ(text.text, u"one 2\n2\n three"_s);
}

TEST_F(Lifecycle, InsertFileThatCannotBeReadChangesNothing)
{
    Type(u"one two"_s);
    text.SetSelection(0, 3);
    EXPECT_THROW(documents.InsertFile(context.folder.filePath(u"none"_s)), RunTimeError);
    EXPECT_EQ(text.text, u"one two"_s);
    EXPECT_EQ(text.Selection(), (TextSpan{0, 3}));
}

TEST_F(Lifecycle, StatusInfoTellsAboutAnyFile)
{
    documents.StatusFileInfo();
    EXPECT_EQ(view.calls, QStringList()) << "an unnamed document has no file line";
    documents.StatusInfo(context.WriteFile(u"x.wav"_s, QByteArray(1536, 'x')));
    EXPECT_TRUE(status.text.startsWith(u"x.wav: last saved "_s));
    EXPECT_TRUE(status.text.endsWith(u" - 1.5Kb (1536 bytes)"_s));
}

TEST_F(Lifecycle, NewInstanceStartsTheProgramItself)
{
    const ShellRequest request{
        .verb = u"open"_s, .file = QCoreApplication::applicationFilePath(), .parameters = u"/i"_s};
    desktop.ExpectShellRun(request);
    documents.NewInstance();
    desktop.ExpectShellRun(request, 2);
    EXPECT_THROW(documents.NewInstance(), RunTimeError);
}

TEST_F(Lifecycle, FileMenuFollowsTheDocument)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "a\rb"));
    documents.FileMenuOpening();
    EXPECT_FALSE((view.enabled[Cmd::mnuPlatformItem[ExportFormat::Mac]]));
    EXPECT_TRUE((view.enabled[Cmd::mnuFSO[FileOperation::Properties]]));
}

TEST_F(Lifecycle, Utf16IsWrittenBackAsItWas)
{
    for (const QByteArray &mark : {"\xFF\xFE"_ba, "\xFE\xFF"_ba}) {
        const auto units = [&](const QByteArray &ascii) {
            QByteArray bytes;
            for (const char letter : ascii)
                bytes += mark.startsWith('\xFF') ? letter + QByteArray(1, 0) : QByteArray(1, 0) + letter;
            return bytes;
        };
        const QString path = context.WriteFile(u"x.orc"_s, mark + units("instr 1\n"));
        documents.OpenFile(path);
        EXPECT_EQ(text.text, u"instr 1\n"_s);
        Type(u";"_s);
        documents.Save();
        EXPECT_EQ(FileBytes(path), mark + units(";instr 1\r\n"));
    }
}

TEST_F(Lifecycle, ASaveWithoutMemoryIsToldLikeAnyOtherFailure)
{
    struct NoRoom : test::StringBuffer {
        bool full = false;
        QString Text() const override
        {
            if (full)
                throw std::bad_alloc();
            return test::StringBuffer::Text();
        }
    };
    NoRoom buffer;
    DocumentLifecycle lifecycle(document, buffer, settings, desktop, status, view, view.steps);
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    lifecycle.OpenFile(path);
    buffer.full = true;
    document.Modified = true;
    desktop.ExpectMessage(
        {.text = u"Unable to save "_s + path + u".\n\nOut of memory"_s, .icon = BoxIcon::Warning});
    EXPECT_FALSE(lifecycle.SaveFile(path));
    EXPECT_TRUE(document.Modified);
    EXPECT_EQ(FileBytes(path), "old"_ba);
}

TEST_F(Lifecycle, OpeningClearsAwayWhatKilledSavesHaveLeft)
{
    const QString beside = context.WriteFile(u".zelvane-abcdefgh"_s, "half");
    const QString like = context.WriteFile(u".zelvane-notes"_s, "a user's");
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    EXPECT_FALSE(QFile::exists(beside));
    EXPECT_TRUE(QFile::exists(like));
}

TEST_F(Lifecycle, TheFirstSaveOfWhatMayBeNoTextAsks)
{
    const QByteArray bytes("a\0\nb", 4);
    const QString path = context.WriteFile(u"x.wav"_s, bytes);
    const MessageBoxRequest question{.text = path +
                                             u" holds NUL bytes: it may be no text. Saving it rewrites its "
                                             "line ends. Save it?"_s,
                                     .icon = BoxIcon::Warning,
                                     .buttons = BoxButtons::YesNo,
                                     .defaultAnswer = BoxAnswer::No};
    documents.OpenFile(path);
    EXPECT_EQ(text.text, QString::fromLatin1(bytes));
    Type(u"x"_s);
    desktop.ExpectMessage(question, BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(path), bytes);
    EXPECT_TRUE(document.Modified);
    // No answer to "Save changes?" loses the text either.
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::Yes);
    desktop.ExpectMessage(question, BoxAnswer::No);
    EXPECT_FALSE(documents.QuerySave());

    desktop.ExpectMessage(question, BoxAnswer::Yes);
    documents.Save();
    EXPECT_EQ(FileBytes(path), QByteArray("xa\0\r\nb", 6));
    EXPECT_FALSE(document.Modified);
    Type(u"y"_s);
    documents.Save(); // once was enough
    // Another document is another question.
    documents.OpenFile(context.WriteFile(u"other.wav"_s, bytes));
    documents.NewFile(FileKind::Other, context.folder.filePath(u"new.txt"_s));
    documents.Save();
    desktop.CheckAllCame();
}

TEST_F(Lifecycle, AnUnnamedTextMayKnowItsName)
{
    documents.NewFile(FileKind::Other, {});
    const QString known = context.folder.filePath(u"piece.orc"_s);
    document.OfferedName = known;
    desktop.ExpectSaveDialog({.filters = {{QString(), u"*.orc"_s}, {u"All files"_s, u"*.*"_s}},
                              .folder = known,
                              .fileName = u"piece.orc"_s,
                              .defaultExtension = u"orc"_s},
                             {});
    EXPECT_EQ(documents.SaveBox(), QString());
    documents.NewFile(FileKind::Other, {});
    desktop.ExpectSaveDialog(SaveUntitled, {});
    EXPECT_EQ(documents.SaveBox(), QString());
}

} // namespace
