// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"
#include "writing/colourchanges.h"
#include "writing/ui/writingaid.h"

#include <QObject>
#include <QtGlobal>
#include <QTimer>

namespace zelvane
{

class OpcodeList;
class ScannedText;
class TextControl;
struct EditorContext;

/// Colours the text as it is written: in each pause it gets the colours that a refresh would give it, where
/// it has others. Undo buffer, modified mark, selection and view stay as they are; without the setting
/// `SyntaxHighlight` nothing happens. Longer texts wait for longer pauses, since each takes a scan.
class LiveColours : public QObject, public WritingAid
{
public:
    explicit LiveColours(const WritingContext &context);

    void SettingsApplied() override;

    /// Does at once what the next pause would do.
    void ColourNow();

private:
    void Wait() { m_pause.start(); }
    void Colour();

    EditorContext &m_editor;
    TextControl &m_text;
    ScannedText &m_scanned;
    const OpcodeList &m_opcodes;
    KnownColours m_known;
    quint64 m_colourings = 0; ///< of the text control, when the colours were known
    bool m_fresh = true;      ///< the text has not been coloured since it came
    FileKind m_kind = FileKind::Other;
    QTimer m_pause;
};

} // namespace zelvane
