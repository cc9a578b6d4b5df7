// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consolekeys.h"
#include "platform/consolestart.h"
#include "platform/runtimeerror.h"
#include "platform/survivesignals.h"
#include "platform/ui/activationtoken.h"
#include "platform/ui/applicationsetup.h"
#include "platform/ui/contextmenukey.h"
#include "platform/ui/endrequest.h"
#include "platform/ui/instancelink.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/raisewindow.h"
#include "platform/userfolders.h"
#include "preferences/ui/preferencescommands.h"
#include "run/ui/dialogprogram.h"
#include "run/ui/frmmanual.h"
#include "run/ui/frmquickpreset.h"
#include "shell/commandline.h"
#include "shell/consoleanswer.h"
#include "shell/documentlifecycle.h"
#include "shell/errorreport.h"
#include "shell/layoutkeys.h"
#include "shell/mailbox.h"
#include "shell/settings.h"
#include "shell/ui/formsplash.h"
#include "shell/ui/legiblestyle.h"
#include "window/ui/frmeditor.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <QApplication>
#include <QScopeGuard>
#include <QSessionManager>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// The application object. No failure leaves its event loop: what an event handler throws is told to the
/// user, and the program goes on.
class Application : public QApplication
{
public:
    Application(int &argc, char **argv) : QApplication(argc, argv)
    {
        NameApplication(u"zelvane"_s);
        setStyle(new LegibleStyle);
        new ContextMenuKey(this);
        SurviveLostTerminal(); // its end is no end of the text
    }

    QtDesktop &TheDesktop() { return m_desktop; }

    bool notify(QObject *receiver, QEvent *event) override
    {
        bool handled = false;
        Guard([&] { handled = QApplication::notify(receiver, event); });
        return handled;
    }

    /// Runs a piece of work and reports what it throws. @return whether it came to its end
    bool Guard(const std::function<void()> &work)
    {
        try {
            work();
            return true;
        } catch (...) {
            Tell(std::current_exception());
        }
        return false;
    }

private:
    void Tell(const std::exception_ptr &failure)
    {
        try {
            try {
                std::rethrow_exception(failure);
            } catch (const RunTimeError &error) {
                Report(error);
            } catch (const std::bad_alloc &) {
                Report(OutOfMemory());
            } catch (const std::exception &error) {
                Report(RunTimeError(ErrorNumber::InvalidCall, QString::fromLocal8Bit(error.what())));
            }
        } catch (const std::exception &second) {
            // The report's own fall-back, the clipboard, has failed; or what was to be told, too little
            // memory, has kept it from being told.
            std::fprintf(stderr, "%s\n", second.what());
        }
    }

    void Report(const RunTimeError &error)
    {
        qWarning("%s", error.what());
        if (m_reporting)
            return; // the report is on the screen; a handler that fails again and again is told once
        m_reporting = true;
        const auto done = qScopeGuard([this] { m_reporting = false; });
        ReportError(m_desktop, error);
    }

    QtDesktop m_desktop;
    bool m_reporting = false;
};

/// The editor's process, in the order in which its parts are made; they go the other way.
struct RunningEditor {
    explicit RunningEditor(Application &theApplication) : application(theApplication) {}

    Application &application;
    SettingsStore settings;
    InstanceLink link{InstanceLink::RealmOf(ConfigFolder())};
    std::unique_ptr<FormSplash> splash;
    std::unique_ptr<frmEditor> editor;
    std::unique_ptr<EndRequest> endRequest;
};

/// Gives the command line to an editor that runs. @return false where none does
bool HandOver(RunningEditor &program, const CommandLine &command, const QByteArray &token)
{
    using Call = InstanceLink::Call;
    InstanceLink &link = program.link;
    return Mailbox::Send(
        command, program.settings,
        {.find = [&] { return link.FindRunning(); },
         .call = [&](bool hasMail) { return link.Notify(hasMail ? Call::HandOver : Call::Raise, token); }});
}

void ShowSplash(RunningEditor &program)
{
    if (!program.settings.Flag(Keys::Splash))
        return;
    program.splash = std::make_unique<FormSplash>();
    program.splash->ShowNow();
}

/// Whether this is one more editor, whose window must not come exactly over the first one's: that would look
/// as if the text in it had gone.
bool StandsBesideAnother(const CommandLine &command)
{
    return command.Form() == StartForm::NewInstance &&
           InstanceLink(InstanceLink::RealmOf(ConfigFolder())).FindListening();
}

void ShowEditor(RunningEditor &program, const CommandLine &command, bool aside)
{
    program.editor = std::make_unique<frmEditor>(program.settings, program.application.TheDesktop(), command);
    frmEditor &editor = *program.editor;
    if (aside)
        editor.StepAside();
    QObject::connect(&editor, &frmEditor::Activated, &program.link, &InstanceLink::MarkRecent);
    if (program.splash)
        program.splash->SetOwner(editor);
    editor.show();
    if (program.splash)
        program.splash->SetOwner(editor); // again: before, it was kept above all windows
    PaintOnScreen(editor);
}

