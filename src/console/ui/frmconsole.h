// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/ansireader.h"
#include "console/consoleoptions.h"
#include "console/linestore.h"
#include "console/messageplace.h"
#include "console/runlog.h"
#include "console/runmessages.h"
#include "console/stopladder.h"
#include "platform/terminalprocess.h"
#include "platform/windowstate.h"

#include <functional>
#include <optional>
#include <QByteArrayView>
#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <vector>

class QCheckBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QMessageBox;
class QPushButton;

namespace zelvane
{

class ConsoleView;
class SettingsStore;

/// The window of a started program: what it writes, a line to answer it, the way to stop it, and the way from
/// its errors to the lines that they are about.
class frmConsole : public QWidget
{
    Q_OBJECT

public:
    struct Services {
        SettingsStore &settings;
        QString logFolder;
        /// Brings the editor to the front with a place.
        std::function<void(const MessagePlace &)> openPlace;
    };

    frmConsole(const ConsoleOptions &options, Services services, QWidget *parent = nullptr);
    ~frmConsole() override;

    /// Starts the program and shows the window as the options say. What cannot be started is told in the
    /// window.
    void Run();
    /// Whether the program and all that it has started have ended.
    bool IsFinished() const;
    /// Whether it closes by itself in a moment: the run was good, and nobody has touched the window.
    bool IsLeaving() const { return m_leave.isActive(); }
    /// The same preset has been started again: a console that has finished goes.
    void GiveWay();
    /// Stops what runs and closes: the desktop wants it so.
    void StopAndClose();
    /// Tells a failure that the user has to know of, and goes on meanwhile; once the window has closed it
    /// waits for the answer, since nothing else is left to do.
    void TellFailure(const QString &text);
    /// The next step from an interrupt to the end by force, unless the last one was just now.
    void Stop();

Q_SIGNALS:
    void Closed(); ///< nothing is left to do or to show

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildWindow();
    void ApplyLook();
    void ApplyHintColour();
    void ShowAs(WindowState showState);
    void TakeOutput(QByteArrayView bytes);
    void TakeLine(StyledLine line);
    void Ended(const ProgramEnd &end);
    void AllEnded();
    void KeepFirstError(qint64 number, const StyledLine &line);
    void BringBackFirstError();
    void ShowEnd(const QString &words);
    /// How the run ended, and what else is to be known, before the first error: that may be long.
    void SetEndState(const QString &more = {});
    void SetState(const QString &words);
    void UpdateLeaving();
    void Touch();
    void TouchBy(const QObject *watched, const QEvent &event);
    void Tick();
    void Send(StopSignal signal);
    void ShowNews();
    void SendLine();
    const RunMessage *MessageAt(qint64 line) const;
    void GoToMessage(int step);
    void Activate(qint64 line);
    void CloseNow();
    bool HandleKey(QObject *watched, const QKeyEvent &press);

    ConsoleOptions m_options;
    Services m_services;
    LineStore m_store;
    RunMessages m_messages;
    AnsiReader m_reader;
    RunLog m_log;
    StopLadder m_ladder;
    TerminalProcess m_process;
    QElapsedTimer m_clock;
    QTimer m_tick;
    QTimer m_news; ///< output is shown a few dozen times a second at most
    QTimer m_leave;
    std::vector<StyledLine> m_firstError; ///< its lines, should they go before the run ends
    qint64 m_broughtBack = 0;             ///< before this line of the store stand those of the first error
    std::optional<double> m_progress;
    QString m_end;                        ///< how the program ended, in words
    std::optional<StopSignal> m_endStop;  ///< the last signal until then
    QString m_state;                      ///< of the run; lblState shows something else only for a moment
    QMessageBox *m_question = nullptr;    ///< whether to stop, while it is asked
    QMessageBox *m_lastFailure = nullptr; ///< what is told after the window has closed
    bool m_running = false;
    bool m_endedWell = false;
    bool m_touched = false;
    bool m_hasVisited = false; ///< the user has been led to a message
    bool m_closing = false;
    bool m_closed = false;

    ConsoleView *m_view = nullptr;
    QLineEdit *txtCommand = nullptr;
    QLineEdit *txtInput = nullptr;
    QLabel *lblState = nullptr;
    QLabel *lblProgress = nullptr;
    QLabel *lblTime = nullptr;
    QCheckBox *chkKeepOpen = nullptr;
    QPushButton *cmdStop = nullptr;
};

} // namespace zelvane
