// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findreplace.h"

#include "shell/findkeys.h"
#include "shell/findnext.h"
#include "shell/findpattern.h"
#include "shell/findtext.h"
#include "shell/recentlist.h"

#include <optional>
#include <QScopeGuard>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

void StoreFindString(SettingsStore &settings, const QString &text)
{
    AddRecentItem(settings, text, Sections::RecentFindStrings, RecentFindStringCount);
}

void StoreWordAndCase(SettingsStore &settings, const FindFields &fields)
{
    settings.SaveFlag(Keys::FindWholeWords, fields.wholeWords);
    settings.SaveFlag(Keys::FindMatchCase, fields.matchCase);
    if (fields.regularExpression)
        settings.SaveFlag(Keys::FindRegularExpression, *fields.regularExpression);
}

void StoreReplacing(SettingsStore &settings, const FindFields &fields)
{
    settings.InOneStep([&] {
        settings.SaveText(Keys::FindReplace, fields.replace);
        StoreFindString(settings, fields.find);
        StoreWordAndCase(settings, fields);
    });
}

/// Tells what is wrong with the expression or with what replaces it.
bool MayReplace(EditorContext &editor, const FindFields &fields, const FindPattern &pattern)
{
    if (!TellBadPattern(editor, fields.find, pattern.Error()))
        return false;
    const QString error = ReplacementError(fields.replace, pattern.GroupCount());
    if (!error.isEmpty())
        editor.desktop.MessageBox(
            {.text = u"Cannot replace by '"_s + fields.replace + u"': "_s + error + u'.',
             .icon = BoxIcon::Warning});
    return error.isEmpty();
}

void ReplaceSelectedHit(EditorContext &editor, const FindFields &fields, const FindPattern &pattern)
{
    const TextSpan selection = editor.text.Selection();
    if (selection.IsEmpty() && fields.emptyHit != selection.start)
        return;
    PatternSearch search(pattern, editor.text.Text());
    search.SetStop(StopWhenLong());
    const std::optional<PatternHit> hit = search.Next(selection.start);
    if (hit && hit->span == selection)
        editor.text.ReplaceSelection(ReplacementOf(fields.replace, search.Text(), *hit));
}

/// @return how many there were; no value when the search was given up, and nothing was replaced
std::optional<qsizetype> ReplaceAllHits(EditorContext &editor, const FindFields &fields,
                                        const FindPattern &pattern, const TextSpan &scope)
{
    PatternSearch search(pattern, editor.text.Text(), scope.end);
    search.SetStop(StopWhenLong());
    const auto replacements = PatternReplacements(search, fields.replace, scope.start);
    if (search.GaveUp())
        return std::nullopt;
    editor.text.ReplaceEach(replacements);
    return qsizetype(replacements.size());
}

} // namespace

QStringList FindStringsOffered(const SettingsStore &settings)
{
    return RecentItems(settings, Sections::RecentFindStrings, RecentFindStringCount - 1);
}

FindOptions OptionsOf(const FindFields &fields)
{
    return (fields.wholeWords ? FindWholeWord : FindAnywhere) |
           (fields.matchCase ? FindMatchCase : FindAnywhere) |
           (fields.regularExpression.value_or(false) ? FindRegularExpression : FindAnywhere);
}

SelectedForFind WhatIsSelected(const TextBuffer &text)
{
    const QString selected = text.SelectedText();
    if (selected.contains(u'\n') || selected.contains(u'\r'))
        return {.severalLines = true};
    return {.text = selected};
}

FindFields OpeningFindFields(const EditorContext &editor)
{
    const SettingsStore &settings = editor.settings;
    FindFields fields;
    fields.replace = settings.Text(Keys::FindReplace);
    fields.wholeWords = settings.Flag(Keys::FindWholeWords);
    fields.matchCase = settings.Flag(Keys::FindMatchCase);
    fields.wrap = settings.Flag(Keys::FindWrapSearches);
    if (settings.Flag(Keys::RegularExpressions))
        fields.regularExpression = settings.Flag(Keys::FindRegularExpression);
    if (settings.Integer(Keys::FindScope, int(FindScope::EntireDocument)) == int(FindScope::SelectedText))
        fields.scope = FindScope::SelectedText;

    const SelectedForFind selected = WhatIsSelected(editor.text);
    if (selected.severalLines)
        fields.scope = FindScope::SelectedText;
    fields.find = selected.text.isEmpty() ? FindStringsOffered(settings).value(0) : selected.text;
    return fields;
}

bool FindNext(EditorContext &editor, const FindFields &fields)
{
    if (fields.find.isEmpty())
        return false;
    const bool found = FindNextText(editor, fields.find, fields.wrap, OptionsOf(fields));
    editor.settings.InOneStep([&] {
        StoreFindString(editor.settings, fields.find);
        StoreWordAndCase(editor.settings, fields);
        editor.settings.SaveFlag(Keys::FindWrapSearches, fields.wrap);
        editor.settings.SaveNumber(Keys::FindScope, int(fields.scope));
    });
    return found;
}

bool ReplaceNext(EditorContext &editor, const FindFields &fields)
{
    if (fields.find.isEmpty())
        return false;
    if (OptionsOf(fields) & FindRegularExpression) {
        const FindPattern pattern(fields.find, OptionsOf(fields));
        if (!MayReplace(editor, fields, pattern))
            return false;
        ReplaceSelectedHit(editor, fields, pattern);
    } else if (editor.text.SelectedText() == fields.find) {
        editor.text.ReplaceSelection(fields.replace);
    }
    const bool found = FindNextText(editor, fields.find, false, OptionsOf(fields));
    StoreReplacing(editor.settings, fields);
    return found;
}

void ReplaceAll(EditorContext &editor, const FindFields &fields, const std::function<void(bool)> &showText)
{
    if (fields.find.isEmpty())
        return;
    const TextSpan scope =
        fields.scope == FindScope::SelectedText ? editor.text.Selection() : TextSpan{0, editor.text.Length()};
    const auto show = [&](bool shown) {
        if (showText)
            showText(shown);
    };
    std::optional<FindPattern> pattern;
    if (OptionsOf(fields) & FindRegularExpression) {
        pattern.emplace(fields.find, OptionsOf(fields));
        if (!MayReplace(editor, fields, *pattern))
            return;
    }
    std::optional<qsizetype> count;
    {
        show(false);
        const auto shown = qScopeGuard([&] { show(true); });
        if (pattern) {
            count = ReplaceAllHits(editor, fields, *pattern, scope);
        } else {
            const auto hits = HitsToReplace(editor.text.Text(), fields.find, fields.replace, scope.start,
                                            scope.end, OptionsOf(fields));
            editor.text.ReplaceEach(hits, fields.find.size(), fields.replace);
            count = qsizetype(hits.size());
        }
    }
    StoreReplacing(editor.settings, fields);
    if (count)
        editor.desktop.MessageBox(
            {.text = u"Text has been replaced "_s + QString::number(*count) + u" times."_s,
             .icon = BoxIcon::Information});
    else
        TellHardPattern(editor, fields.find);
}

} // namespace zelvane
