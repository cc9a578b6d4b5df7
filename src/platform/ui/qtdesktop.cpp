// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/qtdesktop.h"

#include "platform/consolestart.h"
#include "platform/executables.h"
#include "platform/lostnames.h"
#include "platform/ownwindow.h"
#include "platform/parameters.h"
#include "platform/runtimeerror.h"
#include "platform/ui/filemanager.h"
#include "platform/ui/onelinefield.h"
#include "platform/ui/plaincaption.h"
#include "platform/ui/programfilter.h"
#include "platform/ui/raisewindow.h"
#include "platform/ui/withinscreen.h"
#include "platform/windowstate.h"

#include <functional>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QInputDialog>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QMimeDatabase>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Results of ShellRun, after the numbers that shells give.
enum ShellResult { FileNotFound = 2, PathNotFound = 3, AccessDenied = 5, NoAssociation = 31, Started = 42 };

constexpr int LookEveryMs = 100;
constexpr int InputCharacters = 40; ///< room in an input box: file names and titles are typed there

/// The window that a dialog stands over. A minimized one would hide its dialog with it.
QWidget *DialogOwner()
{
    QWidget *owner = QApplication::activeModalWidget();
    if (!owner)
        owner = QApplication::activeWindow();
    if (!owner) {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows)
            if (window->isVisible() && window->windowType() == Qt::Window)
                owner = window;
    }
    return owner && owner->isVisible() && !owner->isMinimized() ? owner : nullptr;
}

