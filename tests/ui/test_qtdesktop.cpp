// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/lostnames.h"
#include "platform/parameters.h"
#include "platform/ui/qtdesktop.h"
#include "platform/windowstate.h"
#include "support/largefont.h"
#include "support/modaldriver.h"
#include "support/uitest.h"

#include <cerrno>
#include <fcntl.h>
#include <QClipboard>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRect>
#include <QScopeGuard>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>
#include <QUrl>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using zelvane::test::LargeFont;
using zelvane::test::ModalDriver;

Q_DECLARE_METATYPE(zelvane::MessageBoxRequest)

namespace
{

QByteArray Contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Sends a standard stream of this process to a file while it lives.
class Redirect
{
public:
    Redirect(int stream, const QString &file) : m_stream(stream), m_saved(::dup(stream)), m_file(file)
    {
        m_file.open(QIODevice::WriteOnly);
        ::dup2(m_file.handle(), stream);
    }
    ~Redirect()
    {
        ::dup2(m_saved, m_stream);
        ::close(m_saved);
    }

private:
    int m_stream;
    int m_saved;
    QFile m_file;
};

} // namespace

class TestQtDesktop : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QByteArray m_path;
    QtDesktop m_desktop;

    QString Path(const QString &name) const { return m_folder.filePath(name); }
    QString Write(const QString &name, const QByteArray &bytes, bool executable = false) const
    {
        QFile file(Path(name));
        QDir().mkpath(QFileInfo(file).absolutePath());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(name));
        if (executable)
            file.setPermissions(file.permissions() | QFile::ExeOwner);
        return file.fileName();
    }
    /// A program that writes its folder, its arguments, and what it reads from its input to the file "said".
    QString Speaker(const QString &name, const QByteArray &before = {}) const
    {
        return Write(name,
                     "#!/bin/sh\n" + before +
                         "\n{ pwd; for a in \"$@\"; do echo \"<$a>\"; done; cat; echo end; } > '" +
                         Path(u"saying"_s).toUtf8() + "'\nmv '" + Path(u"saying"_s).toUtf8() + "' '" +
                         Path(u"said"_s).toUtf8() + "'\n",
                     true);
    }
    QByteArray Said() const { return Contents(Path(u"said"_s)); }
    /// What a program does that waits for the file "go"; it goes on without it when nobody can wait for it
    /// still.
    QByteArray UntilToldToGoOn() const
    {
        return "i=0; while [ ! -e '" + Path(u"go"_s).toUtf8() +
               "' ] && [ $i -lt 1200 ]; do sleep 0.05; i=$((i+1)); done";
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_path = qgetenv("PATH");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // no file manager of the user's
        QVERIFY(m_folder.isValid());
    }

    void init()
    {
        QFile::remove(Path(u"said"_s));
        QFile::remove(Path(u"go"_s));
        QDir().mkpath(Path(u"bin"_s));
        qputenv("PATH", Path(u"bin"_s).toLocal8Bit() + ':' + m_path);
    }

    void cleanup()
    {
        QDir(Path(u"bin"_s)).removeRecursively();
        qputenv("PATH", m_path);
    }

    // Message boxes

    void BoxShowsTextAndTitleAsTheyAre()
    {
        ModalDriver modal;
        const QString text = u"Cannot open <b>a&b</b>.csd\nline 2"_s;
        modal.Expect<QMessageBox>([&](QMessageBox &box) {
            QCOMPARE(box.text(), text);
            QCOMPARE(box.textFormat(), Qt::PlainText);
            QCOMPARE(box.windowTitle(), u"a[*][*].csd"_s); // the toolkit shows a[*].csd
            QCOMPARE(box.icon(), QMessageBox::Warning);
            QCOMPARE(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            box.button(QMessageBox::Ok)->click();
        });
        QCOMPARE(m_desktop.MessageBox({.text = text, .icon = BoxIcon::Warning, .title = u"a[*].csd"_s}),
                 BoxAnswer::Ok);
    }

    void BoxGivesTheButtonThatWasPressed_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("press");
        QTest::addColumn<int>("answer");
        const auto row = [](const char *name, BoxButtons buttons, QMessageBox::StandardButton press,
                            BoxAnswer answer) {
            QTest::newRow(name) << int(buttons) << int(press) << int(answer);
        };
        row("ok", BoxButtons::Ok, QMessageBox::Ok, BoxAnswer::Ok);
        row("ok of two", BoxButtons::OkCancel, QMessageBox::Ok, BoxAnswer::Ok);
        row("cancel of two", BoxButtons::OkCancel, QMessageBox::Cancel, BoxAnswer::Cancel);
        row("yes", BoxButtons::YesNo, QMessageBox::Yes, BoxAnswer::Yes);
        row("no", BoxButtons::YesNo, QMessageBox::No, BoxAnswer::No);
        row("yes of three", BoxButtons::YesNoCancel, QMessageBox::Yes, BoxAnswer::Yes);
        row("no of three", BoxButtons::YesNoCancel, QMessageBox::No, BoxAnswer::No);
        row("cancel of three", BoxButtons::YesNoCancel, QMessageBox::Cancel, BoxAnswer::Cancel);
    }

    void BoxGivesTheButtonThatWasPressed()
    {
        QFETCH(int, buttons);
        QFETCH(int, press);
        QFETCH(int, answer);
        ModalDriver modal;
        modal.Expect<QMessageBox>([&](QMessageBox &box) {
            QVERIFY(box.button(QMessageBox::StandardButton(press)));
            box.button(QMessageBox::StandardButton(press))->click();
        });
        QCOMPARE(int(m_desktop.MessageBox({.text = u"?"_s, .buttons = BoxButtons(buttons)})), answer);
    }

    void BoxDefaultIsTheFirstButtonUnlessNamed_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("named");
        QTest::addColumn<int>("answer");
        QTest::newRow("ok") << int(BoxButtons::OkCancel) << -1 << int(BoxAnswer::Ok);
        QTest::newRow("yes") << int(BoxButtons::YesNo) << -1 << int(BoxAnswer::Yes);
        QTest::newRow("yes of three") << int(BoxButtons::YesNoCancel) << -1 << int(BoxAnswer::Yes);
        QTest::newRow("no") << int(BoxButtons::YesNo) << int(BoxAnswer::No) << int(BoxAnswer::No);
    }

    void BoxDefaultIsTheFirstButtonUnlessNamed()
    {
        QFETCH(int, buttons);
        QFETCH(int, named);
        QFETCH(int, answer);
        ModalDriver modal;
        modal.Expect<QMessageBox>([&](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
        MessageBoxRequest request{.text = u"?"_s, .buttons = BoxButtons(buttons)};
        if (named >= 0)
            request.defaultAnswer = BoxAnswer(named);
        QCOMPARE(int(m_desktop.MessageBox(request)), answer);
    }

    void EscapeNeverAgrees_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("answer");
        QTest::newRow("ok and cancel") << int(BoxButtons::OkCancel) << int(BoxAnswer::Cancel);
        QTest::newRow("yes and no") << int(BoxButtons::YesNo) << int(BoxAnswer::No);
        QTest::newRow("three") << int(BoxButtons::YesNoCancel) << int(BoxAnswer::Cancel);
    }

    void EscapeNeverAgrees()
    {
        QFETCH(int, buttons);
        QFETCH(int, answer);
        ModalDriver modal;
        modal.Expect<QMessageBox>([&](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QCOMPARE(int(m_desktop.MessageBox({.text = u"?"_s, .buttons = BoxButtons(buttons)})), answer);
    }

    void BoxStandsOverTheActiveDialogAndNotOverAMinimizedWindow()
    {
        QWidget window;
        window.showMinimized();
        ModalDriver modal;
        modal.Expect<QMessageBox>([&](QMessageBox &box) {
            QVERIFY(!box.parentWidget());
            box.reject();
        });
        m_desktop.MessageBox({.text = u"?"_s});
        window.showNormal();
        modal.Expect<QMessageBox>([&](QMessageBox &box) {
            QCOMPARE(box.parentWidget(), &window);
            box.reject();
        });
        m_desktop.MessageBox({.text = u"?"_s});
    }

    // Input box

    void InputBoxGivesTheTextOrNothing()
    {
        ModalDriver modal;
        modal.Expect<QInputDialog>([](QInputDialog &box) {
            QCOMPARE(box.windowTitle(), u"Rename"_s);
            const auto *label = box.findChild<QLabel *>();
            QCOMPARE(label->text(), u"Rename 'R&&B <i>.orc' to:"_s); // shown with one &, and with its tag
            QCOMPARE(label->textFormat(), Qt::PlainText);
            auto *edit = box.findChild<QLineEdit *>();
            QCOMPARE(edit->text(), u"R&B <i>.orc"_s);
            edit->setText(u"x.orc"_s);
            box.accept();
        });
        QCOMPARE(
            m_desktop.InputBox(u"Rename"_s, u"Rename 'R&B <i>.orc' to:"_s, u"R&B <i>.orc"_s).value_or(u"-"_s),
            u"x.orc"_s);
        modal.Expect<QInputDialog>([](QInputDialog &box) { box.reject(); });
        QVERIFY(!m_desktop.InputBox(u"Rename"_s, u"to:"_s, {}));
    }

    // File dialogs

    void FiltersHaveAllFilesLast()
    {
        QCOMPARE(NameFilters({}), QStringList{u"All Files (*)"_s});
        QCOMPARE(
            NameFilters({{u"Orchestra Files"_s, u"*.orc;*.udo"_s}, {u"Score Files"_s, u"*.sco"_s}}),
            (QStringList{u"Orchestra Files (*.orc *.udo)"_s, u"Score Files (*.sco)"_s, u"All Files (*)"_s}));
        QCOMPARE(NameFilters({{u"All Files"_s, u"*"_s}, {u"Score Files"_s, u"*.sco"_s}}),
                 (QStringList{u"All Files (*)"_s, u"Score Files (*.sco)"_s}));
        QCOMPARE(NameFilters({{u"Text files"_s, u"*.txt"_s}, {u"All files"_s, u"*.*"_s}}),
                 (QStringList{u"Text files (*.txt)"_s, u"All files (*)"_s}));
    }

    void ProgramsAreFilesThatMayBeRun()
    {
        Write(u"tools/play"_s, "#!/bin/sh\n", true);
        Write(u"tools/readme"_s, "text\n");
        Write(u"tools/sub/file"_s, "text\n");
        QCOMPARE(NameFilters({{u"Executables"_s, u"*.exe"_s}}).first(), u"Executables (*)"_s);

        const auto shown = [](const QFileDialog &dialog) {
            const auto *list = dialog.findChild<QListView *>(u"listView"_s);
            QStringList names;
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
                names.append(list->model()->index(row, 0, list->rootIndex()).data().toString());
            return names;
        };
        ModalDriver modal;
        modal.Expect<QFileDialog>([&](QFileDialog &dialog) {
            // Folders first, as ever.
            QTRY_COMPARE(shown(dialog), (QStringList{u"sub"_s, u"play"_s}));
            auto *types = dialog.findChild<QComboBox *>(u"fileTypeCombo"_s);
            QTest::keyClick(types, Qt::Key_Down);
            QTRY_COMPARE(shown(dialog), (QStringList{u"sub"_s, u"play"_s, u"readme"_s}));
            QTest::keyClick(types, Qt::Key_Up);
            QTRY_COMPARE(shown(dialog), (QStringList{u"sub"_s, u"play"_s}));
            dialog.findChild<QLineEdit *>()->setText(u"play"_s);
            QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
        });
        const FileDialogAnswer answer = m_desktop.OpenFileDialog({.title = u"Select a command"_s,
                                                                  .filters = {{u"Executables"_s, u"*.exe"_s}},
                                                                  .folder = Path(u"tools"_s)});
        QCOMPARE(answer.path, Path(u"tools/play"_s));
    }

    void FiltersHoldAnyFileName()
    {
        QCOMPARE(NameFilters({{u"Orchestra Files (similar names)"_s, u"my (old) p\u00ef*.orc"_s}}).first(),
                 u"Orchestra Files (similar names) (my??old??p?*.orc)"_s);
    }

    void OpenDialogStartsAsAskedAndGivesTheChoice()
    {
        const QString file = Write(u"pieces/a.orc"_s, "sr=44100\n");
        ModalDriver modal;
        modal.Expect<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Select Orchestra file"_s);
            QCOMPARE(dialog.directory().absolutePath(), Path(u"pieces"_s));
            QCOMPARE(dialog.selectedNameFilter(), u"Two (a*.orc)"_s);
            QCOMPARE(dialog.nameFilters().last(), u"All Files (*)"_s);
            QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
            QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
            QCOMPARE(dialog.findChild<QLineEdit *>()->text(), u"a.orc"_s);
            auto *types = dialog.findChild<QComboBox *>(u"fileTypeCombo"_s);
            QVERIFY(types);
            types->setCurrentIndex(0);
            Q_EMIT types->activated(0);
            dialog.findChild<QLineEdit *>()->setText(u"a.orc"_s);
            QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
        });
        const FileDialogAnswer answer =
            m_desktop.OpenFileDialog({.title = u"Select Orchestra file"_s,
                                      .filters = {{u"One"_s, u"*.orc"_s}, {u"Two"_s, u"a*.orc"_s}},
                                      .filterIndex = 1,
                                      .folder = file, // a file in the folder stands for the folder
                                      .fileName = u"a.orc"_s});
        QCOMPARE(answer.path, QDir::toNativeSeparators(file));
        QCOMPARE(answer.filterIndex, 0);
    }

    void PickersFitTheScreen()
    {
        const LargeFont font(3);
        ModalDriver modal;
        const auto look = [](QFileDialog &dialog) {
            const QRect place = dialog.frameGeometry();
            QVERIFY2(dialog.screen()->availableGeometry().contains(place),
                     qPrintable(QDebug::toString(place)));
            dialog.reject();
        };
        modal.Expect<QFileDialog>(look);
        m_desktop.OpenFileDialog({.filters = {{u"One"_s, u"*.orc"_s}}});
        modal.Expect<QFileDialog>(look);
        m_desktop.SaveFileDialog({.filters = {{u"One"_s, u"*.orc"_s}}});
        modal.Expect<QFileDialog>(look);
        m_desktop.BrowseFolder(u"Where to"_s, m_folder.path());
    }

    void OpenDialogTellsOfNamesThatItCannotShow()
    {
        const auto make = [this](const char *name) {
            const QByteArray path = QFile::encodeName(m_folder.path()) + '/' + name;
            const int made = ::open(path.constData(), O_CREAT | O_WRONLY, 0644);
            QVERIFY(made >= 0);
            ::close(made);
        };
        const auto note = [](QFileDialog &dialog) {
            const auto *label = dialog.findChild<QLabel *>(u"lblLostNames"_s);
            return label && label->isVisible() ? label->text() : QString();
        };
        const QString file = Write(u"lost/a.orc"_s, "");
        Write(u"not lost/a.orc"_s, "");
        make("lost/caf\xE9.orc");
        for (const QString &expected :
             {u"The name of 1 file here is not UTF-8. Rename it to see it."_s,
              u"The names of 2 files here are not UTF-8. Rename them to see them."_s}) {
            ModalDriver modal;
            modal.Expect<QFileDialog>([&](QFileDialog &dialog) {
                QCOMPARE(note(dialog), expected);
                dialog.setDirectory(Path(u"not lost"_s));
                QCOMPARE(note(dialog), QString());
                dialog.reject();
            });
            m_desktop.OpenFileDialog({.folder = file});
            make("lost/\xFF.orc");
        }
        // A path that a picker of the desktop gives is told about when it is opened.
        QVERIFY(IsLostName(QUrl::fromEncoded("file:///music/caf%E9.orc").toLocalFile()));
    }

    void OpenDialogCancelledGivesNoPath()
    {
        ModalDriver modal;
        modal.Expect<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
        QCOMPARE(m_desktop.OpenFileDialog({.title = u"Open"_s, .folder = u"/no/such/folder"_s}).path,
                 QString());
    }

    void SaveDialogAddsTheDefaultExtension()
    {
        ModalDriver modal;
        modal.Expect<QFileDialog>([](QFileDialog &dialog) {
            QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
            dialog.findChild<QLineEdit *>()->setText(u"new"_s);
            QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
        });
        QCOMPARE(
            m_desktop
                .SaveFileDialog({.title = u"Save"_s, .folder = m_folder.path(), .defaultExtension = u"orc"_s})
                .path,
            QDir::toNativeSeparators(Path(u"new.orc"_s)));
    }

    void AFileThatTheDefaultExtensionNamesIsAskedAbout()
    {
        const QString file = Write(u"piece.orc"_s, "x");
        const FileDialogRequest request{
            .title = u"Save"_s, .folder = m_folder.path(), .defaultExtension = u"orc"_s};
        const auto name = [](const QString &typed) {
            return [typed](QFileDialog &dialog) {
                dialog.findChild<QLineEdit *>()->setText(typed);
                QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
            };
        };
        const auto answer = [](QMessageBox::StandardButton button) {
            return [button](QMessageBox &box) {
                QCOMPARE(box.text(), u"piece.orc already exists.\nDo you want to replace it?"_s);
                QCOMPARE(box.windowTitle(), u"Save"_s);
                QCOMPARE(box.defaultButton(), box.button(QMessageBox::No));
                box.button(button)->click();
            };
        };
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>(name(u"piece"_s));
            modal.Expect<QMessageBox>(answer(QMessageBox::No));
            modal.Expect<QFileDialog>([](QFileDialog &dialog) {
                QCOMPARE(dialog.findChild<QLineEdit *>()->text(), u"piece"_s);
                dialog.reject();
            });
            QCOMPARE(m_desktop.SaveFileDialog(request).path, QString());
        }
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>(name(u"piece"_s));
            modal.Expect<QMessageBox>(answer(QMessageBox::Yes));
            QCOMPARE(m_desktop.SaveFileDialog(request).path, QDir::toNativeSeparators(file));
        }
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>(name(u"piece"_s));
            FileDialogRequest silent = request;
            silent.overwritePrompt = false;
            QCOMPARE(m_desktop.SaveFileDialog(silent).path, QDir::toNativeSeparators(file));
        }
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>(name(u"other.inc"_s));
            QCOMPARE(m_desktop.SaveFileDialog(request).path, QDir::toNativeSeparators(Path(u"other.inc"_s)));
        }
        {
            // A file without an extension that was picked, and asked about, is meant.
            const QString bare = Write(u"README"_s, "x");
            ModalDriver modal;
            modal.Expect<QFileDialog>(name(u"README"_s));
            modal.Expect<QMessageBox>([](QMessageBox &box) { box.button(QMessageBox::Yes)->click(); });
            QCOMPARE(m_desktop.SaveFileDialog(request).path, QDir::toNativeSeparators(bare));
        }
    }

    void SaveDialogAsksBeforeOverwriting()
    {
        const QString file = Write(u"there.orc"_s, "x");
        const FileDialogRequest request{
            .title = u"Save"_s, .folder = m_folder.path(), .fileName = u"there.orc"_s};
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>([](QFileDialog &dialog) {
                QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
            });
            modal.Expect<QMessageBox>([](QMessageBox &box) { box.button(QMessageBox::Yes)->click(); });
            QCOMPARE(m_desktop.SaveFileDialog(request).path, QDir::toNativeSeparators(file));
        }
        {
            ModalDriver modal;
            modal.Expect<QFileDialog>([](QFileDialog &dialog) {
                QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
            });
            FileDialogRequest silent = request;
            silent.overwritePrompt = false;
            QCOMPARE(m_desktop.SaveFileDialog(silent).path, QDir::toNativeSeparators(file));
        }
    }

    void FolderPicker()
    {
        QDir().mkpath(Path(u"folder one"_s));
        ModalDriver modal;
        modal.Expect<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Pick a target folder."_s);
            QCOMPARE(dialog.fileMode(), QFileDialog::Directory);
            QCOMPARE(dialog.directory().absolutePath(), Path(u"folder one"_s));
            dialog.findChild<QLineEdit *>()->setText(Path(u"folder one"_s));
            QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
        });
        QCOMPARE(m_desktop.BrowseFolder(u"Pick a target folder."_s, Path(u"folder one"_s)),
                 QDir::toNativeSeparators(Path(u"folder one"_s)));
        modal.Expect<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
        QCOMPARE(m_desktop.BrowseFolder(u"Pick"_s, {}), QString());
    }

    // Keys and clipboard

    void KeysAreReadAtThisMoment()
    {
        QWidget window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(!m_desktop.IsKeyDown(KeyCode::Shift));
        QTest::keyPress(window.windowHandle(), Qt::Key_A, Qt::ShiftModifier | Qt::AltModifier);
        QVERIFY(m_desktop.IsKeyDown(KeyCode::Shift));
        QVERIFY(m_desktop.IsKeyDown(KeyCode::Alt));
        QVERIFY(!m_desktop.IsKeyDown(KeyCode::Ctrl));
        QTest::keyRelease(window.windowHandle(), Qt::Key_A, Qt::NoModifier);
        QVERIFY(!m_desktop.IsKeyDown(KeyCode::Shift));
    }

    void ClipboardHoldsPlainTextOnly()
    {
        auto *rich = new QMimeData;
        rich->setHtml(u"<b>x</b>"_s);
        rich->setText(u"x"_s);
        QGuiApplication::clipboard()->setMimeData(rich);
        m_desktop.SetClipboardText(u"instr 1\n\u20ac"_s);
        QVERIFY(m_desktop.ClipboardHasText());
        QCOMPARE(m_desktop.ClipboardText(), u"instr 1\n\u20ac"_s);
        QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasHtml());
        m_desktop.SetClipboardText({});
        QVERIFY(!m_desktop.ClipboardHasText());
    }

    void AskingForTextDoesNotFetchIt()
    {
        struct CountedText : QMimeData {
            int *fetched;
            QStringList formats() const override { return {u"text/plain"_s}; }
            bool hasFormat(const QString &format) const override { return formats().contains(format); }
            QVariant retrieveData(const QString &, QMetaType) const override
            {
                ++*fetched;
                return u"long text of another program"_s;
            }
        };
        int fetched = 0;
        auto *text = new CountedText;
        text->fetched = &fetched;
        QGuiApplication::clipboard()->setMimeData(text);
        for (int move = 0; move < 10; ++move)
            QVERIFY(m_desktop.ClipboardHasText());
        QCOMPARE(fetched, 0);
        QCOMPARE(m_desktop.ClipboardText(), u"long text of another program"_s);
        QVERIFY(fetched > 0);
        QGuiApplication::clipboard()->clear();
    }

    // The shell

    void ProgramRunsInItsFolderWithItsParameters()
    {
        const QString program = Speaker(u"my programs/speak"_s);
        const QString folder = Path(u"a folder"_s);
        QDir().mkpath(folder);
        QVERIFY(m_desktop.ShellRun({.file = u'"' + program + u'"',
                                    .parameters = u"-d  -o \"x y.wav\" \"\" z"_s,
                                    .folder = folder}) > ShellFailure);
        QTRY_VERIFY(!Said().isEmpty());
        QCOMPARE(Said(), folder.toUtf8() + "\n<-d>\n<-o>\n<x y.wav>\n<>\n<z>\nend\n"); // and nothing to read
    }

    void BareProgramNameIsLookedUpInPath()
    {
        Speaker(u"bin/zelvanespeak"_s);
        QVERIFY(
            m_desktop.ShellRun({.file = u"zelvanespeak"_s, .parameters = u"1"_s, .folder = m_folder.path()}) >
            ShellFailure);
        QTRY_COMPARE(Said(), m_folder.path().toUtf8() + "\n<1>\nend\n");
        QCOMPARE(m_desktop.ExecutableKind(u"zelvanespeak"_s), u"Script"_s);
        QCOMPARE(m_desktop.DisplayName(u"zelvanespeak"_s), u"zelvanespeak"_s);
    }

    void StartedProgramIsNotWaitedForAndLeavesNoZombie()
    {
        const QString program = Speaker(u"slow"_s, UntilToldToGoOn());
        QVERIFY(m_desktop.ShellRun({.file = program}) > ShellFailure);
        QVERIFY2(Said().isEmpty(), "the call waited for the program");
        Write(u"go"_s, "");
        QTRY_VERIFY(!Said().isEmpty());
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), pid_t(-1));
        QCOMPARE(errno, ECHILD);
    }

    void OutputGoesWhereOurOwnGoes()
    {
        const QString program = Write(u"loud"_s, "#!/bin/sh\necho out; echo err >&2\n", true);
        {
            const Redirect out(STDOUT_FILENO, Path(u"out"_s));
            const Redirect err(STDERR_FILENO, Path(u"err"_s));
            m_desktop.ShellRun({.file = program});
            QTRY_COMPARE(Contents(Path(u"err"_s)), QByteArray("err\n"));
            QCOMPARE(Contents(Path(u"out"_s)), QByteArray("out\n"));
            m_desktop.RunAndWait({.command = program});
        }
        QCOMPARE(Contents(Path(u"out"_s)), QByteArray("out\nout\n"));
        QCOMPARE(Contents(Path(u"err"_s)), QByteArray("err\nerr\n"));
    }

    void AProgramWithoutAWindowGetsAConsoleWhereItIsWanted_data()
    {
        QTest::addColumn<bool>("forAll");
        QTest::addColumn<QString>("wish"); // of the request: "0", "1" or none
        QTest::addColumn<bool>("console");
        QTest::newRow("for all") << true << QString() << true;
        QTest::newRow("for none") << false << QString() << false;
        QTest::newRow("for all but this") << true << u"0"_s << false;
        QTest::newRow("for this alone") << false << u"1"_s << true;
    }

    void AProgramWithoutAWindowGetsAConsoleWhereItIsWanted()
    {
        QFETCH(bool, forAll);
        QFETCH(QString, wish);
        QFETCH(bool, console);
        QtDesktop desktop;
        desktop.SetConsole({.program = Speaker(u"console"_s), .wanted = [forAll] { return forAll; }});
        const QString program = Speaker(u"render"_s);
        ShellRequest request{.file = program, .parameters = u"-o \"x y.wav\""_s, .folder = m_folder.path()};
        request.showState = WindowState::Minimized;
        request.console.title = u"A preset"_s;
        if (!wish.isEmpty())
            request.console.wanted = wish == u"1"_s;
        QVERIFY(desktop.ShellRun(request) > ShellFailure);
        QTRY_VERIFY(!Said().isEmpty());
        const QByteArray folder = m_folder.path().toUtf8();
        if (console)
            QVERIFY2(Said().endsWith("\n<--title>\n<A preset>\n<--window>\n<2>\n<--folder>\n<" + folder +
                                     ">\n<--starter>\n<" +
                                     QByteArray::number(QCoreApplication::applicationPid()) + ">\n<-->\n<" +
                                     program.toUtf8() + ">\n<-o>\n<x y.wav>\nend\n"),
                     Said().constData());
        else
            QCOMPARE(Said(), folder + "\n<-o>\n<x y.wav>\nend\n");
    }

    void AProgramWithAWindowGetsNoConsole()
    {
        const QByteArray data = qgetenv("XDG_DATA_HOME");
        const auto restore = qScopeGuard([&] { qputenv("XDG_DATA_HOME", data); });
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path()));
        const QString program = Speaker(u"soundeditor"_s);
        Write(u"applications/soundeditor.desktop"_s,
              "[Desktop Entry]\nType=Application\nExec=" + program.toUtf8() + " %f\n");
        QtDesktop desktop;
        desktop.SetConsole({.program = Speaker(u"console"_s)});
        QVERIFY(desktop.ShellRun({.file = program, .folder = m_folder.path()}) > ShellFailure);
        QTRY_COMPARE(Said(), m_folder.path().toUtf8() + "\nend\n");
    }

    void WhatTheShellCannotDoItSaysItself_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("message");
        Write(u"broken"_s, "#!/no/such/interpreter\n", true);
        Speaker(u"speak"_s);
        QTest::newRow("no such program")
            << u"zelvane-no-such"_s << QString()
            << u"Cannot find 'zelvane-no-such'. Make sure that the name is typed "
               u"correctly, then try again."_s;
        QTest::newRow("no such file")
            << u"/no/such.csd"_s << QString()
            << u"Cannot find '/no/such.csd'. Make sure that the name is typed correctly, then try again."_s;
        QTest::newRow("no such folder")
            << Path(u"speak"_s) << u"/no/such"_s
            << u"Cannot find the folder '/no/such' to start '"_s + Path(u"speak"_s) + u"' in."_s;
        QTest::newRow("no interpreter")
            << Path(u"broken"_s) << QString() << u"Cannot start '"_s + Path(u"broken"_s) + u"'"_s;
    }

    void WhatTheShellCannotDoItSaysItself()
    {
        QFETCH(QString, file);
        QFETCH(QString, folder);
        QFETCH(QString, message);
        {
            ModalDriver modal;
            modal.Expect<QMessageBox>([&](QMessageBox &box) {
                QVERIFY2(box.text().startsWith(message), qPrintable(box.text()));
                QCOMPARE(box.windowTitle(), file);
                QCOMPARE(box.icon(), QMessageBox::Critical);
                box.accept();
            });
            QVERIFY(m_desktop.ShellRun({.file = file, .folder = folder}) <= ShellFailure);
        }
        ModalDriver silent; // fails on any dialog: with a named verb the caller tells
        QVERIFY(m_desktop.ShellRun({.verb = u"open"_s, .file = file, .folder = folder}) <= ShellFailure);
    }

    void DocumentsFoldersAndAddressesGoToTheirHandler_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("handed");
        const QString sound = Write(u"my sound.wav"_s, "RIFF");
        const QString runnable = Write(u"piece.csd"_s, "<CsoundSynthesizer>\n", true);
        QTest::newRow("document") << sound << sound.toUtf8();
        QTest::newRow("document in quotes") << u'"' + sound + u'"' << sound.toUtf8();
        QTest::newRow("document below the folder") << u"my sound.wav"_s << sound.toUtf8();
        QTest::newRow("document on a file system where all may be run") << runnable << runnable.toUtf8();
        QTest::newRow("folder") << m_folder.path() << m_folder.path().toUtf8();
        QTest::newRow("mail")
            << u"mailto:a@b.example?subject=Zelvane v1.0.0 bug report&body=x (6)"_s
            << QByteArray("mailto:a@b.example?subject=Zelvane%20v1.0.0%20bug%20report&body=x%20(6)");
        QTest::newRow("web") << u"https://zelvane.example.org/"_s
                             << QByteArray("https://zelvane.example.org/");
    }

    void DocumentsFoldersAndAddressesGoToTheirHandler()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, handed);
        Speaker(u"bin/xdg-open"_s);
        QVERIFY(m_desktop.ShellRun({.file = file, .folder = m_folder.path()}) > ShellFailure);
        QTRY_VERIFY(!Said().isEmpty());
        QCOMPARE(Said(), QDir::currentPath().toUtf8() + "\n<" + handed + ">\nend\n");
    }

    void ExploredFolderGoesToItsHandlerWithoutAFileManager()
    {
        Speaker(u"bin/xdg-open"_s);
        QVERIFY(m_desktop.ShellRun({.verb = u"explore"_s, .file = m_folder.path()}) > ShellFailure);
        QTRY_VERIFY(Said().contains("<" + m_folder.path().toUtf8() + ">"));
        QVERIFY(m_desktop.ShellRun({.verb = u"properties"_s, .file = m_folder.path()}) <= ShellFailure);
    }

    void HandlerThatFailsIsAFailure()
    {
        const QString sound = Write(u"s.wav"_s, "RIFF");
        Write(u"bin/xdg-open"_s, "#!/bin/sh\nexit 3\n", true);
        QtDesktop desktop;
        desktop.SetHandlerPatience(60'000); // however slow the machine is
        QVERIFY(desktop.ShellRun({.verb = u"open"_s, .file = sound}) <= ShellFailure);
        ModalDriver modal;
        modal.Expect<QMessageBox>([&](QMessageBox &box) {
            QCOMPARE(box.text(), u"There is no program associated with '"_s + sound + u"'."_s);
            box.accept();
        });
        QVERIFY(desktop.ShellRun({.file = sound}) <= ShellFailure);
    }

    void HandlerThatStaysOpenIsASuccess()
    {
        Speaker(u"bin/xdg-open"_s, UntilToldToGoOn());
        QtDesktop desktop;
        desktop.SetHandlerPatience(100);
        QVERIFY(desktop.ShellRun({.verb = u"open"_s, .file = m_folder.path()}) > ShellFailure);
        QVERIFY2(Said().isEmpty(), "the call waited for the handler's end");
        Write(u"go"_s, "");
        QTRY_COMPARE(::waitpid(-1, nullptr, WNOHANG), pid_t(-1)); // reaped when it ends
        QVERIFY(!Said().isEmpty());
    }

    void FindStartsTheSearchTool()
    {
        const QString file = Write(u"s.wav"_s, "RIFF");
        qputenv("PATH", Path(u"bin"_s).toLocal8Bit() + ":/usr/bin:/bin");
        Speaker(u"bin/kfind"_s);
        QVERIFY(m_desktop.ShellRun({.verb = u"find"_s, .file = m_folder.path()}) > ShellFailure);
        QTRY_VERIFY(!Said().isEmpty());
        QCOMPARE(Said(), m_folder.path().toUtf8() + "\n<" + m_folder.path().toUtf8() + ">\nend\n");
        qputenv("PATH", Path(u"empty"_s).toLocal8Bit());
        QVERIFY(m_desktop.ShellRun({.verb = u"find"_s, .file = m_folder.path()}) <= ShellFailure);
    }

    // The process that is waited for

    void WaitsForTheProcessAndServesNothing()
    {
        const QString program = Speaker(u"render"_s, "sleep 0.4");
        bool served = false;
        QTimer::singleShot(0, this, [&] { served = true; });
        int startedCalls = 0;
        bool endedBeforeStarted = false;
        QVERIFY(m_desktop.RunAndWait(
            {.command = program, .parameters = u"-o \"a b.wav\""_s, .folder = m_folder.path()}, [&] {
                ++startedCalls;
                endedBeforeStarted = !Said().isEmpty();
            }));
        QCOMPARE(Said(), m_folder.path().toUtf8() + "\n<-o>\n<a b.wav>\nend\n"); // it has ended
        QCOMPARE(startedCalls, 1);
        QVERIFY(!endedBeforeStarted);
        QVERIFY2(!served, "an event was handled during the wait");
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), pid_t(-1));
        QTRY_VERIFY(served);
    }

    void TheProgramLooksAroundDuringTheWait()
    {
        const QString waits = Write(u"waits"_s, "#!/bin/sh\nwhile [ ! -e go ]; do sleep 0.05; done\n", true);
        QStringList told;
        m_desktop.SetWaitHooks({.begins = [&] { told.append(u"begins"_s); },
                                .looks =
                                    [&] {
                                        told.append(u"looks"_s);
                                        if (told.size() == 4)
                                            Write(u"go"_s, "");
                                    }});
        QVERIFY(m_desktop.RunAndWait({.command = waits, .folder = m_folder.path()},
                                     [&] { told.append(u"started"_s); }));
        m_desktop.SetWaitHooks({});
        QCOMPARE(told.first(4), QStringList({u"started"_s, u"begins"_s, u"looks"_s, u"looks"_s}));
    }

    void AConsoleIsWaitedForUntilItsProgramHasEnded()
    {
        // It says so at the descriptor behind "--notify", and stays. It goes when its folder has gone.
        const QString console = Write(u"console"_s,
                                      "#!/bin/bash\nwhile [ \"$1\" != --notify ]; do shift; done; fd=$2\n"
                                      "printf s >&$fd\nwhile [ ! -e goes ]; do sleep 0.05; done\n"
                                      "touch ended; printf e >&$fd; exec {fd}>&-\n"
                                      "while [ -e ended ] && [ ! -e leave ]; do sleep 0.05; done\n",
                                      true);
        QtDesktop desktop;
        desktop.SetConsole({.program = console});
        int startedCalls = 0;
        const QDir before = QDir::current();
        const auto restore = qScopeGuard([&] { QDir::setCurrent(before.path()); });
        QDir::setCurrent(m_folder.path());
        bool served = false;
        QTimer::singleShot(0, this, [&] { served = true; });
        QVERIFY(desktop.RunAndWait({.command = Speaker(u"render"_s), .folder = m_folder.path()}, [&] {
            ++startedCalls;
            Write(u"goes"_s, "");
        }));
        Write(u"leave"_s, "");
        QCOMPARE(startedCalls, 1);
        QVERIFY(QFile::exists(Path(u"ended"_s)));
        QVERIFY2(!served, "an event was handled during the wait");
        QTRY_VERIFY(served);
    }

    void ExitCodeIsNotLookedAt()
    {
        QVERIFY(m_desktop.RunAndWait({.command = Write(u"fails"_s, "#!/bin/sh\nexit 7\n", true)}));
        QVERIFY(m_desktop.RunAndWait({.command = Write(u"dies"_s, "#!/bin/sh\nkill -9 $$\n", true)}));
    }

    void WhatIsNoProgramCannotBeWaitedFor_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("folder");
        QTest::newRow("document") << Write(u"x.csd"_s, "x") << QString();
        QTest::newRow("document that may be run") << Write(u"y.csd"_s, "x", true) << QString();
        QTest::newRow("no such file") << u"/no/such"_s << QString();
        QTest::newRow("no such name") << u"zelvane-no-such"_s << QString();
        QTest::newRow("folder") << m_folder.path() << QString();
        QTest::newRow("no such folder") << Speaker(u"speak"_s) << u"/no/such"_s;
        QTest::newRow("no interpreter") << Write(u"broken"_s, "#!/no/such\n", true) << QString();
        QTest::newRow("empty") << QString() << QString();
    }

    void WhatIsNoProgramCannotBeWaitedFor()
    {
        QFETCH(QString, command);
        QFETCH(QString, folder);
        bool started = false;
        ModalDriver silent;
        QVERIFY(!m_desktop.RunAndWait({.command = command, .folder = folder}, [&] { started = true; }));
        QVERIFY(!started);
    }

    // What the desktop knows of a file

    void NamesAndTypesOfFiles()
    {
        const QString text = Write(u"folder/notes.txt"_s, "hello\n");
        QCOMPARE(m_desktop.TypeName(text), u"plain text document"_s);
        QCOMPARE(m_desktop.DisplayName(text), u"notes.txt"_s);
        QCOMPARE(m_desktop.ExecutableKind(text), QString());
        QCOMPARE(m_desktop.DisplayName(Path(u"folder/"_s)), u"folder"_s);
        QCOMPARE(m_desktop.DisplayName(u"/"_s), u"/"_s);
        QCOMPARE(m_desktop.TypeName(Path(u"folder"_s)), u"folder"_s);
        for (const QString &unknown : {u"/no/such.txt"_s, u"zelvane-no-such"_s, QString()}) {
            QCOMPARE(m_desktop.TypeName(unknown), QString());
            QCOMPARE(m_desktop.DisplayName(unknown), QString());
            QCOMPARE(m_desktop.ExecutableKind(unknown), QString());
        }
    }

    void KindsOfExecutables()
    {
        QVERIFY(m_desktop.ExecutableKind(QCoreApplication::applicationFilePath()).startsWith(u"ELF "_s));
        QCOMPARE(m_desktop.ExecutableKind(Write(u"s"_s, "#!/bin/sh\n", true)), u"Script"_s);
        QCOMPARE(m_desktop.ExecutableKind(Write(u"s.csd"_s, "<CsoundSynthesizer>", true)), QString());
        QCOMPARE(m_desktop.ExecutableKind(Write(u"plain"_s, "#!/bin/sh\n")), QString());
        QCOMPARE(m_desktop.ExecutableKind(m_folder.path()), QString());
    }

    void SpecialFilesBlockNothing()
    {
        const QString fifo = Path(u"fifo"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0700), 0);
        QVERIFY(!m_desktop.TypeName(fifo).isEmpty());
        QCOMPARE(m_desktop.ExecutableKind(fifo), QString());
        QVERIFY(!m_desktop.RunAndWait({.command = fifo}));
    }
};

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<TestQtDesktop>(argc, argv);
}
#include "test_qtdesktop.moc"
