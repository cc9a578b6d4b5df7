// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/textops.h"

#include "platform/textwriter.h"
#include "shell/editorkeys.h"
#include "shell/tabwidth.h"

#include <algorithm>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A last LF opens no further line.
QString PutBeforeLines(QStringView text, QStringView mark)
{
    TextWriter result(text.size() + mark.size() * (1 + text.count(u'\n')));
    result.Put(mark);
    for (qsizetype i = 0; i < text.size(); ++i) {
        result.Put(text[i]);
        if (text[i] == u'\n' && i + 1 < text.size())
            result.Put(mark);
    }
    return result.Take();
}

QString WithoutLineComments(QStringView text)
{
    TextWriter result(text.size());
    bool atLineStart = true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u';') {
            result.Put(text[i]);
            atLineStart = text[i] == u'\n';
            continue;
        }
        const qsizetype feed = text.indexOf(u'\n', i);
        if (feed < 0)
            break;
        // A line that begins with the mark goes with its line end.
        i = atLineStart ? feed : feed - 1;
    }
    return result.Take();
}

QString WithoutBlockComments(QStringView text)
{
    TextWriter result(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'*' && result.EndsWith(u'/')) {
            const qsizetype close = text.indexOf(u"*/", i + 1);
            if (close < 0) {
                result.Put(text.sliced(i));
                break;
            }
            result.Drop();
            i = close + 1;
        } else {
            result.Put(text[i]);
        }
    }
    return result.Take();
}

// Nearly every character of a text is ASCII, and the toolkit's tables are slow for those.

QChar Upper(QChar c)
{
    if (c.unicode() < 0x80)
        return c >= u'a' && c <= u'z' ? QChar(char16_t(c.unicode() - 0x20)) : c;
    return c.toUpper();
}

QChar Lower(QChar c)
{
    if (c.unicode() < 0x80)
        return c >= u'A' && c <= u'Z' ? QChar(char16_t(c.unicode() + 0x20)) : c;
    return c.toLower();
}

/// The whole number that the digits at a text's beginning are, with a sign before them; 0 without digits.
/// What follows the digits does not count, and there may be any number of them.
double LeadingNumber(QStringView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.sliced(1);
    double number = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            break;
        number = number * 10 + (c.unicode() - u'0');
    }
    return negative ? -number : number;
}

/// Replaces the selection by what `change` makes of it, and leaves the new text selected. The old text is let
/// go before the new one goes in: with a large text that is a fifth of the memory.
template <typename Change> void ReplaceAndSelect(TextBuffer &text, Change change)
{
    const qsizetype start = text.Selection().start;
    const QString replacement = change(text.SelectedText());
    text.ReplaceSelection(replacement);
    text.SetSelection(start, start + replacement.size());
}

void SelectAllIfNothing(TextBuffer &text)
{
    if (text.Selection().IsEmpty())
        text.SetSelection(0, -1);
}

} // namespace

qsizetype GetLineStart(const TextBuffer &text, qsizetype pos)
{
    return text.LineStart(text.LineOfOffset(pos));
}

qsizetype GetLineEnd(const TextBuffer &text, qsizetype pos)
{
    return text.LineEnd(text.LineOfOffset(pos));
}

qsizetype GetColumn(const TextBuffer &text, qsizetype pos)
{
    return pos - GetLineStart(text, pos) + 1;
}

QString GetLineHalf(const TextBuffer &text, qsizetype pos)
{
    return text.TextRange(GetLineStart(text, pos), std::min(pos + 1, text.Length()));
}

void SelectLine(TextBuffer &text, qsizetype pos)
{
    const qsizetype line = text.LineOfOffset(pos);
    if (text.LineOfOffset(text.Selection().end) != line)
        return;
    text.SetSelection(pos, line + 1 < text.LineCount() ? text.LineStart(line + 1) : text.Length());
}

void PutCaretOnTop(TextBuffer &text, qsizetype offset)
{
    text.ScrollToLine(text.LineOfOffset(offset));
    // Last, so that a place deep in a wrapped line comes into sight.
    text.SetSelection(offset, offset);
}

bool IsInBlockComment(qsizetype pos, std::span<const TextSpan> blockComments)
{
    // A range may share its opening mark's first character with the one before it, and no more: so only the
    // last range that starts before `pos` can hold it.
    const auto behind = std::lower_bound(blockComments.begin(), blockComments.end(), pos,
                                         [](const TextSpan &span, qsizetype at) { return span.start < at; });
    return behind != blockComments.begin() && pos < std::prev(behind)->end;
}

bool IsCommented(QStringView text, qsizetype pos, std::span<const TextSpan> blockComments)
{
    if (IsInBlockComment(pos, blockComments))
        return true;
    for (qsizetype i = std::min(pos, text.size() - 1); i >= 0; --i) {
        if (text[i] == u';')
            return true;
        if (text[i] == u'\n' || text[i] == u'\r')
            return false;
    }
    return false;
}

