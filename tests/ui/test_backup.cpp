// SPDX-License-Identifier: GPL-3.0-or-later

// The backup of the document, and the clearing away of temporary files, from the menus and at the start.

#include "shell/documentkeys.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;
using zelvane::test::EditorWindow;
using zelvane::test::RunUiTest;

class BackupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void BackupStandsBesideTheDocument()
    {
        EditorWindow editor;
        const QString document = editor.WriteFile(u"a.orc"_s, "saved");
        const QString backup = editor.folder.filePath(u"a(01-03-07).orc"_s);
        editor.Open({document});
        editor.desktop.ExpectMessage({.text = u"Original file: "_s + document + u"\n\nBackup file: "_s +
                                              backup + u"\n\nDo you want to continue?"_s,
                                      .buttons = BoxButtons::YesNo,
                                      .title = u"Create Backup"_s},
                                     BoxAnswer::Yes);
        editor.desktop.ExpectMessage(
            {.text = u"Backup has been succesfully created.\n\n"_s + backup, .icon = BoxIcon::Information});
        editor.Row(u"mnuBackupNow"_s).trigger();
        QVERIFY(QFileInfo(backup).isFile());
        QVERIFY(
            !(QFileInfo(backup).permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther)));
    }

    void TemporaryFilesGoWhenTheUserSaysSo()
    {
        EditorWindow editor;
        const Temporary temporary;
        editor.Open();
        QVERIFY(temporary.Stands()); // nobody has asked for the start to clear them away
        editor.desktop.ExpectMessage({.text = u"Temporary directory: "_s + temporary.folder.path() +
                                              u"\n\nCsound temporary files found: 1\n\nDo you want to delete "
                                              "these files?\nPress No to show temporary directory."_s,
                                      .icon = BoxIcon::Question,
                                      .buttons = BoxButtons::YesNoCancel,
                                      .title = u"Delete Csound Temporary Files"_s},
                                     BoxAnswer::Yes);
        editor.Row(u"mnuDeleteTempFiles"_s).trigger();
        QVERIFY(!temporary.Stands());
    }

    void TemporaryFilesGoAtTheStartWhereTheSettingSaysSo()
    {
        EditorWindow editor;
        editor.settings.SaveFlag(Keys::DeleteTempFiles, true);
        const Temporary temporary;
        editor.Open();
        QVERIFY(!temporary.Stands());
        QVERIFY(QFileInfo::exists(temporary.folder.filePath(u"other"_s)));
        editor.Open(); // without any there is nothing to tell
    }

private:
    /// A folder for temporary files with one of Csound's and one of another program's.
    struct Temporary {
        QTemporaryDir folder;
        QByteArray before = qgetenv("TMPDIR");

        Temporary()
        {
            for (const QString &name : {u"csound1.tmp"_s, u"other"_s}) {
                QFile file(folder.filePath(name));
                if (!file.open(QIODevice::WriteOnly))
                    QTest::qFail("cannot write a test's file", __FILE__, __LINE__);
            }
            qputenv("TMPDIR", QFile::encodeName(folder.path()));
        }
        ~Temporary() { before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before); }
        Q_DISABLE_COPY_MOVE(Temporary)

        bool Stands() const { return QFileInfo::exists(folder.filePath(u"csound1.tmp"_s)); }
    };
};

int main(int argc, char **argv)
{
    return RunUiTest<BackupTest>(argc, argv);
}

#include "test_backup.moc"
