// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <array>
#include <QtGlobal>

namespace zelvane
{

class DocumentView;
class OpcodeList;
class SettingsStore;
struct EditorContext;

/// How the classes look, by the settings. With system colours on, class Text has the system's text colour and
/// `FontColor` is not read.
std::array<StyleFormat, StyleClassCount> SyntaxHighlightSettings(const SettingsStore &settings);

/// Colours the document. Never live: when a document is opened, and on demand.
class Highlighter
{
public:
    Highlighter(EditorContext &editor, DocumentView &view, const OpcodeList &opcodes);

    /// Colours the whole document by its kind, if the setting `SyntaxHighlight` is on, and empties the undo
    /// buffer in any case.
    void performSyntaxHighlight();

    /// Gives [start, end) the class Text and colours what the scan of `mode` finds; empties the undo buffer
    /// and gives the text the focus. Offsets from 0, `end` 0 for the end of the text. A scan that fails is
    /// reported; what it had found stays coloured, the text control stays hidden and `Loading` set, for the
    /// caller to end.
    /// @return false when the scan failed
    bool HighlightRange(qint32 start, qint32 end, int mode);

    /// Colours [start, end), which was put into the text, for what it is at its place, if the setting
    /// `SyntaxHighlight` is on. Offsets from 0. Unlike a pass over a range it is part of an edit: what was
    /// done before can still be undone.
    void HighlightInserted(qsizetype start, qsizetype end);

private:
    bool HighlightUnified();
    template <typename Work> bool Colour(Work work);

    EditorContext &m_editor;
    DocumentView &m_view;
    const OpcodeList &m_opcodes;
};

} // namespace zelvane
