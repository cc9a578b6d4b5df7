// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/keptlines.h"

#include <algorithm>
#include <iterator>
#include <QHash>
#include <QStringView>
#include <utility>

namespace zelvane
{

namespace
{

constexpr std::size_t MostLost = 200;

bool IsBlank(QStringView text)
{
    return text.trimmed().isEmpty();
}

/// The first kept line at `line` or behind it.
template <typename Lines> auto FirstFrom(Lines &lines, qsizetype line)
{
    return std::lower_bound(lines.begin(), lines.end(), line,
                            [](const KeptLine &one, qsizetype at) { return one.line < at; });
}

QString LineText(const TextBuffer &text, qsizetype line)
{
    const qsizetype start = text.LineStart(line);
    return text.TextRange(start, std::min(text.LineEnd(line), start + KeptLength));
}

/// Finds lines by what they hold, among those that stand from `first` on.
class LineFinder
{
public:
    /// @param wanted the texts that will be asked for
    LineFinder(const TextBuffer &text, qsizetype first, qsizetype last,
               const std::vector<QStringView> &wanted)
    {
        if (wanted.empty())
            return;
        for (const QStringView one : wanted)
            m_places.insert(one, {});
        // One line may be as long as the text.
        const qsizetype start = text.LineStart(first);
        const QString lines =
            first == last ? LineText(text, first) : text.TextRange(start, text.LineEnd(last));
        for (qsizetype line = first, at = 0; at <= lines.size(); ++line) {
            const qsizetype feed = lines.indexOf(u'\n', at);
            const qsizetype end = feed < 0 ? lines.size() : feed;
            const auto found = m_places.find(QStringView(lines).sliced(at, std::min(end - at, KeptLength)));
            if (found != m_places.end())
                found->push_back(line);
            at = end + 1;
        }
    }

