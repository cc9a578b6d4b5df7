// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "writing/edithull.h"
#include "writing/keptlines.h"
#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"

#include <QObject>
#include <QtGlobal>
#include <QTimer>

namespace zelvane
{

/// Marks lines to come back to. They go with their lines while the text is edited, and are there again when a
/// file is opened again in this window, as far as it still has the lines.
class Bookmarks : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit Bookmarks(const WritingContext &context);
    ~Bookmarks() override;

private:
    void Run(BookmarkEntry entry);
    void Toggle(qsizetype line);
    /// To the next or the previous one; behind the last one comes the first.
    void Go(bool next);
    void GoTo(qsizetype line);
    void List();
    void FollowEdits();
    void Leave();
    /// For the next time that the file is here.
    void Remember();
    void Arrive();
    /// Brings the marks beside the text to where they should be.
    void Show();

    const WritingContext m_context;
    TextControl &m_text;
    TextDecorations &m_decorations;
    BoundCommands m_commands;
    MarkedLines m_lines;
    EditHull m_edits; ///< that have not been followed yet
    QTimer m_arrival;
};

} // namespace zelvane
