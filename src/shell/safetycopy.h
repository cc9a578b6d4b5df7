// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/unsavedcopy.h"
#include "shell/document.h"

#include <chrono>
#include <memory>
#include <optional>
#include <QObject>
#include <QString>
#include <QTimer>

namespace zelvane
{

class SettingsStore;
class StatusLine;
class TextBuffer;

/// When a copy of a text that is being edited is due: some seconds after the last edit, and while the user
/// goes on, at the latest some more seconds after the first one that it lacks; of a large text half a minute.
class CopyTimes
{
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds AfterEdit{3'000};
    static constexpr std::chrono::milliseconds WhileTyping{6'000};
    static constexpr std::chrono::milliseconds AtLatest{30'000};
    static constexpr qsizetype Large = 1'000'000; ///< bytes

    /// @param size of the last copy, bytes
    void Edited(Clock::time_point now, qsizetype size);
    /// The copy has not come about: it is tried again without an edit, after AtLatest.
    void Failed(Clock::time_point now);
    void Taken() { m_first = m_due = {}; }
    /// No value when the copy lacks nothing.
    std::optional<Clock::time_point> Due() const { return m_due; }

private:
    std::optional<Clock::time_point> m_first;
    std::optional<Clock::time_point> m_due;
};

/// The copy of the one document's text that stands while the text is unsaved, where the setting `SafetyCopy`
/// wants it. The text is taken in the event loop, in one go, and written by a thread of its own. What the
/// disk has against it is told in the status line, after each try and when the text is discarded, and
/// disturbs nobody.
class SafetyCopy : public QObject
{
public:
    /// The arguments outlive it.
    SafetyCopy(const DocumentRecord &document, const TextBuffer &text, const SettingsStore &settings,
               StatusLine &status);
    /// Waits for what is being written. A copy that stands then is there for the next editor.
    ~SafetyCopy() override;

    /// The user has changed the text. As cheap as can be: this is called at each key.
    void Edited();
    /// The text stands in its file: the copy goes.
    void Saved();
    /// The text is about to be discarded: what the copy lacks is taken now.
    void Secure();
    /// The text is gone. Its copy, as Secure has left it, stays for UnsavedCopy::KeptDays.
    void Discarded();
    /// The text has come from this copy, which stands until the text is copied anew, saved or discarded.
    void Adopt(UnsavedCopy copy);
    /// Secures, and waits for the disk. @return whether no unsaved text would be lost now
    bool Finish();

private:
    class Writer;

    void Wait(CopyTimes::Clock::time_point now);
    void Look();
    void Take();
    void Failed(const QString &why);
    /// From any thread.
    void TellLater(const QString &failure);

    const DocumentRecord &m_document;
    const TextBuffer &m_text;
    const SettingsStore &m_settings;
    StatusLine &m_status;
    CopyTimes m_times;
    QTimer m_timer;
    CopyTimes::Clock::time_point m_rings; ///< when the timer does
    qsizetype m_size = 0;                 ///< of the last copy, bytes
    bool m_unsaved = false;
    bool m_taken = true; ///< there was memory for the newest text
    std::unique_ptr<Writer> m_writer;
};

} // namespace zelvane
