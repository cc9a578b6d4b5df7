// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findnext.h"

#include "platform/textbuffer.h"
#include "shell/findkeys.h"
#include "shell/findpattern.h"
#include "shell/findtext.h"

#include <chrono>
#include <optional>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool FindNextText(EditorContext &editor, const QString &needle, bool wrap, FindOptions options)
{
    const QString text = editor.text.Text();
    std::optional<PatternSearch> search;
    if (options & FindRegularExpression) {
        const FindPattern pattern(needle, options);
        if (!TellBadPattern(editor, needle, pattern.Error()))
            return false;
        search.emplace(pattern, text);
        search->SetStop(StopWhenLong());
    }
    const auto find = [&](qsizetype start) -> std::optional<TextSpan> {
        if (search) {
            const auto hit = search->Next(start);
            return hit ? std::optional(hit->span) : std::nullopt;
        }
        const qsizetype hit = FindText(text, needle, start, -1, options);
        return hit < 0 ? std::nullopt : std::optional(TextSpan{hit, hit + needle.size()});
    };
    const auto select = [&](const TextSpan &hit, const QString &before) {
        editor.text.SetSelection(hit.start, hit.end);
        editor.status.Show(before + u"'"_s + needle + u"' found at character "_s +
                           QString::number(hit.start + 1));
    };

    const TextSpan selection = editor.text.Selection();
    std::optional<TextSpan> hit = find(selection.end);
    if (hit && hit->IsEmpty() && *hit == selection)
        hit = find(selection.end + 1);
    if (hit) {
        select(*hit, {});
        return true;
    }
    if (wrap && !(search && search->GaveUp())) {
        hit = find(0);
        if (hit) {
            select(*hit, u"Restarting from the beginning of the document... "_s);
            return true;
        }
    }
    if (search && search->GaveUp())
        TellHardPattern(editor, needle);
    else
        editor.desktop.MessageBox(
            {.text = u"Cannot find '"_s + needle + u"'."_s, .icon = BoxIcon::Information});
    return false;
}

bool TellBadPattern(EditorContext &editor, const QString &expression, const QString &error)
{
    if (!error.isEmpty())
        editor.desktop.MessageBox({.text = BadPatternText(expression, error), .icon = BoxIcon::Warning});
    return error.isEmpty();
}

void TellHardPattern(EditorContext &editor, const QString &expression)
{
    editor.desktop.MessageBox({.text = u"The search for '"_s + expression +
                                       u"' was given up: the regular expression takes too long here."_s,
                               .icon = BoxIcon::Warning});
}

std::function<bool()> StopWhenLong()
{
    constexpr auto patience = std::chrono::seconds(5);
    return [end = std::chrono::steady_clock::now() + patience] {
        return std::chrono::steady_clock::now() > end;
    };
}

void FindAgain(EditorContext &editor)
{
    FindOptions options = FindAnywhere;
    if (editor.settings.Flag(Keys::FindWholeWords))
        options |= FindWholeWord;
    if (editor.settings.Flag(Keys::FindMatchCase))
        options |= FindMatchCase;
    if (editor.settings.Flag(Keys::RegularExpressions) && editor.settings.Flag(Keys::FindRegularExpression))
        options |= FindRegularExpression;
    const QString needle = editor.settings.GetSetting(Sections::RecentFindStrings, u"1"_s);
    if (!needle.isEmpty())
        FindNextText(editor, needle, false, options);
}

} // namespace zelvane