QMessageBox::Icon IconOf(BoxIcon icon)
{
    switch (icon) {
    case BoxIcon::None:
        return QMessageBox::NoIcon;
    case BoxIcon::Critical:
        return QMessageBox::Critical;
    case BoxIcon::Question:
        return QMessageBox::Question;
    case BoxIcon::Warning:
        return QMessageBox::Warning;
    case BoxIcon::Information:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::Ok:
        return QMessageBox::Ok;
    case BoxButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ButtonOf(BoxAnswer answer)
{
    switch (answer) {
    case BoxAnswer::Ok:
        return QMessageBox::Ok;
    case BoxAnswer::Cancel:
        return QMessageBox::Cancel;
    case BoxAnswer::Yes:
        return QMessageBox::Yes;
    case BoxAnswer::No:
        return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

BoxAnswer FirstAnswer(BoxButtons buttons)
{
    return buttons == BoxButtons::Ok || buttons == BoxButtons::OkCancel ? BoxAnswer::Ok : BoxAnswer::Yes;
}

BoxAnswer AnswerOf(int button, BoxButtons buttons)
{
    switch (button) {
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    case QMessageBox::Ok:
        return BoxAnswer::Ok;
    default: // closed by the window manager, or by the end of the session
        return buttons == BoxButtons::Ok      ? BoxAnswer::Ok
               : buttons == BoxButtons::YesNo ? BoxAnswer::No
                                              : BoxAnswer::Cancel;
    }
}

/// The folder that a picker starts in; nothing when the request names none that exists.
QString StartFolder(const QString &folder)
{
    if (folder.isEmpty())
        return {};
    const QFileInfo info(folder);
    if (info.isDir())
        return info.absoluteFilePath();
    return info.absoluteDir().exists() ? info.absolutePath() : QString();
}

/// Whether a pattern asks for programs by a suffix that they do not have here.
bool IsProgramPattern(const QString &patterns)
{
#ifdef Q_OS_WIN
    Q_UNUSED(patterns);
    return false;
#else
    return patterns.compare(u"*.exe"_s, Qt::CaseInsensitive) == 0;
#endif
}

/// Says below the files of a picker when there are some that it cannot list. The pickers of the desktop lay
/// themselves out, and list them.
void TellLostNames(QFileDialog &dialog)
{
    const auto *files = dialog.findChild<QFileSystemModel *>();
    if (!files || !dialog.layout())
        return;
    auto *note = new QLabel(&dialog);
    note->setObjectName(u"lblLostNames"_s);
    note->setWordWrap(true);
    dialog.layout()->addWidget(note);
    const auto tell = [note](const QString &folder) {
        const int count = CountLostNames(folder);
        note->setText(
            count == 1 ? u"The name of 1 file here is not UTF-8. Rename it to see it."_s
                       : u"The names of %1 files here are not UTF-8. Rename them to see them."_s.arg(count));
        note->setVisible(count > 0);
    };
    QObject::connect(files, &QFileSystemModel::rootPathChanged, note, tell);
    tell(dialog.directory().absolutePath());
}

/// The toolkit's own picker may ask for more than a small screen has. @return whether something was picked
bool RunOnScreen(QFileDialog &dialog)
{
    dialog.resize(WithinScreen(dialog, dialog.size()));
    return dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
}

FileDialogAnswer RunFileDialog(QFileDialog &dialog, const FileDialogRequest &request)
{
    if (!request.title.isEmpty()) // the toolkit's own title tells opening from saving
        dialog.setWindowTitle(PlainCaption(request.title));
    const QStringList filters = NameFilters(request.filters);
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.value(request.filterIndex, filters.first()));
    for (std::size_t i = 0; i < request.filters.size(); ++i) {
        if (IsProgramPattern(request.filters[i].patterns)) {
            new ProgramFilter(dialog, filters[qsizetype(i)]);
            break;
        }
    }
    if (const QString folder = StartFolder(request.folder); !folder.isEmpty())
        dialog.setDirectory(folder);
    if (dialog.acceptMode() == QFileDialog::AcceptOpen)
        TellLostNames(dialog);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (!RunOnScreen(dialog))
        return {};
    return {QDir::toNativeSeparators(dialog.selectedFiles().constFirst()),
            int(std::max<qsizetype>(0, filters.indexOf(dialog.selectedNameFilter())))};
}

struct ShellOutcome {
    int result = Started;
    QString message = {};
};

bool IsAddress(const QString &file)
{
    // Two letters at least: one letter and a colon are a drive.
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]+:"_s);
    return scheme.match(file).hasMatch();
}

ShellOutcome CannotFind(const QString &file)
{
    return {FileNotFound,
            u"Cannot find '"_s + file + u"'. Make sure that the name is typed correctly, then try again."_s};
}

/// Starts a program that goes on by itself: it is nobody's child, so it leaves no zombie, and it has no
/// terminal to read from.
ShellOutcome StartDetached(const QString &program, const ShellRequest &request, const QString &folder)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(SplitParameters(request.parameters));
    process.setWorkingDirectory(folder);
    process.setStandardInputFile(QProcess::nullDevice());
    if (process.startDetached())
        return {};
    return {AccessDenied, u"Cannot start '"_s + program + u"': "_s + process.errorString()};
}

ConsoleRun ConsoleRunOf(const QString &program, const QString &parameters, const QString &folder,
                        WindowState showState, const ConsoleWish &wish)
{
    return {.title = wish.title.isEmpty() ? QFileInfo(program).fileName() : wish.title,
            .program = program,
            .arguments = SplitParameters(parameters),
            .folder = folder,
            .showState = showState,
            .starter = QCoreApplication::applicationPid()};
}

/// Hands an address or a document to the desktop's default handler.
/// @param patience milliseconds that the opener is waited for
ShellOutcome OpenByHandler(const QUrl &url, const QString &shown, int patience)
{
    const ShellOutcome noHandler{NoAssociation, u"There is no program associated with '"_s + shown + u"'."_s};
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    // The opener's exit code tells whether there is a handler, which the toolkit's own call does not wait
    // for. Where there is no desktop the opener is the handler's parent and goes on as long as that does:
    // patience means success.
    const QString opener = QStandardPaths::findExecutable(u"xdg-open"_s);
    if (!opener.isEmpty()) {
        auto *process =
            new QProcess; // nobody's child object: the end of the program is not to end the handler
        QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
        process->setProgram(opener);
        process->setArguments(
            {QString::fromUtf8(url.isLocalFile() ? url.toLocalFile().toUtf8() : url.toEncoded())});
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->setStandardInputFile(QProcess::nullDevice());
        process->setChildProcessModifier([] { ::setsid(); });
        process->start();
        if (!process->waitForStarted()) {
            delete process;
            return noHandler;
        }
        if (process->waitForFinished(patience))
            return process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0 ? ShellOutcome{}
                                                                                             : noHandler;
        return {};
    }
#endif
    return QDesktopServices::openUrl(url) ? ShellOutcome{} : noHandler;
}

/// The folder to start in. The part of a quoted path before its last separator has kept one quote.
QString FolderName(const QString &folder)
{
    const QString name = UnquoteFile(folder.trimmed());
    return name.startsWith(u'"') && !QFileInfo(name).isDir() ? name.mid(1) : name;
}

/// The file itself: below the request's folder when it is relative and is there, else below the current one.
QFileInfo Locate(const QString &file, const QString &folder)
{
    if (!folder.isEmpty())
        if (const QFileInfo below(QDir(folder), file); below.exists())
            return below;
    return QFileInfo(file);
}

using ConsoleChoice = std::function<QString(const QString &program)>;

ShellOutcome RunInShell(const ShellRequest &request, const ConsoleChoice &consoleFor, int handlerPatience)
{
    const QString file = UnquoteFile(request.file.trimmed());
    const QString folder = FolderName(request.folder);
    if (file.isEmpty())
        return CannotFind(file);

    // A file that may be run is asked about like any other: it is not run then.
    const bool starts = request.verb.isEmpty() || request.verb == u"open"_s;
    if (const QString program = starts ? FindExecutable(file, folder) : QString();
        !ExecutableFileKind(program).isEmpty()) {
        if (!folder.isEmpty() && !QFileInfo(folder).isDir())
            return {PathNotFound,
                    u"Cannot find the folder '"_s + folder + u"' to start '"_s + file + u"' in."_s};
        const QString console = request.verb.isEmpty() ? consoleFor(program) : QString();
        if (console.isEmpty())
            return StartDetached(program, request, folder);
        QString error;
        if (StartConsole(
                console,
                ConsoleRunOf(program, request.parameters, folder, request.showState, request.console),
                &error))
            return {};
        return {AccessDenied, u"Cannot start '"_s + console + u"': "_s + error};
    }
    const QFileInfo document = Locate(file, folder);
    if (document.exists() || document.isSymLink()) {
        const QString path = document.absoluteFilePath();
        if (!document.exists())
            return CannotFind(path);
        const bool isFolder = document.isDir();
        if (request.verb == u"find"_s)
            return FileManager::FindFiles(isFolder ? path : document.absolutePath())
                       ? ShellOutcome{}
                       : ShellOutcome{NoAssociation};
        if (request.verb == u"properties"_s)
            return FileManager::ShowProperties(path) ? ShellOutcome{} : ShellOutcome{NoAssociation};
        if (request.verb == u"openas"_s)
            return FileManager::OpenWith(path) ? ShellOutcome{} : ShellOutcome{NoAssociation};
        if (isFolder && request.verb == u"explore"_s && FileManager::ShowFolder(path))
            return {};
        return OpenByHandler(QUrl::fromLocalFile(path), path, handlerPatience);
    }
    if (IsAddress(file))
        return OpenByHandler(QUrl(file, QUrl::TolerantMode), file, handlerPatience);
    return CannotFind(file);
}

/// The file a name stands for where a tooltip asks about a command: "csound" is the program in PATH.
QFileInfo NamedFile(const QString &path)
{
    const QString file = UnquoteFile(path);
    if (file.isEmpty())
        return {};
    QFileInfo info(file);
    if (!info.exists())
        info.setFile(FindExecutable(file));
    return info;
}

} // namespace

