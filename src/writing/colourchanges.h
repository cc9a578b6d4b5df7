// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"
#include "platform/textbuffer.h"
#include "shell/document.h"

#include <optional>
#include <QStringView>
#include <QtGlobal>
#include <span>
#include <vector>

namespace zelvane
{

class OpcodeList;

// Colours as plain runs: in rising order, inside the text, none empty, none of class Text, and no two of one
// class that touch. Equal colours are equal runs. Offsets are UTF-16 offsets from 0.

/// The colours of a text of so many characters by runs in rising order that do not overlap.
StyleRuns PlainRuns(StyleRuns runs, qsizetype length);

/// What a refresh would colour of a document of this kind; none for a kind that a refresh leaves as it is.
std::optional<StyleRuns> RefreshedColours(QStringView text, FileKind kind, const OpcodeList &opcodes);

/// A stretch that is to be coloured anew, with the runs inside it.
struct ColourChange {
    TextSpan span;
    StyleRuns runs;

    bool operator==(const ColourChange &) const = default;
};

/// The stretches of a text where the colours that it shows are not the wanted ones, in order. Stretches that
/// are close to one another are one, and so are many, since each costs some time by itself. Both lists are
/// plain runs.
std::vector<ColourChange> ColourChanges(const StyleRuns &shown, const StyleRuns &wanted, qsizetype length);

/// The colours of a text, remembered while it is edited: only what stands where edits were made has to be
/// asked for.
class KnownColours
{
public:
    /// @param runs plain runs of the whole text
    void Know(StyleRuns runs);
    void Forget() { m_known = false; }
    void Edited(const TextEdit &edit);

    /// The stretch whose colours are not known; the whole text when nothing is.
    TextSpan Unknown(qsizetype length) const;
    /// The plain runs of the whole text.
    /// @param stretch those of the unknown stretch, offsets from its start
    StyleRuns With(const StyleRuns &stretch, qsizetype length) const;
    /// As ColourChanges of With gives them, without a look at what has not changed.
    std::vector<ColourChange> Changes(const StyleRuns &stretch, const StyleRuns &wanted,
                                      qsizetype length) const;

private:
    /// Some of the known runs with those of the unknown stretch.
    StyleRuns Joined(std::span<const StyleRun> known, const StyleRuns &stretch, qsizetype length) const;

    bool m_known = false;
    StyleRuns m_runs;
    bool m_edited = false;
    TextSpan m_unknown;       ///< of the text as it is
    qsizetype m_longerBy = 0; ///< than the text of the runs
};

} // namespace zelvane
