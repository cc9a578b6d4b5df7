// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/textopsoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "language/blockcomments.h"
#include "shell/editorkeys.h"
#include "shell/textops.h"

#include <algorithm>
#include <memory>

using namespace zelvane;

namespace
{

/// Stores with each choice that the commands look at.
SettingsStore &Settings(bool blockForm, bool blanks)
{
    static const auto make = [](bool block, bool spaces) {
        auto store = std::make_unique<SettingsStore>(fuzz::WorkFolder() +
                                                     QStringLiteral("/settings%1%2").arg(block).arg(spaces));
        store->SaveFlag(Keys::CppComments, block);
        store->SaveFlag(Keys::TabInsertSpaces, spaces);
        store->SaveNumber(Keys::TabSpaces, 3);
        return store;
    };
    static const std::unique_ptr<SettingsStore> stores[] = {make(false, false), make(false, true),
                                                            make(true, false), make(true, true)};
    return *stores[(blockForm ? 2 : 0) + (blanks ? 1 : 0)];
}

void CheckFunctions(const QString &text, const QString &unit)
{
    fuzz::ExpectSame("remove", RemoveCommentsFromText(text), oracle::RemoveComments(text), text);
    fuzz::ExpectSame("comment", CommentText(text, false), oracle::Comment(text, false), text);
    fuzz::ExpectSame("block", CommentText(text, true), oracle::Comment(text, true), text);
    fuzz::ExpectSame("uncomment", UncommentText(text), oracle::Uncomment(text), text);
    fuzz::ExpectSame("indent", IndentText(text, unit), oracle::Indent(text, unit), text, unit);
    fuzz::ExpectSame("unindent", UnindentText(text, unit), oracle::Unindent(text, unit), text, unit);
    for (const CaseChange change : {CaseChange::Upper, CaseChange::Lower, CaseChange::Capitalize})
        fuzz::ExpectSame("case", ChangeCaseOfText(text, change), oracle::ChangeCase(text, int(change)), text,
                         int(change));
}

void CheckComments(const QString &text, qsizetype from)
{
    constexpr qsizetype places = 50;
    const auto comments = ParseCommentRanges(text);
    for (qsizetype pos = from; pos <= std::min(from + places, text.size()); ++pos)
        fuzz::ExpectSame("in a comment", IsCommented(text, pos, comments), oracle::InComment(text, pos), text,
                         pos);
}

/// Where the line of an offset starts and ends, by walking.
TextSpan LineAround(const QString &text, qsizetype start, qsizetype end)
{
    while (start > 0 && text[start - 1] != u'\n')
        --start;
    while (end < text.size() && text[end] != u'\n')
        ++end;
    return {start, end};
}

void CheckGoToLine(fuzz::Editor &editor, const QString &answer)
{
    const QString text = editor.text.text;
    const TextSpan before = editor.text.selection;
    editor.desktop.input = answer;
    GoToLine(editor.context);
    fuzz::ExpectSame("text stays", editor.text.text, text);
    if (answer.isEmpty() || editor.desktop.messages > 0) {
        fuzz::Expect("selection stays", editor.text.selection == before, text, answer);
        return;
    }
    const qsizetype caret = editor.text.selection.start;
    fuzz::Expect("caret", editor.text.selection.IsEmpty() && LineAround(text, caret, caret).start == caret,
                 text, answer, caret);
    fuzz::ExpectSame("top line", editor.text.firstVisibleLine, text.left(caret).count(u'\n'), text, answer);
    bool isNumber = false;
    const int line = answer.toInt(&isNumber);
    if (isNumber && answer[0].isDigit())
        fuzz::ExpectSame("line", editor.text.firstVisibleLine, line - 1, text, answer);
}

} // namespace

/// The text operations beside their loops, and the commands made of them on a selection: what stands outside
/// of it stays.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    enum { Comment, Uncomment, Remove, Indent, Unindent, Upper, Lower, Capitalize, GoTo };

    fuzz::Input input(data, size);
    const int command = input.Number(Comment, GoTo);
    const quint8 choices = input.Byte();
    const bool blockForm = choices & 1, blanks = choices & 2;
    const quint8 first = input.Byte(), last = input.Byte();
    const QString text = input.Text();
    const QString answer = input.Text();
    CheckFunctions(text, choices & 4 ? QString(choices >> 3, u' ') : QStringLiteral("\t"));
    CheckComments(text, fuzz::Place(first, text.size()));

    fuzz::Editor editor(Settings(blockForm, blanks));
    editor.text.SetText(text);
    const QString whole = editor.text.text;
    const qsizetype start = fuzz::Place(first, whole.size());
    const qsizetype end = start + fuzz::Place(last, whole.size() - start);
    editor.text.SetSelection(start, end);
    if (command == GoTo) {
        CheckGoToLine(editor, answer);
        return 0;
    }

    TextSpan changed{start, end};
    if (command == Indent || command == Unindent)
        changed = LineAround(whole, start, end);
    else if (start == end && command >= Remove)
        changed = {0, whole.size()};
    const QString old = whole.mid(changed.start, changed.Length());
    const QString unit = blanks ? QStringLiteral("   ") : QStringLiteral("\t");
    QString expected;
    switch (command) {
    case Comment:
        CommentSelection(editor.context);
        expected = start == end ? QStringLiteral(";") : oracle::Comment(old, blockForm);
        break;
    case Uncomment:
        UncommentSelection(editor.context);
        expected = oracle::Uncomment(old);
        break;
    case Remove:
        RemoveComments(editor.context);
        expected = oracle::RemoveComments(old);
        break;
    case Indent:
    case Unindent:
        IndentSelection(editor.context, command == Unindent);
        expected = command == Indent ? oracle::Indent(old, unit) : oracle::Unindent(old, unit);
        break;
    default:
        ChangeCase(editor.context, CaseChange(command - Upper));
        expected = oracle::ChangeCase(old, command - Upper);
        break;
    }
    fuzz::ExpectSame("text", editor.text.text, whole.left(changed.start) + expected + whole.mid(changed.end),
                     whole, start, end, command);
    const qsizetype caret = changed.start + 1;
    const TextSpan selection = command == Remove ? TextSpan{changed.start, changed.start}
                               : command == Comment && start == end
                                   ? TextSpan{caret, caret}
                                   : TextSpan{changed.start, changed.start + expected.size()};
    fuzz::Expect("selection", editor.text.selection == selection, whole, start, end, command,
                 editor.text.selection.start, editor.text.selection.end);
    fuzz::Expect("loaded", !editor.document.Loading);
    return 0;
}