    /// The nearest line to `line` that holds the text, -1 without one.
    qsizetype Nearest(QStringView text, qsizetype line) const
    {
        const auto found = m_places.constFind(text);
        if (found == m_places.constEnd() || found->empty())
            return -1;
        const auto behind = std::lower_bound(found->begin(), found->end(), line);
        if (behind == found->begin())
            return *behind;
        const qsizetype before = *std::prev(behind);
        return behind == found->end() || line - before <= *behind - line ? before : *behind;
    }

private:
    QHash<QStringView, std::vector<qsizetype>> m_places; ///< the lines of each text, rising
};

} // namespace

KeptLine KeepLine(const TextBuffer &text, qsizetype line)
{
    return {line, LineText(text, line)};
}

std::vector<qsizetype> FindKeptLines(const TextBuffer &text, const std::vector<KeptLine> &lines)
{
    const auto standsAt = [&text](const KeptLine &kept, qsizetype line) {
        return line >= 0 && line < text.LineCount() && LineText(text, line) == kept.text;
    };
    std::vector<QStringView> wanted;
    if (!std::all_of(lines.begin(), lines.end(),
                     [&](const KeptLine &kept) { return standsAt(kept, kept.line); })) {
        for (const KeptLine &kept : lines)
            wanted.push_back(kept.text);
    }
    const LineFinder finder(text, 0, text.LineCount() - 1, wanted);
    std::vector<qsizetype> found;
    qsizetype by = 0; // how far the line before has moved
    for (const KeptLine &kept : lines) {
        qsizetype line = kept.line + by;
        if (!standsAt(kept, line))
            line = IsBlank(kept.text) ? -1 : finder.Nearest(kept.text, line);
        if (line < 0)
            continue;
        by = line - kept.line;
        found.push_back(line);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void LinesOfFiles::Keep(const QString &file, std::vector<KeptLine> lines)
{
    if (!file.isEmpty())
        m_lines.insert_or_assign(file.toCaseFolded(), std::move(lines));
}

std::vector<KeptLine> LinesOfFiles::Of(const QString &file) const
{
    const auto found = m_lines.find(file.toCaseFolded());
    return found == m_lines.end() ? std::vector<KeptLine>() : found->second;
}

void MarkedLines::Reset(const TextBuffer &text, const std::vector<qsizetype> &lines)
{
    m_lines.clear();
    m_lost.clear();
    m_lineCount = text.LineCount();
    for (const qsizetype line : lines)
        m_lines.push_back(KeepLine(text, line));
}

void MarkedLines::Add(KeptLine kept)
{
    const auto place = FirstFrom(m_lines, kept.line);
    if (place == m_lines.end() || place->line != kept.line)
        m_lines.insert(place, std::move(kept));
}

void MarkedLines::Set(const TextBuffer &text, qsizetype line, bool marked)
{
    const auto place = FirstFrom(m_lines, line);
    if (marked)
        Add(KeepLine(text, line));
    else if (place != m_lines.end() && place->line == line)
        m_lines.erase(place);
}

bool MarkedLines::IsMarked(qsizetype line) const
{
    const auto place = FirstFrom(m_lines, line);
    return place != m_lines.end() && place->line == line;
}

bool MarkedLines::Follow(const TextBuffer &text, const TextEdit &edit)
{
    const qsizetype countBefore = std::exchange(m_lineCount, text.LineCount());
    if (m_lines.empty() && m_lost.empty())
        return false;
    // The edit has replaced the lines [first, lastBefore] by [first, last].
    const qsizetype first = text.LineOfOffset(edit.offset);
    const qsizetype last = text.LineOfOffset(edit.offset + edit.added);
    const qsizetype by = m_lineCount - countBefore;
    const qsizetype lastBefore = last - by;
    const bool keepsFirst = edit.offset > text.LineStart(first);
    const bool keepsLast = edit.offset + edit.added < text.LineEnd(last);

    const auto firstTouched = FirstFrom(m_lines, first);
    const auto behind = FirstFrom(m_lines, lastBefore + 1);
    const std::vector<KeptLine> touched(firstTouched, behind);
    std::vector<QStringView> wanted;
    for (const KeptLine &kept : touched)
        wanted.push_back(kept.text);
    for (const Lost &lost : m_lost) {
        if (edit.added >= lost.kept.text.size())
            wanted.push_back(lost.kept.text);
    }
    if (wanted.empty() && by == 0)
        return false;

    const std::vector<KeptLine> before = m_lines;
    for (auto kept = behind; kept != m_lines.end(); ++kept)
        kept->line += by;
    m_lines.erase(firstTouched, behind);
    const LineFinder finder(text, first, last, wanted);

    std::vector<Lost> stillLost;
    for (Lost &lost : m_lost) {
        // An edit that takes one back brings its lines to their old places. Else a line comes as a whole, or
        // it is another one: what is typed letter by letter is new.
        const bool undoes = edit.offset == lost.edit.offset && edit.added == lost.edit.removed &&
                            edit.removed == lost.edit.added && lost.kept.line < m_lineCount &&
                            LineText(text, lost.kept.line) == lost.kept.text;
        const bool isWhole = edit.added >= lost.kept.text.size() && !IsBlank(lost.kept.text);
        const qsizetype found = undoes    ? lost.kept.line
                                : isWhole ? finder.Nearest(lost.kept.text, lost.kept.line)
                                          : -1;
        if (found >= 0)
            Add({found, lost.kept.text});
        else
            stillLost.push_back(std::move(lost));
    }
    m_lost = std::move(stillLost);

    for (const KeptLine &kept : touched) {
        const qsizetype found = IsBlank(kept.text) && by != 0 ? -1 : finder.Nearest(kept.text, kept.line);
        if (found >= 0)
            Add({found, kept.text});
        else if (by == 0)
            Add(KeepLine(text, kept.line));
        else if (kept.line == first && keepsFirst)
            Add(KeepLine(text, first));
        else if (kept.line == lastBefore && (keepsLast || IsBlank(kept.text)))
            Add(KeepLine(text, last));
        else
            m_lost.push_back({kept, edit});
    }
    if (m_lost.size() > MostLost)
        m_lost.erase(m_lost.begin(), m_lost.end() - qsizetype(MostLost));
    return m_lines != before;
}

} // namespace zelvane
