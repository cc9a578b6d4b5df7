// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/sameword.h"

#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "writing/samewords.h"

#include <algorithm>
#include <QString>

namespace zelvane
{

namespace
{

constexpr int Pause = 120;                   ///< in milliseconds
constexpr qsizetype MostOfLine = 16 * 1024;  ///< of a longer line this much is looked at, around the caret
constexpr qsizetype LongLine = 4096;         ///< of a longer one only what stands in the view is looked at
constexpr qsizetype MostOfView = 256 * 1024; ///< in characters

} // namespace

SameWord::SameWord(const WritingContext &context)
    : m_text(context.window.text), m_decorations(context.decorations)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(Pause);
    connect(&m_pause, &QTimer::timeout, this, &SameWord::Mark);
    connect(&m_text, &TextControl::textChanged, this, &SameWord::Wait);
    connect(&m_text, &TextControl::selectionChanged, this, &SameWord::Wait);
    connect(&m_decorations, &TextDecorations::viewChanged, this, &SameWord::Wait);
    Wait();
}

SameWord::~SameWord()
{
    m_decorations.Clear(Indicator::SameWord);
}

void SameWord::Wait()
{
    m_pause.start();
}

void SameWord::Mark()
{
    const std::vector<TextSpan> words = Words();
    if (words.size() > 1)
        m_decorations.Show(Indicator::SameWord, words);
    else
        m_decorations.Clear(Indicator::SameWord);
}

std::vector<TextSpan> SameWord::Words() const
{
    const TextSpan selection = m_text.Selection();
    const qsizetype line = m_text.LineOfOffset(selection.start);
    const qsizetype start = std::max(m_text.LineStart(line), selection.start - MostOfLine);
    const qsizetype end = std::min(m_text.LineEnd(line), selection.start + MostOfLine);
    if (selection.end > end)
        return {};
    const QString around = m_text.TextRange(start, end);
    const TextSpan found = WordAt(around, {selection.start - start, selection.end - start});
    if (found.IsEmpty())
        return {};
    const QStringView word = QStringView(around).sliced(found.start, found.Length());

    std::vector<TextSpan> words;
    qsizetype left = MostOfView;
    const LineSpan view = m_decorations.VisibleLines();
    for (qsizetype at = view.first; at < view.end && left > 0; ++at) {
        if (m_decorations.IsLineHidden(at))
            continue;
        const TextSpan whole{m_text.LineStart(at), m_text.LineEnd(at)};
        TextSpan part = whole;
        if (whole.Length() > LongLine) {
            // With what tells whether a word at an edge of the view is a whole one.
            const TextSpan seen = m_decorations.VisiblePart(at);
            part = {std::max(whole.start, seen.start - word.size() - 1),
                    std::min(whole.end, seen.end + word.size() + 1)};
        }
        const QString text = m_text.TextRange(part.start, std::min(part.end, part.start + left));
        left -= text.size() + 1;
        for (const TextSpan &one : WordsLike(text, word)) {
            const TextSpan hit{part.start + one.start, part.start + one.end};
            const bool isCut = (hit.start == part.start && part.start > whole.start) ||
                               (hit.end == part.end && part.end < whole.end);
            if (!isCut)
                words.push_back(hit);
        }
    }
    return words;
}

} // namespace zelvane
