// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>

namespace zelvane
{

class CommandLine;
class SettingsStore;
struct EditorContext;

// The hand-over from a second process to a running editor. The mailbox is one key of the settings, so of
// several files handed over before it is read the last one opens.

/// Whether this start may end in a running editor: several are not allowed and no new one is asked for. The
/// caller knows whether one is running.
bool MayHandOver(const CommandLine &command, const SettingsStore &settings);

/// The sender's half: puts a command line that is not empty into the mailbox. The file is not checked here.
/// @return whether the running editor has to be woken, not only raised
/// @throws RunTimeError when the store cannot be written
bool PutMail(const CommandLine &command, SettingsStore &settings);

/// Empties the mailbox. @return what stood in it
/// @throws RunTimeError when the store cannot be written
QString TakeMail(SettingsStore &settings);

/// The receiver's half.
class Mailbox
{
public:
    /// @param mayOpen asked at each wake-up: mail waits as long as it says no
    Mailbox(EditorContext &editor, std::function<bool()> mayOpen);

    /// An event entry point. Where mail may be opened it reads the key, opens what it names, deletes it and
    /// brings the window to the front; a wake-up that comes while an earlier one still asks the user is
    /// served right after it. Where it has to wait the window only comes to the front, and whoever made it
    /// wait wakes the mailbox again. Failures are reported.
    void Wake();

    /// Whether the last wake-up left something waiting.
    bool HasMail() const { return m_waits; }

private:
    void Open();
    void Remove(const QString &name);

    EditorContext &m_editor;
    std::function<bool()> m_mayOpen;
    bool m_waits = false;
    bool m_opening = false;
    bool m_wokenAgain = false;
};

} // namespace zelvane
