// SPDX-License-Identifier: GPL-3.0-or-later

// The shell commands of the File and the Player menu, and the boxes that they show.

#include "platform/mediacontrol.h"
#include "platform/ui/progressbox.h"
#include "player/playerkeys.h"
#include "player/ui/fileroom.h"
#include "player/ui/frmproperties.h"
#include "player/ui/playerroom.h"
#include "shell/command.h"
#include "shell/ui/menuname.h"
#include "support/barewindow.h"
#include "support/editorwindow.h"
#include "support/filebytes.h"
#include "support/modaldriver.h"
#include "support/scriptedmediacontrol.h"
#include "support/uitest.h"

#include <memory>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;
using zelvane::test::BareWindow;
using zelvane::test::BytesOf;
using zelvane::test::EditorWindow;
using zelvane::test::ModalDriver;
using zelvane::test::RunUiTest;
using zelvane::test::ScriptedMediaControl;

namespace
{

/// A window with the player and the file commands alone.
struct SoundWindow : BareWindow {
    QTemporaryDir data;
    ScriptedMediaControl *media = new ScriptedMediaControl;
    PlayerRoom player{context, std::unique_ptr<MediaControl>(media)};
    FileRoom files{context, player.ThePlayer()};
    QString sound = WriteFile(u"x.wav"_s, "RIFF");

    SoundWindow()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
        media->Answer(u"info gino file"_s, sound);
    }
    /// Opens the Player menu over an open sound, and runs a command of it.
    void Choose(FileOperation operation)
    {
        player.ThePlayer().MCIopen(sound);
        commands.MenuOpening(Menu::mnuPlayer);
        media->TakeCommands();
        commands.Run(Cmd::mnuSSO[operation]);
    }
};

MessageBoxRequest ToTrash(const QString &path)
{
    return {.text = u"Do you want to move "_s + path + u" to the trash?"_s,
            .icon = BoxIcon::Question,
            .buttons = BoxButtons::YesNo,
            .defaultAnswer = BoxAnswer::Yes};
}

/// A window with a document of its own, and a trash of its own.
struct Editor : EditorWindow {
    QTemporaryDir data;
    QString path = WriteFile(u"a piece.orc"_s, "instr 1\r\nendin\r\n");

    Editor()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
        Open({path});
        if (!window->windowTitle().contains(path))
            QTest::qFail("the document is not open", __FILE__, __LINE__);
    }
    QString Path(const QString &name) const { return folder.filePath(name); }
    /// Opens the File menu, as a user does, and triggers a row of it.
    void Choose(const QString &row)
    {
        auto &menu = Find<QMenu>(u"mnuFile"_s);
        menu.popup(window->mapToGlobal(QPoint(10, 10)));
        const bool enabled = Row(row).isEnabled();
        menu.close();
        if (!enabled)
            QTest::qFail(qPrintable(row + u" is disabled"_s), __FILE__, __LINE__);
        Row(row).trigger();
    }
};

} // namespace

class FileCommandsUiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void RenamedFileIsOpenedByItsNewName()
    {
        Editor editor;
        editor.desktop.ExpectInput(u"Rename"_s, u"Rename 'a piece.orc' to:"_s, u"b.sco"_s);
        editor.Choose(u"mnuFSO_2"_s);
        QVERIFY(!QFileInfo::exists(editor.path));
        QCOMPARE(BytesOf(editor.Path(u"b.sco"_s)), QByteArray("instr 1\r\nendin\r\n"));
        QVERIFY2(editor.window->windowTitle().contains(editor.Path(u"b.sco"_s) + u" (Score"_s),
                 qPrintable(editor.window->windowTitle()));
    }

    void MovedAndCopiedFilesAreWhereTheUserWantsThem()
    {
        Editor editor;
        QVERIFY(QDir(editor.folder.path()).mkdir(u"sub"_s));
        const QString moved = editor.Path(u"sub/m.orc"_s);
        editor.desktop.ExpectSaveDialog({.title = u"Move to"_s,
                                         .folder = editor.folder.path(),
                                         .fileName = u"a piece.orc"_s,
                                         .overwritePrompt = false},
                                        {.path = moved});
        editor.Choose(u"mnuFSO_0"_s);
        QVERIFY(editor.window->windowTitle().contains(moved));
        QVERIFY(!QFileInfo::exists(editor.path));

        // Now that the folder is known, the copy begins there; an existing file is asked about.
        editor.WriteFile(u"old.orc"_s, "old");
        editor.desktop.ExpectSaveDialog({.title = u"Copy to"_s,
                                         .folder = editor.Path(u"sub"_s),
                                         .fileName = u"m.orc"_s,
                                         .overwritePrompt = false},
                                        {.path = editor.Path(u"old.orc"_s)});
        editor.desktop.ExpectMessage(
            {.text = editor.Path(u"old.orc"_s) + u" already exists.\nDo you want to replace it?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo,
             .defaultAnswer = BoxAnswer::No},
            BoxAnswer::Yes);
        editor.desktop.ExpectMessage({.text = u"Do you want to open the new file?"_s,
                                      .icon = BoxIcon::Warning,
                                      .buttons = BoxButtons::YesNo},
                                     BoxAnswer::Yes);
        editor.Choose(u"mnuFSO_1"_s);
        QVERIFY(editor.window->windowTitle().contains(editor.Path(u"old.orc"_s)));
        QCOMPARE(BytesOf(editor.Path(u"old.orc"_s)), BytesOf(moved));
    }

    void DeletedFileIsInTheTrashAndTheWindowEmpty()
    {
        Editor editor;
        editor.desktop.ExpectMessage(ToTrash(editor.path), BoxAnswer::Yes);
        editor.Choose(u"mnuFSO_3"_s);
        QVERIFY(!QFileInfo::exists(editor.path));
        QCOMPARE(BytesOf(editor.data.filePath(u"Trash/files/a piece.orc"_s)),
                 QByteArray("instr 1\r\nendin\r\n"));
        QVERIFY(editor.window->windowTitle().contains(u" - Untitled ("_s));
        QCOMPARE(editor.Text().Text(), QString());
        // Nothing is left for the commands to work on.
        auto &menu = editor.Find<QMenu>(u"mnuFile"_s);
        menu.popup(editor.window->mapToGlobal(QPoint(10, 10)));
        QVERIFY(!editor.Row(u"mnuFSO_3"_s).isEnabled());
        menu.close();
        editor.Row(u"mnuOpenWith"_s).trigger();
        editor.Row(u"mnuSearchFiles"_s).trigger();
    }

    void PropertiesHaveABoxWhereTheDesktopShowsNone()
    {
        Editor editor;
        editor.desktop.ExpectShellRun({.verb = u"properties"_s, .file = u'"' + editor.path + u'"'},
                                      ShellFailure);
        ModalDriver modal;
        modal.Expect<frmProperties>([&](frmProperties &box) {
            QCOMPARE(box.windowTitle(), u"Zelvane - a piece.orc Properties"_s);
            const auto text = [&](const QString &name) {
                auto *field = box.findChild<QLineEdit *>(name);
                return field ? field->text() : u"<no field>"_s;
            };
            QCOMPARE(text(u"txtPath"_s), editor.path);
            QCOMPARE(text(u"txtSize"_s), u"16 bytes"_s);
            QVERIFY(box.findChild<QLineEdit *>(u"txtPath"_s)->isReadOnly());
            QCOMPARE(box.focusWidget(), box.findChild<QPushButton *>(u"cmdClose"_s));
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        editor.Choose(u"mnuFSO_5"_s);
    }

    void SoundIsClosedBeforeItIsDeleted()
    {
        SoundWindow on;
        on.desktop.ExpectMessage(ToTrash(on.sound), BoxAnswer::Yes);
        on.Choose(FileOperation::Delete);
        QCOMPARE(on.media->TakeCommands(), QStringList({u"stop gino"_s, u"close gino"_s}));
        QVERIFY(!QFileInfo::exists(on.sound));
        QCOMPARE(BytesOf(on.data.filePath(u"Trash/files/x.wav"_s)), QByteArray("RIFF"));
    }

    void SoundPlaysOnWhileItIsCopied()
    {
        SoundWindow on;
        const QString copy = on.folder.filePath(u"y.wav"_s);
        on.desktop.ExpectSaveDialog({.title = u"Copy to"_s,
                                     .folder = on.folder.path(),
                                     .fileName = u"x.wav"_s,
                                     .overwritePrompt = false},
                                    {.path = copy});
        on.Choose(FileOperation::Copy);
        QCOMPARE(on.media->TakeCommands(), QStringList());
        QCOMPARE(BytesOf(copy), QByteArray("RIFF"));
        QCOMPARE(on.settings.Text(Keys::SFCopyTo), on.folder.path());
    }

    void OtherRoomsHaveTheirFilesWorkedOn()
    {
        SoundWindow on;
        QVERIFY(on.steps.files->ServesFiles());
        on.desktop.ExpectInput(u"Rename"_s, u"Rename 'x.wav' to:"_s, u"z.wav"_s);
        QVERIFY(on.steps.files->RunFileOperation(FileOperation::Rename, on.sound));
        QVERIFY(QFileInfo::exists(on.folder.filePath(u"z.wav"_s)));
        on.desktop.ExpectShellRun({.verb = u"openas"_s, .file = u"/x.wav"_s});
        on.steps.files->OpenWith(u"/x.wav"_s);
    }

    void ShortWorkShowsNoBox()
    {
        QWidget window;
        ProgressBox progress(&window, 3'600'000); // so that no stall of the machine makes it long
        progress.Begin(u"Copying x..."_s);
        QVERIFY(progress.GoOn(1, 2));
        QVERIFY(!QApplication::activeModalWidget());
        progress.End();
    }

    void LongWorkIsShownAndCanBeStopped()
    {
        QWidget window;
        window.show();
        ProgressBox progress(&window, 0);
        for (int round = 0; round < 2; ++round) {
            progress.Begin(u"Copying x.wav..."_s);
            QVERIFY(progress.GoOn(3'000'000'000, 6'000'000'000));
            auto *box = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
            QVERIFY(box);
            QCOMPARE(box->objectName(), u"ProgressBox"_s);
            QCOMPARE(box->labelText(), u"Copying x.wav..."_s);
            QCOMPARE(box->value(), 500);
            QVERIFY(progress.GoOn(6'000'000'001, 6'000'000'000)); // more came than was said
            QCOMPARE(box->value(), 1000);
            if (round == 0)
                QTest::mouseClick(box->findChild<QPushButton *>(u"cmdCancel"_s), Qt::LeftButton);
            else
                QTest::keyClick(box, Qt::Key_Escape);
            QVERIFY2(!progress.GoOn(6'000'000'001, 6'000'000'000), round == 0 ? "by the button" : "by a key");
            progress.End();
            QVERIFY(!QApplication::activeModalWidget());
        }
    }
};

int main(int argc, char **argv)
{
    return RunUiTest<FileCommandsUiTest>(argc, argv);
}

#include "test_filecommands.moc"
