// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/highlighter.h"

#include "language/languagekeys.h"
#include "language/scanner.h"
#include "platform/runtimeerror.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/editorkeys.h"
#include "shell/errorreport.h"

#include <algorithm>
#include <new>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

std::array<StyleFormat, StyleClassCount> SyntaxHighlightSettings(const SettingsStore &settings)
{
    const auto format = [&settings](const ColourKey &key, bool bold) {
        const std::optional<quint32> stored = settings.StoredColour(key);
        return StyleFormat{stored.value_or(key.fallback), bold, !stored};
    };
    std::array<StyleFormat, StyleClassCount> formats;
    // A fresh record is the automatic colour of the text control.
    StyleFormat text{.isDefault = true};
    if (!settings.Flag(Keys::SystemColors))
        text = format(Keys::FontColor, false);
    formats[size_t(StyleClass::Text)] = text;
    formats[size_t(StyleClass::Comment)] = format(Keys::CommentsColor, false);
    formats[size_t(StyleClass::Opcode)] = format(Keys::OpcodeColor, true);
    formats[size_t(StyleClass::Keyword)] = format(Keys::KeywordColor, false);
    formats[size_t(StyleClass::Macro)] = format(Keys::MacroColor, false);
    formats[size_t(StyleClass::Literal)] = format(Keys::LiteralColor, false);
    formats[size_t(StyleClass::Tag)] = format(Keys::TagColor, false);
    return formats;
}

Highlighter::Highlighter(EditorContext &editor, DocumentView &view, const OpcodeList &opcodes)
    : m_editor(editor), m_view(view), m_opcodes(opcodes)
{
}

void Highlighter::performSyntaxHighlight()
{
    try {
        if (m_editor.settings.Flag(Keys::SyntaxHighlight)) {
            m_editor.status.Show(u"Syntax highlight..."_s);
            switch (m_editor.document.DocumentKind) {
            case FileKind::Other:
                m_editor.text.ApplyStyles(0, m_editor.text.Length(), {});
                break;
            case FileKind::Orchestra:
                HighlightRange(0, 0, int(ScanMode::Orchestra));
                break;
            case FileKind::Score:
                HighlightRange(0, 0, int(ScanMode::Score));
                break;
            case FileKind::Unified:
                HighlightUnified();
                break;
            default:
                break;
            }
        }
    } catch (const RunTimeError &error) {
        ReportError(m_editor.desktop, error);
    }
    m_editor.text.EmptyUndoBuffer();
}

bool Highlighter::HighlightRange(qint32 start, qint32 end, int mode)
{
    return Colour([&](const QString &text) {
        if (end == 0)
            end = qint32(text.size());
        const ScanResult found = ScanRange(text, start, end, ScanMode(mode), m_opcodes);
        m_editor.text.ApplyStyles(start, end, found.runs);
        if (found.ranOffText)
            throw RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);
    });
}

void Highlighter::HighlightInserted(qsizetype start, qsizetype end)
{
    if (start >= end || !m_editor.settings.Flag(Keys::SyntaxHighlight))
        return;
    StyleRuns runs;
    const FileKind kind = m_editor.document.DocumentKind;
    if (kind == FileKind::Unified)
        runs = ScanUnified(m_editor.text.Text(), m_opcodes);
    else if (kind == FileKind::Orchestra || kind == FileKind::Score)
        // From the text's start: what is open in front of the stretch makes it what it is. What a scan had
        // found when it ran off the text is what there is to colour.
        runs = ScanRange(m_editor.text.Text(), 0, end,
                         kind == FileKind::Score ? ScanMode::Score : ScanMode::Orchestra, m_opcodes)
                   .runs;
    // What begins before, or reaches beyond, is not the inserted text's.
    StyleRuns inside;
    for (const StyleRun &run : runs) {
        const qsizetype from = std::max<qsizetype>(run.start, start);
        const qsizetype to = std::min<qsizetype>(run.start + run.length, end);
        if (from < to)
            inside.push_back({qint32(from), qint32(to - from), run.style});
    }
    m_editor.text.ApplyStyles(start, end, inside);
}

bool Highlighter::HighlightUnified()
{
    return Colour([&](const QString &text) {
        m_editor.text.ApplyStyles(0, text.size(), ScanUnified(text, m_opcodes));
    });
}

template <typename Work> bool Highlighter::Colour(Work work)
{
    m_editor.document.Loading = true;
    m_view.SetBusy(true);
    // Kept: a failed pass does not put the window back in order; whoever asked for it does.
    const auto fail = [this](const RunTimeError &error) {
        m_view.SetBusy(false);
        m_view.HideText();
        ReportError(m_editor.desktop, error);
        return false;
    };
    try {
        work(m_editor.text.Text());
    } catch (const RunTimeError &error) {
        return fail(error);
    } catch (const std::bad_alloc &) {
        return fail(OutOfMemory());
    }
    m_view.SetBusy(false);
    m_editor.text.EmptyUndoBuffer();
    m_view.FocusText();
    m_editor.document.Loading = false;
    return true;
}

} // namespace zelvane
