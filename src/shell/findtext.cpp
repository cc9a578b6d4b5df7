// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findtext.h"

#include <QStringMatcher>

namespace zelvane
{

bool IsWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

qsizetype FindText(QStringView text, QStringView needle, qsizetype start, qsizetype end, FindOptions options)
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
                                  qsizetype start, qsizetype end, FindOptions options)
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

} // namespace zelvane