QStringList NameFilters(const std::vector<FileFilter> &filters)
{
    static const QRegularExpression notHeld(u"[^a-zA-Z0-9_.*?+#\\-@{}/!<>$%&=^~:|;]"_s);
    const QString allFiles = u"All Files"_s;
    QStringList rows;
    bool hasAll = false;
    for (const FileFilter &filter : filters) {
        // "*.*" stands for every file, also one whose name has no point.
        QString patterns =
            filter.patterns == u"*.*"_s || IsProgramPattern(filter.patterns) ? u"*"_s : filter.patterns;
        patterns.replace(notHeld, u"?"_s).replace(u';', u' ');
        rows.append(filter.label + u" ("_s + patterns + u')');
        hasAll = hasAll || filter.label.compare(allFiles, Qt::CaseInsensitive) == 0;
    }
    if (!hasAll)
        rows.append(allFiles + u" (*)"_s);
    return rows;
}

BoxAnswer QtDesktop::MessageBox(const MessageBoxRequest &request)
{
    QMessageBox box(DialogOwner());
    box.setObjectName(u"MessageBox"_s);
    box.setWindowTitle(PlainCaption(request.title));
    box.setTextFormat(Qt::PlainText); // file names and code are no markup
    box.setText(request.text);
    box.setIcon(IconOf(request.icon));
    box.setStandardButtons(ButtonsOf(request.buttons));
    box.setDefaultButton(ButtonOf(request.defaultAnswer.value_or(FirstAnswer(request.buttons))));
    return AnswerOf(box.exec(), request.buttons);
}

