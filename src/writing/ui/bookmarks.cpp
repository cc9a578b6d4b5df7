// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/bookmarks.h"

#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/textops.h"
#include "writing/ui/frmbookmarks.h"

#include <algorithm>
#include <QString>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

Bookmarks::Bookmarks(const WritingContext &context)
    : m_context(context),
      m_text(context.window.text),
      m_decorations(context.decorations),
      m_commands(context.window.commands)
{
    m_decorations.ShowMargin(TextMargin::Markers, true);
    m_commands.Bind(Cmd::mnuBookmark, [this](BookmarkEntry entry) { Run(entry); });
    connect(&m_text, &TextControl::edited, this, [this](const TextEdit &edit) { m_edits.Add(edit); });
    connect(&m_text, &TextControl::textChanged, this, &Bookmarks::FollowEdits);
    connect(&m_decorations, &TextDecorations::loading, this, &Bookmarks::Leave);
    connect(&m_decorations, &TextDecorations::loaded, this, [this] { m_arrival.start(0); });
    connect(&m_decorations, &TextDecorations::marginClicked, this, [this](TextMargin margin, qsizetype line) {
        if (margin == TextMargin::Markers)
            Toggle(line);
    });
    m_arrival.setSingleShot(true);
    connect(&m_arrival, &QTimer::timeout, this, &Bookmarks::Arrive);
    m_lines.Reset(m_text, {});
    m_edits.Begin(m_text.Length());
    Arrive();
}

Bookmarks::~Bookmarks()
{
    Remember();
    m_decorations.ClearMarkers(LineMarker::Bookmark);
    m_decorations.ShowMargin(TextMargin::Markers, false);
}

void Bookmarks::Run(BookmarkEntry entry)
{
    switch (entry) {
    case BookmarkEntry::Toggle:
        Toggle(m_text.LineOfOffset(m_text.CaretOffset()));
        break;
    case BookmarkEntry::Next:
        Go(true);
        break;
    case BookmarkEntry::Previous:
        Go(false);
        break;
    case BookmarkEntry::List:
        List();
        break;
    }
}

void Bookmarks::Toggle(qsizetype line)
{
    m_lines.Set(m_text, line, !m_lines.IsMarked(line));
    Show();
}

void Bookmarks::Go(bool next)
{
    const std::vector<KeptLine> &lines = m_lines.Lines();
    if (lines.empty()) {
        m_context.window.editor.status.Show(u"No bookmarks."_s);
        return;
    }
    const qsizetype line = m_text.LineOfOffset(m_text.CaretOffset());
    if (next) {
        const auto behind =
            std::find_if(lines.begin(), lines.end(), [line](const KeptLine &one) { return one.line > line; });
        GoTo(behind == lines.end() ? lines.front().line : behind->line);
    } else {
        const auto before = std::find_if(lines.rbegin(), lines.rend(),
                                         [line](const KeptLine &one) { return one.line < line; });
        GoTo(before == lines.rend() ? lines.back().line : before->line);
    }
}

void Bookmarks::GoTo(qsizetype line)
{
    const LineSpan view = m_decorations.VisibleLines();
    m_decorations.RevealLine(line);
    const qsizetype start = m_text.LineStart(line);
    if (line >= view.first && line + 1 < view.end)
        m_text.SetSelection(start, start);
    else
        PutCaretOnTop(m_text, start);
}

void Bookmarks::List()
{
    frmBookmarks dialog(m_lines.Lines(), m_text.LineOfOffset(m_text.CaretOffset()), m_context.window.window);
    const bool go = dialog.exec() == QDialog::Accepted;
    for (const qsizetype line : dialog.Removed())
        m_lines.Set(m_text, line, false);
    Show();
    if (go)
        GoTo(dialog.Chosen());
    m_context.window.view.FocusText();
}

void Bookmarks::FollowEdits()
{
    if (m_edits.IsEmpty())
        return;
    const bool moved = m_lines.Follow(m_text, m_edits.Hull());
    m_edits.Begin(m_text.Length());
    if (moved)
        Show();
}

void Bookmarks::Remember()
{
    if (!m_arrival.isActive()) // else they have not been set yet
        m_context.memory.bookmarked.Keep(m_context.window.editor.document.CurrentFile, m_lines.Lines());
}

void Bookmarks::Leave()
{
    Remember();
    m_lines.Reset(m_text, {});
}

void Bookmarks::Arrive()
{
    // The document has its name when it has been opened.
    if (m_context.window.editor.document.Loading) {
        m_arrival.start(20);
        return;
    }
    const std::vector<KeptLine> kept =
        m_context.memory.bookmarked.Of(m_context.window.editor.document.CurrentFile);
    m_lines.Reset(m_text, kept.empty() ? std::vector<qsizetype>() : FindKeptLines(m_text, kept));
    Show();
}

void Bookmarks::Show()
{
    for (const qsizetype line : m_decorations.MarkedLines(LineMarker::Bookmark)) {
        if (!m_lines.IsMarked(line))
            m_decorations.SetMarker(LineMarker::Bookmark, line, false);
    }
    for (const KeptLine &kept : m_lines.Lines())
        m_decorations.SetMarker(LineMarker::Bookmark, kept.line, true);
}

} // namespace zelvane
