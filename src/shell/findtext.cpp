// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findtext.h"

#include "shell/findkeys.h"

#include <QStringMatcher>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool IsWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

qsizetype FindText(QStringView text, QStringView needle, qsizetype start, qsizetype end, int options)
{
    if (end < 0 || end > text.size())
        end = text.size();
    if (needle.isEmpty() || start < 0 || start > end)
        return -1;
    const QStringMatcher matcher(needle, options & FindMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
    const QStringView searched = text.first(end);
    for (qsizetype hit = start;; ++hit) {
        hit = matcher.indexIn(searched, hit);
        if (hit < 0)
            return -1;
        if (!(options & FindWholeWord))
            return hit;
        const qsizetype behind = hit + needle.size();
        if ((hit == 0 || !IsWordCharacter(text[hit - 1])) &&
            (behind == text.size() || !IsWordCharacter(text[behind])))
            return hit;
    }
}

std::vector<qint32> HitsToReplace(QStringView text, QStringView needle, QStringView replacement,
                                  qsizetype start, qsizetype end, int options)
{
    if (end < 0 || end > text.size())
        end = text.size();
    std::vector<qint32> hits;
    if (needle.isEmpty() || start < 0 || start > end)
        return hits;
    const QStringMatcher matcher(needle, options & FindMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
    const QStringView searched = text.first(end);
    QChar last = start > 0 ? text[start - 1] : QChar(); // of what stands before `kept` after the replacing
    qsizetype kept = start;
    qsizetype from = start;
    for (;;) {
        const qsizetype hit = matcher.indexIn(searched, from);
        if (hit < 0)
            return hits;
        const qsizetype behind = hit + needle.size();
        const QChar before = hit > kept ? text[hit - 1] : last;
        if (options & FindWholeWord &&
            (IsWordCharacter(before) || (behind < text.size() && IsWordCharacter(text[behind])))) {
            from = hit + 1;
            continue;
        }
        hits.push_back(qint32(hit));
        last = replacement.isEmpty() ? before : replacement.back();
        kept = from = behind;
    }
}

bool FindNextText(EditorContext &editor, const QString &needle, bool wrap, int options)
{
    const QString text = editor.text.Text();
    const auto select = [&](qsizetype hit) { editor.text.SetSelection(hit, hit + needle.size()); };
    const auto tell = [&](const QString &before, qsizetype hit) {
        editor.status.Show(before + u"'"_s + needle + u"' found at character "_s + QString::number(hit + 1));
    };

    qsizetype hit = FindText(text, needle, editor.text.Selection().end, -1, options);
    if (hit >= 0) {
        select(hit);
        tell({}, hit);
        return true;
    }
    if (wrap) {
        hit = FindText(text, needle, 0, -1, options);
        if (hit >= 0) {
            select(hit);
            tell(u"Restarting from the beginning of the document... "_s, hit);
            return true;
        }
    }
    editor.desktop.MessageBox({.text = u"Cannot find '"_s + needle + u"'."_s, .icon = BoxIcon::Information});
    return false;
}

void FindAgain(EditorContext &editor)
{
    int options = FindAnywhere;
    if (editor.settings.Flag(Keys::FindWholeWords))
        options |= FindWholeWord;
    if (editor.settings.Flag(Keys::FindMatchCase))
        options |= FindMatchCase;
    const QString needle = editor.settings.GetSetting(Sections::RecentFindStrings, u"1"_s);
    if (!needle.isEmpty())
        FindNextText(editor, needle, false, options);
}

} // namespace zelvane