QString CommentText(QStringView text, bool blockForm)
{
    const qsizetype feed = text.indexOf(u'\n');
    const bool severalLines = feed >= 0 && feed != text.size() - 1;
    if (!severalLines)
        return QString(u";"_s).append(text);
    if (blockForm)
        return QString(u"/*"_s).append(text).append(u"*/");
    return PutBeforeLines(text, u";");
}

QString UncommentText(QStringView text)
{
    // Three removals one behind the other: what one joins, the next one sees, but not the same one again.
    TextWriter result(text.size());
    bool slash = false; // held back from the second removal
    bool star = false;  // the last character, open to the third
    const auto putUnlessClosing = [&](QChar c) {
        if (star && c == u'/') {
            result.Drop();
            star = false;
            return;
        }
        result.Put(c);
        star = c == u'*';
    };
    for (const QChar c : text) {
        if (c == u';')
            continue;
        const bool opened = std::exchange(slash, c == u'/');
        if (opened && c == u'*')
            continue;
        if (opened)
            putUnlessClosing(u'/');
        if (c != u'/')
            putUnlessClosing(c);
    }
    if (slash)
        putUnlessClosing(u'/');
    return result.Take();
}

QString RemoveCommentsFromText(QStringView text)
{
    return WithoutBlockComments(WithoutLineComments(text));
}

QString IndentText(QStringView text, QStringView unit)
{
    return PutBeforeLines(text, unit);
}

QString UnindentText(QStringView text, QStringView unit)
{
    TextWriter result(text.size());
    bool atLineStart = true;
    for (qsizetype i = 0; i < text.size();) {
        if (atLineStart && text.sliced(i).startsWith(unit)) {
            i += unit.size();
            atLineStart = false;
            continue;
        }
        atLineStart = text[i] == u'\n';
        result.Put(text[i++]);
    }
    return result.Take();
}

QString ChangeCaseOfText(QStringView text, CaseChange change)
{
    QString result(text.size(), Qt::Uninitialized);
    QChar *to = result.data();
    switch (change) {
    case CaseChange::Upper:
        std::transform(text.begin(), text.end(), to, Upper);
        break;
    case CaseChange::Lower:
        std::transform(text.begin(), text.end(), to, Lower);
        break;
    case CaseChange::Capitalize:
        bool raise = true;
        for (const QChar c : text) {
            raise = raise || c.isSpace();
            *to++ = raise ? Upper(c) : Lower(c);
            raise = raise && !c.isLetter();
        }
        break;
    }
    return result;
}

void CommentSelection(EditorContext &editor)
{
    if (editor.text.Selection().IsEmpty()) {
        editor.text.ReplaceSelection(u";"_s);
        return;
    }
    const bool blockForm = editor.settings.Flag(Keys::CppComments);
    ReplaceAndSelect(editor.text, [=](const QString &text) { return CommentText(text, blockForm); });
}

void UncommentSelection(EditorContext &editor)
{
    ReplaceAndSelect(editor.text, UncommentText);
}

bool RemoveComments(EditorContext &editor)
{
    editor.status.Show(u"Removing comments..."_s);
    editor.document.Loading = true;
    const auto loaded = qScopeGuard([&editor] { editor.document.Loading = false; });
    SelectAllIfNothing(editor.text);
    const TextSpan selection = editor.text.Selection();
    const QString rest = RemoveCommentsFromText(editor.text.SelectedText());
    const bool removed = rest.size() != selection.Length();
    editor.text.ReplaceSelection(rest);
    editor.text.SetSelection(selection.start, selection.start);
    editor.status.Show({});
    return removed;
}

void IndentSelection(EditorContext &editor, bool decrease)
{
    TextBuffer &text = editor.text;
    const TextSpan selection = text.Selection();
    text.SetSelection(GetLineStart(text, selection.start), GetLineEnd(text, selection.end));
    const QString unit = IndentUnit(editor.settings);
    ReplaceAndSelect(text, [&](const QString &lines) {
        return decrease ? UnindentText(lines, unit) : IndentText(lines, unit);
    });
}

void ChangeCase(EditorContext &editor, CaseChange change)
{
    SelectAllIfNothing(editor.text);
    ReplaceAndSelect(editor.text, [=](const QString &text) { return ChangeCaseOfText(text, change); });
}

void GoToLine(EditorContext &editor)
{
    const qsizetype count = editor.text.LineCount();
    const QString answer = editor.desktop
                               .InputBox(u"Go to line"_s,
                                         u"Type the line number you want to go to.\n"
                                         "(Use + and - to move from current position).\n\nTotal lines: "_s +
                                             QString::number(count),
                                         {})
                               .value_or(QString());
    if (answer.isEmpty())
        return;
    const bool relative = answer.startsWith(u'+') || answer.startsWith(u'-');
    const double from = relative ? double(editor.text.LineOfOffset(editor.text.Selection().start)) : -1.0;
    const double target = from + LeadingNumber(answer);
    if (!(target > -1) || !(target < double(count))) {
        editor.desktop.MessageBox({.text = u"Invalid line number."_s, .icon = BoxIcon::Warning});
        return;
    }
    PutCaretOnTop(editor.text, editor.text.LineStart(qsizetype(target)));
}

} // namespace zelvane
