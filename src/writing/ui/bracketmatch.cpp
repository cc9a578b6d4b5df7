// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/bracketmatch.h"

#include "platform/ui/textcontrol.h"
#include "platform/ui/textdecorations.h"
#include "writing/ui/scannedtext.h"

#include <optional>

namespace zelvane
{

BracketMatch::BracketMatch(const WritingContext &context)
    : m_text(context.window.text), m_decorations(context.decorations)
{
    connect(&context.scanned, &ScannedText::scanned, this, &BracketMatch::Scanned);
    connect(&m_text, &TextControl::textChanged, this, &BracketMatch::TextChanged);
    connect(&m_text, &TextControl::selectionChanged, this, &BracketMatch::Mark);
    context.scanned.Request();
}

BracketMatch::~BracketMatch()
{
    Clear();
}

void BracketMatch::TextChanged()
{
    m_known = false;
    Clear();
}

void BracketMatch::Scanned(const TextScan &scan)
{
    m_brackets = FindBrackets(scan.text, scan.map, scan.kind);
    m_known = true;
    Mark();
}

void BracketMatch::Mark()
{
    if (!m_known)
        return;
    const TextSpan selection = m_text.Selection();
    const std::optional<BracketAtCaret> found =
        selection.IsEmpty() ? BracketAt(m_brackets, selection.start) : std::nullopt;
    if (!found) {
        Clear();
    } else if (found->partner) {
        m_decorations.Clear(Indicator::BraceUnmatched);
        m_decorations.Show(Indicator::Brace, {found->here, *found->partner});
    } else {
        m_decorations.Clear(Indicator::Brace);
        m_decorations.Show(Indicator::BraceUnmatched, {found->here});
    }
}

void BracketMatch::Clear()
{
    m_decorations.Clear(Indicator::Brace);
    m_decorations.Clear(Indicator::BraceUnmatched);
}

} // namespace zelvane
