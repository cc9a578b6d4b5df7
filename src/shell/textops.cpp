// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/textops.h"

#include "platform/numbers.h"

#include <algorithm>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Calls `line(start, end)` for each line of the text, end behind its LF. A last LF opens no further line.
template <typename Line> void ForEachLine(QStringView text, Line line)
{
    qsizetype start = 0;
    do {
        const qsizetype feed = text.indexOf(u'\n', start);
        const qsizetype end = feed < 0 ? text.size() : feed + 1;
        line(start, end);
        start = end;
    } while (start < text.size());
}

QString PutBeforeLines(QStringView text, QStringView mark)
{
    QString result;
    result.reserve(text.size() + mark.size() * (1 + text.count(u'\n')));
    ForEachLine(text, [&](qsizetype start, qsizetype end) {
        result.append(mark).append(text.sliced(start, end - start));
    });
    return result;
}

QString WithoutLineComments(QStringView text)
{
    QString result;
    result.reserve(text.size());
    ForEachLine(text, [&](qsizetype start, qsizetype end) {
        const QStringView line = text.sliced(start, end - start);
        const qsizetype mark = line.indexOf(u';');
        if (mark == 0)
            return;
        if (mark < 0) {
            result.append(line);
            return;
        }
        result.append(line.first(mark));
        if (line.endsWith(u'\n'))
            result.append(u'\n');
    });
    return result;
}

QString WithoutBlockComments(QStringView text)
{
    QString result;
    result.reserve(text.size());
    qsizetype i = 0;
    while (i < text.size()) {
        const qsizetype star = text.indexOf(u'*', i);
        if (star < 0)
            break;
        result.append(text.sliced(i, star - i));
        i = star;
        if (result.endsWith(u'/')) {
            const qsizetype close = text.indexOf(u"*/", star + 1);
            if (close < 0)
                break;
            result.chop(1);
            i = close + 2;
        } else {
            result.append(u'*');
            i = star + 1;
        }
    }
    return result.append(text.sliced(i));
}

/// Replaces the selection and leaves the new text selected.
void ReplaceAndSelect(TextBuffer &text, const QString &replacement)
{
    const qsizetype start = text.Selection().start;
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

bool IsCommented(QStringView text, qsizetype pos, std::span<const TextSpan> blockComments)
{
    // A range may share its opening mark's first character with the one before it, and no more: so only the
    // last range that starts before `pos` can hold it.
    const auto behind = std::lower_bound(blockComments.begin(), blockComments.end(), pos,
                                         [](const TextSpan &span, qsizetype at) { return span.start < at; });
    if (behind != blockComments.begin() && pos < std::prev(behind)->end)
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

QString UncommentText(const QString &text)
{
    QString result = text;
    return result.remove(u';').remove(u"/*"_s).remove(u"*/"_s);
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
    QString result;
    result.reserve(text.size());
    ForEachLine(text, [&](qsizetype start, qsizetype end) {
        const QStringView line = text.sliced(start, end - start);
        result.append(line.startsWith(unit) ? line.sliced(unit.size()) : line);
    });
    return result;
}

QString ChangeCaseOfText(QStringView text, CaseChange change)
{
    QString result = text.toString();
    bool raise = change != CaseChange::Lower;
    for (QChar &c : result) {
        if (change == CaseChange::Capitalize && c.isSpace())
            raise = true;
        const bool isLetter = c.isLetter();
        c = raise ? c.toUpper() : c.toLower();
        if (change == CaseChange::Capitalize && isLetter)
            raise = false;
    }
    return result;
}

void CommentSelection(EditorContext &editor)
{
    if (editor.text.Selection().IsEmpty()) {
        editor.text.ReplaceSelection(u";"_s);
        return;
    }
    ReplaceAndSelect(editor.text,
                     CommentText(editor.text.SelectedText(), editor.settings.Flag(Keys::CppComments)));
}

void UncommentSelection(EditorContext &editor)
{
    ReplaceAndSelect(editor.text, UncommentText(editor.text.SelectedText()));
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
    const QString unit = editor.settings.Flag(Keys::TabInsertSpaces)
                             ? QString(std::max(0, editor.settings.Integer(Keys::TabSpaces)), u' ')
                             : u"\t"_s;
    const QString lines = text.SelectedText();
    ReplaceAndSelect(text, decrease ? UnindentText(lines, unit) : IndentText(lines, unit));
}

void ChangeCase(EditorContext &editor, CaseChange change)
{
    SelectAllIfNothing(editor.text);
    ReplaceAndSelect(editor.text, ChangeCaseOfText(editor.text.SelectedText(), change));
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
    const double target = from + RoundHalfEven(Val(answer));
    if (!(target > -1) || !(target < double(count))) {
        editor.desktop.MessageBox({.text = u"Invalid line number."_s, .icon = BoxIcon::Warning});
        return;
    }
    const qsizetype start = editor.text.LineStart(qsizetype(target));
    editor.text.SetSelection(start, start);
    editor.text.ScrollToLine(qsizetype(target));
}

} // namespace zelvane
