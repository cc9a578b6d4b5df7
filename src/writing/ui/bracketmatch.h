// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/brackets.h"
#include "writing/ui/writingaid.h"

#include <QObject>
#include <vector>

namespace zelvane
{

struct TextScan;

/// Marks the bracket, quote or tag at the caret and its partner; one without a partner is marked otherwise.
class BracketMatch : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit BracketMatch(const WritingContext &context);
    ~BracketMatch() override;

private:
    void TextChanged();
    void Scanned(const TextScan &scan);
    void Mark();
    void Clear();

    TextControl &m_text;
    TextDecorations &m_decorations;
    std::vector<Bracket> m_brackets;
    bool m_known = false; ///< the brackets are those of the present text
};

} // namespace zelvane
