// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QObject>
#include <QString>

class QEvent;

namespace zelvane
{

class CommandLine;
class SettingsStore;
struct EditorContext;

/// The hand-over from a second process to a running editor. The mailbox holds one piece of mail in the
/// settings, so of several files handed over before it is read the last one opens.
class Mailbox : public QObject
{
public:
    /// What is handed over. Both come and go in one step.
    struct Mail {
        QString file = {}; ///< as the sender has it; empty where there is no mail
        int line = 0;      ///< to be selected, from 1; 0 for none

        bool operator==(const Mail &) const = default;
    };

    /// The sender's way to a running editor.
    struct RunningEditor {
        std::function<bool()> find; ///< @return whether one is running
        /// Calls the editor that was found: to open its mail, or else only to come to the front. @return
        /// whether it has got the call
        std::function<bool(bool hasMail)> call;
    };

    /// The sender's half: a start that may end in a running editor gives it the command line, unless that is
    /// empty. The file is not checked here. An editor that cannot be called has ended just now: its mail is
    /// taken back. @return whether this process may end
    /// @throws RunTimeError when the store cannot be written
    static bool Send(const CommandLine &command, SettingsStore &settings, const RunningEditor &editor);

    /// Hands a place in a file over to a running editor, whether or not other hand-overs are wanted.
    /// @param line from 1; 0 for the file as a whole
    /// @return false when none runs, or it cannot be called
    /// @throws RunTimeError when the store cannot be written
    static bool SendPlace(const QString &path, int line, SettingsStore &settings,
                          const RunningEditor &editor);

    /// What stands in the mailbox, which stays as it is. Never fails.
    static Mail Look(SettingsStore &settings);
    /// Empties the mailbox of this mail; another one, which has come meanwhile, stays.
    /// @throws RunTimeError when the store cannot be written
    static void Take(const Mail &mail, SettingsStore &settings);

    /// The receiver's half.
    /// @param mayOpen asked at each wake-up: mail waits as long as it says no
    Mailbox(EditorContext &editor, std::function<bool()> mayOpen);

    /// An event entry point. Where mail may be opened it brings the window to the front, since the opening
    /// may ask something, reads the key, opens what it names, deletes it and brings the window to the front
    /// again. With a line number the line is selected, and a document that is open already stays as it is. A
    /// wake-up that comes meanwhile is served right after it. Where it has to wait the window only
    /// comes to the front. Failures are reported.
    void Wake();

    /// Mail that waits for a dialog over this window is opened when the dialog has closed.
    void ServeAfterDialogsOf(QObject &window);

    /// Whether the last wake-up left something waiting.
    bool Left() const { return m_state == State::Waiting || m_state == State::OpeningAgain; }

    /// At the start, after the document: selects the line that an editor has left for this one.
    /// @throws RunTimeError when the store cannot be written
    void TakeLeftLine();

    /// At the end of the program: starts another editor on what is left, if anything is. A line stays in the
    /// mailbox, where that editor finds it.
    /// @throws RunTimeError when the store cannot be written, or the editor does not start
    void PassOn();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class State {
        Idle,
        Waiting, ///< there is mail, and it may not be opened yet
        Opening,
        OpeningAgain ///< a wake-up came during the opening
    };

    bool IsOpening() const { return m_state == State::Opening || m_state == State::OpeningAgain; }
    void Open();
    /// Selects the line in the document, if that is the mail's.
    void SelectPlace(const Mail &mail);

    EditorContext &m_editor;
    std::function<bool()> m_mayOpen;
    State m_state = State::Idle;
};

} // namespace zelvane