/// The end of the session, and the system's signals, ask about unsaved work as the close of the window does.
void ConnectSystemEnd(RunningEditor &program)
{
    frmEditor &editor = *program.editor;
    program.endRequest = std::make_unique<EndRequest>();
    QObject::connect(program.endRequest.get(), &EndRequest::Received, &editor, &frmEditor::EndBySystem);
    QObject::connect(&program.application, &QGuiApplication::commitDataRequest, &editor,
                     [&editor](QSessionManager &session) {
                         const bool mayAsk = session.allowsInteraction();
                         if (!editor.MayEndSession(mayAsk))
                             session.cancel();
                         else if (mayAsk)
                             session.release();
                     });
}

/// While a program is waited for no question can be asked: the editor ends if the copy of the unsaved text
/// stands, or else asks after the wait. The program goes on.
WaitHooks HooksOfWait(RunningEditor &program)
{
    DocumentLifecycle &documents = program.editor->Documents();
    return {.begins = [&documents] { documents.SecureText(); },
            .looks =
                [&documents, &request = *program.endRequest] {
                    if (request.IsPending() && documents.SecureText())
                        std::_Exit(0);
                }};
}

/// The document is there: the splash goes, and what other processes hand over is taken.
void BeReady(RunningEditor &program)
{
    program.splash.reset();
    program.link.SetHandler([&editor = *program.editor](InstanceLink::Call call) {
        if (call == InstanceLink::Call::HandOver)
            editor.Mail().Wake();
        else
            editor.RaiseMainWindow();
    });
}

int RunEditor(Application &application, const CommandLine &command, const QByteArray &token)
{
    RunningEditor program(application);
    bool handedOver = false;
    application.Guard([&] { handedOver = HandOver(program, command, token); });
    if (handedOver)
        return 0;
    bool aside = false;
    application.Guard([&] { aside = StandsBesideAnother(command); });
    // From here on others find this editor. What they hand over waits until it has a document of its own.
    application.Guard([&] { program.link.Listen(); });
    application.Guard([&] { ShowSplash(program); });
    if (!application.Guard([&] { ShowEditor(program, command, aside); }))
        return 1;

    frmEditor &editor = *program.editor;
    ConnectSystemEnd(program);
    application.TheDesktop().SetWaitHooks(HooksOfWait(program));
    const auto unhook = qScopeGuard([&] { application.TheDesktop().SetWaitHooks({}); });
    QObject::connect(&editor, &frmEditor::Ending, &editor, [&] {
        if (program.link.Close())
            editor.Mail().Wake(); // too late to be opened here
    });
    application.Guard([&] { editor.Init([&] { BeReady(program); }); });
    application.Guard([&] { editor.Mail().TakeLeftLine(); });
    BeReady(program); // also when Init has ended in a report
    const int code = QApplication::exec();
    // What was handed over while the last question stood is for another editor.
    application.Guard([&] { editor.Mail().PassOn(); });
    return code;
}

/// The preset chooser: the process lives as long as that dialog.
int RunChooser(Application &application, const QString &document)
{
    if (document.isEmpty())
        return 0;
    SettingsStore settings;
    DialogProgram program(document, settings, application.TheDesktop());
    program.SetPreferences([&] { ShowPreferencesAlone(settings, application.TheDesktop()); });
    frmQuickPreset chooser(program.Context());
    program.SetWindow(&chooser);
    QApplication::setQuitOnLastWindowClosed(false); // the preset may still ask when the chooser is hidden
    QObject::connect(&chooser, &QDialog::finished, &application, [] { QCoreApplication::exit(0); });
    chooser.show();
    return QApplication::exec();
}

/// The Run Csound dialog as a program of its own, which ends with it. There is no text to save first.
int RunDialogMode(Application &application, const QString &document)
{
    if (document.isEmpty())
        return 0;
    SettingsStore settings;
    DialogProgram program(document, settings, application.TheDesktop());
    program.SetPreferences([&] { ShowPreferencesAlone(settings, application.TheDesktop()); });
    frmManual dialog(program.Context());
    dialog.DropSaveFirst();
    dialog.exec();
    return 0;
}

/// The command line alone decides which of three programs this process is.
/// @param given all arguments, also those that the toolkit has taken for its own
/// @param names those of them that the toolkit has not seen
int Main(Application &application, const QStringList &given, const QStringList &names,
         const QByteArray &token)
{
    const CommandLine command(QCoreApplication::arguments().mid(1) + names, given);
    application.TheDesktop().SetConsole(
        {.program = ConsoleProgram(), .wanted = [] { return SettingsStore().Flag(Keys::Console); }});
    switch (command.Form()) {
    case StartForm::QuickPreset:
        return RunChooser(application, command.Document());
    case StartForm::RunCsound:
        return RunDialogMode(application, command.Document());
    case StartForm::NewInstance:
    case StartForm::Document:
    case StartForm::Nothing:
        break;
    }
    return RunEditor(application, command, token);
}

} // namespace

int main(int argc, char **argv)
{
    // Before there is an application: this needs no display, and disturbs no running editor.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (const auto answer = AnswerOnConsole(arguments)) {
        std::fputs(answer->text.toLocal8Bit().constData(), answer->failure ? stderr : stdout);
        return answer->failure ? 2 : 0;
    }

    // The toolkit takes its options from all arguments that it sees: from "--" on they are not shown to it.
    const qsizetype end = arguments.indexOf(u"--"_s);
    const QStringList names = end < 0 ? QStringList() : arguments.mid(end);
    int shown = argc - int(names.size());

    const QByteArray token = ActivationToken();
    Application application(shown, argv);
    int code = 1;
    application.Guard([&] { code = Main(application, arguments, names, token); });
    return code;
}
