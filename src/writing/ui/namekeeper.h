// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "platform/worker.h"
#include "writing/textnames.h"

#include <memory>
#include <QObject>
#include <QTimer>
#include <vector>

namespace zelvane
{

class ScannedText;
class TextControl;
struct DocumentRecord;
struct WritingContext;

/// Keeps what the aids know of the text: that of a text of ordinary length is found out when it is asked for,
/// that of a large one by a thread in the pauses of typing. Between, the places of comments and of the score
/// follow the edits; the names are those of the last pause.
class NameKeeper : public QObject
{
    Q_OBJECT

public:
    /// Texts of up to so many characters are read at once.
    static constexpr qsizetype QuickLength = 64 * 1024;

    NameKeeper(TextControl &text, const DocumentRecord &document, ScannedText &scanned);

    const TextNames &Names();
    /// Whether the text may hold names that Names does not know yet.
    bool IsBehind() const { return m_behind; }

Q_SIGNALS:
    /// The names of a large text are known anew.
    void found();

private:
    bool IsUnified() const;
    void FollowEdit(const TextEdit &edit);
    /// Hands the text to the thread, when nothing is typed.
    void Read();
    void Take(TextNames names);

    TextControl &m_text;
    const DocumentRecord &m_document;
    ScannedText &m_scanned;
    TextNames m_names;
    bool m_unified = false; ///< what the names are those of
    bool m_behind = true;
    bool m_reading = false;
    std::vector<TextEdit> m_since; ///< edits that what is being read does not hold
    QTimer m_pause;
    Worker m_worker; ///< the first to go
};

/// The keeper of the aids, one for all of them; it lives while one of them holds it.
std::shared_ptr<NameKeeper> SharedNames(const WritingContext &context);

} // namespace zelvane
