// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/opcodelist.h"
#include "platform/stylerun.h"

#include <array>
#include <QStringView>

namespace zelvane
{

struct EditorContext;
class DocumentView;
class SettingsStore;

/// What a scan looks for. Any other number scans nothing.
enum class ScanMode { None = 0, Orchestra = 1, Score = 2, Tags = 3 };

/// What a scan found. Runs are in rising order and do not overlap; the last may reach beyond the range, as a
/// comment is not bounded by it.
struct ScanResult {
    StyleRuns runs;
    /// A macro name ran to the very last character of the text, which ends the scan as a failure; the runs
    /// are those found before it.
    bool ranOffText = false;
};

/// The coloured stretches of [start, end) of the text; offsets from 0. An `end` of 0 means the end of the
/// text. A range beyond the text is cut to it.
ScanResult ScanRange(QStringView text, qsizetype start, qsizetype end, ScanMode mode,
                     const OpcodeList &opcodes);

/// The coloured stretches of a unified document: its tags, and over them what the orchestra scan finds
/// between the first CsInstruments tag and its closing one and the score scan between those of CsScore. The
/// result of scanning one after the other on the same text, each resetting its range.
StyleRuns ScanUnified(QStringView text, const OpcodeList &opcodes);

/// How the classes look, by the settings. With system colours on, class Text has the system's text colour and
/// `FontColor` is not read. @throws RunTimeError for a stored value that is no number
std::array<StyleFormat, StyleClassCount> SyntaxHighlightSettings(const SettingsStore &settings);

/// Colours the document. Never live: when a document is opened, and on demand.
class Highlighter
{
public:
    Highlighter(EditorContext &editor, DocumentView &view, const OpcodeList &opcodes);

    /// Colours the whole document by its kind, if the setting `SyntaxHighlight` is on, and empties the undo
    /// buffer in any case. @throws RunTimeError when the setting cannot be read
    void performSyntaxHighlight();

    /// Gives [start, end) the class Text and colours what the scan of `mode` finds; empties the undo buffer
    /// and gives the text the focus. Offsets from 0, `end` 0 for the end of the text. A scan that fails is
    /// reported; what it had found stays coloured, the text control stays hidden and `Loading` set, for the
    /// caller to end.
    /// @return false when the scan failed
    bool HighlightRange(qint32 start, qint32 end, int mode);

private:
    EditorContext &m_editor;
    DocumentView &m_view;
    const OpcodeList &m_opcodes;
};

} // namespace zelvane
