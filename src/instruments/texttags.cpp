// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/texttags.h"

#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "shell/editorcontext.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString Opening(const QString &tag)
{
    return u'<' + tag + u'>';
}

QString Closing(const QString &tag)
{
    return u"</"_s + tag + u'>';
}

/// What stands between the first tag from `from` on and the next closing one.
std::optional<TextSpan> Between(const QString &tag, QStringView text, qsizetype from)
{
    const QString opening = Opening(tag);
    const qsizetype open = text.indexOf(opening, from);
    if (open < 0)
        return std::nullopt;
    const qsizetype start = open + opening.size();
    const qsizetype end = text.indexOf(Closing(tag), start);
    return end < 0 ? std::nullopt : std::optional(TextSpan{start, end});
}

/// One edit of the text behind the user's back: the selection stays at its characters, or at its offset where
/// these go, and the view at its lines.
void ReplaceQuietly(TextBuffer &buffer, TextSpan span, const QString &text)
{
    const TextSpan selection = buffer.Selection();
    const qsizetype length = buffer.Length();
    const qsizetype lines = buffer.LineCount();
    const qsizetype top = buffer.FirstVisibleLine();
    const bool above = buffer.LineOfOffset(span.end) < top;
    buffer.ReplaceRange(span.start, span.end, text);
    const qsizetype growth = buffer.Length() - length;
    const auto moved = [&](qsizetype offset) {
        if (offset <= span.start)
            return offset;
        return offset >= span.end ? offset + growth : std::min(offset, span.end + growth);
    };
    const TextSpan kept{moved(selection.start), moved(selection.end)};
    if (buffer.Selection() != kept)
        buffer.SetSelection(kept.start, kept.end);
    const qsizetype wanted = above ? top + buffer.LineCount() - lines : top;
    if (buffer.FirstVisibleLine() != wanted)
        buffer.ScrollToLine(wanted);
}

/// Puts a tag on lines of its own, and what it holds.
void InsertTag(TextBuffer &buffer, qsizetype at, const QString &tag, const QString &text)
{
    ReplaceQuietly(buffer, {at, at}, u"\r\n\r\n"_s + Opening(tag) + text + Closing(tag));
}

} // namespace

QString GetTagText(const QString &tag, QStringView text)
{
    const std::optional<TextSpan> span = Between(tag, text, 0);
    return span ? text.sliced(span->start, span->Length()).toString() : QString();
}

qsizetype FindTag(const TextBuffer &text, const QString &tag)
{
    const std::optional<TextSpan> span = Between(tag, text.Text(), 0);
    return span ? span->start : -1;
}

std::optional<TextSpan> SetTagText(EditorContext &editor, const QString &tag, const QString &text,
                                   qsizetype start)
{
    if (start < 1)
        throw RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);
    const std::optional<TextSpan> span = Between(tag, editor.text.Text(), start - 1);
    if (!span)
        return std::nullopt;
    const qsizetype behind = editor.text.Length() - span->end;
    ReplaceQuietly(editor.text, *span, text);
    return TextSpan{span->start, editor.text.Length() - behind};
}

bool CreateTag(EditorContext &editor, const QString &tag, const QString &parent)
{
    qsizetype at = editor.text.Length();
    if (!parent.isEmpty()) {
        const QString opening = Opening(parent);
        const qsizetype found = editor.text.Text().indexOf(opening);
        if (found < 0) {
            editor.desktop.MessageBox({.text = u"This project does not have a "_s + opening + u" tag."_s,
                                       .icon = BoxIcon::Critical});
            return false;
        }
        at = found + opening.size();
    }
    InsertTag(editor.text, at, tag, u"\r\n"_s);
    return true;
}

void AppendTag(EditorContext &editor, const QString &tag, const QString &text)
{
    InsertTag(editor.text, editor.text.Length(), tag, text);
}

} // namespace zelvane