std::optional<QString> QtDesktop::InputBox(const QString &title, const QString &prompt,
                                           const QString &initial)
{
    QInputDialog box(DialogOwner());
    box.setObjectName(u"InputBox"_s);
    box.setWindowTitle(PlainCaption(title));
    box.setInputMode(QInputDialog::TextInput);
    box.setLabelText(
        QString(prompt).replace(u'&', u"&&"_s)); // the label is the field's buddy: & would be its key
    box.setTextValue(initial);
    for (QLabel *label : box.findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
    for (QLineEdit *field : box.findChildren<QLineEdit *>()) {
        field->setMinimumWidth(box.fontMetrics().averageCharWidth() * InputCharacters);
        KeepOneLine(*field);
    }
    if (box.exec() != QDialog::Accepted)
        return {};
    return box.textValue();
}

FileDialogAnswer QtDesktop::OpenFileDialog(const FileDialogRequest &request)
{
    QFileDialog dialog(DialogOwner());
    dialog.setObjectName(u"OpenFileDialog"_s);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return RunFileDialog(dialog, request);
}

FileDialogAnswer QtDesktop::SaveFileDialog(const FileDialogRequest &request)
{
    // The extension is added here. The pickers of some desktops leave it to the toolkit, which does not ask
    // whether the file that has then been named may be overwritten.
    for (FileDialogRequest round = request;;) {
        QFileDialog dialog(DialogOwner());
        dialog.setObjectName(u"SaveFileDialog"_s);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
        FileDialogAnswer answer = RunFileDialog(dialog, round);
        const QFileInfo picked(answer.path);
        if (answer.path.isEmpty() || request.defaultExtension.isEmpty() || picked.exists() ||
            picked.fileName().contains(u'.'))
            return answer;
        answer.path += u'.' + request.defaultExtension;
        if (!request.overwritePrompt || !QFileInfo::exists(answer.path) ||
            MessageBox({.text = QFileInfo(answer.path).fileName() +
                                u" already exists.\nDo you want to replace it?"_s,
                        .icon = BoxIcon::Warning,
                        .buttons = BoxButtons::YesNo,
                        .title = dialog.windowTitle(),
                        .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes)
            return answer;
        round.folder = picked.absolutePath();
        round.fileName = picked.fileName();
        round.filterIndex = answer.filterIndex;
    }
}

QString QtDesktop::BrowseFolder(const QString &title, const QString &initial)
{
    QFileDialog dialog(DialogOwner());
    dialog.setObjectName(u"BrowseFolder"_s);
    dialog.setWindowTitle(PlainCaption(title));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    if (const QString folder = StartFolder(initial); !folder.isEmpty())
        dialog.setDirectory(folder);
    if (!RunOnScreen(dialog))
        return {};
    return QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
}

bool QtDesktop::IsKeyDown(KeyCode key) const
{
    const Qt::KeyboardModifiers down = QGuiApplication::queryKeyboardModifiers();
    switch (key) {
    case KeyCode::Shift:
        return down.testFlag(Qt::ShiftModifier);
    case KeyCode::Ctrl:
        return down.testFlag(Qt::ControlModifier);
    case KeyCode::Alt:
        return down.testFlag(Qt::AltModifier);
    }
    return false;
}

bool QtDesktop::ClipboardHasText() const
{
    // The kind alone: this is asked at each move of the caret, and to fetch the text from the program that
    // holds it may take long.
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

QString QtDesktop::ClipboardText() const
{
    return QGuiApplication::clipboard()->text();
}

void QtDesktop::SetClipboardText(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (text.isEmpty())
        clipboard->clear();
    else
        clipboard->setText(text);
    if (clipboard->text() != text)
        throw RunTimeError(ErrorNumber::DeviceError, u"Can't open Clipboard"_s, u"Clipboard"_s);
}

int QtDesktop::ShellRun(const ShellRequest &request)
{
    const ShellOutcome outcome = RunInShell(
        request, [&](const QString &program) { return ConsoleFor(program, request.console); },
        m_handlerPatience);
    if (outcome.result <= ShellFailure && request.verb.isEmpty())
        MessageBox({.text = outcome.message, .icon = BoxIcon::Critical, .title = request.file});
    return outcome.result;
}

QString QtDesktop::ConsoleFor(const QString &program, const ConsoleWish &wish) const
{
    if (m_console.program.isEmpty() || !wish.wanted.value_or(!m_console.wanted || m_console.wanted()) ||
        HasOwnWindow(program))
        return {};
    return m_console.program;
}

bool QtDesktop::RunAndWait(const ProcessRequest &request, const std::function<void()> &started)
{
    const QString folder = FolderName(request.folder);
    const QString program = FindExecutable(UnquoteFile(request.command.trimmed()), folder);
    if (ExecutableFileKind(program).isEmpty() || (!folder.isEmpty() && !QFileInfo(folder).isDir()))
        return false;
    const auto begins = [&] {
        if (started)
            started();
        FlushWindowSystem(); // what `started` did to the window has to be seen during the wait
        if (m_waitHooks.begins)
            m_waitHooks.begins();
    };
    if (const QString console = ConsoleFor(program, request.console); !console.isEmpty())
        return StartConsoleAndWait(
            console, ConsoleRunOf(program, request.parameters, folder, request.showState, request.console),
            {.started = begins, .looks = m_waitHooks.looks});
    QProcess process;
    process.setProgram(program);
    process.setArguments(SplitParameters(request.parameters));
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(-1))
        return false;
    begins();
    while (process.state() != QProcess::NotRunning) {
        process.waitForFinished(LookEveryMs);
        if (m_waitHooks.looks)
            m_waitHooks.looks();
    }
    return true;
}

QString QtDesktop::EnvironmentVariable(const QString &name) const
{
    return qEnvironmentVariable(name.toLocal8Bit().constData());
}

QString QtDesktop::TypeName(const QString &path) const
{
    const QFileInfo file = NamedFile(path);
    return file.exists() ? QMimeDatabase().mimeTypeForFile(file).comment() : QString();
}

QString QtDesktop::DisplayName(const QString &path) const
{
    const QFileInfo file = NamedFile(path);
    if (!file.exists())
        return {};
    const QString name = QFileInfo(QDir::cleanPath(file.absoluteFilePath())).fileName();
    return name.isEmpty() ? QDir::toNativeSeparators(file.absoluteFilePath())
                          : name; // the root has no other name
}

QString QtDesktop::ExecutableKind(const QString &path) const
{
    return ExecutableFileKind(FindExecutable(UnquoteFile(path)));
}

QDateTime QtDesktop::Now() const
{
    return QDateTime::currentDateTime();
}

} // namespace zelvane
