// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/dialogprogram.h"

#include "platform/textbuffer.h"
#include "run/ui/frmpresets.h"
#include "shell/documentkind.h"

namespace zelvane
{

namespace
{

/// The text of a program without a text: always empty.
class NoText : public TextBuffer
{
public:
    QString Text() const override { return {}; }
    QString TextRange(qsizetype, qsizetype) const override { return {}; }
    qsizetype Length() const override { return 0; }
    void SetText(const QString &) override {}
    TextSpan Selection() const override { return {}; }
    void SetSelection(qsizetype, qsizetype) override {}
    QString SelectedText() const override { return {}; }
    void ReplaceSelection(const QString &) override {}
    void ReplaceRange(qsizetype, qsizetype, const QString &) override {}
    void ReplaceEach(const std::vector<qint32> &, qsizetype, const QString &) override {}
    void ReplaceEach(const std::vector<TextReplacement> &) override {}
    qsizetype LineCount() const override { return 1; }
    qsizetype LineOfOffset(qsizetype) const override { return 0; }
    qsizetype LineStart(qsizetype) const override { return 0; }
    qsizetype LineEnd(qsizetype) const override { return 0; }
    qsizetype FirstVisibleLine() const override { return 0; }
    void ScrollToLine(qsizetype) override {}
    void ApplyStyles(qsizetype, qsizetype, const StyleRuns &) override {}
    bool CanUndo() const override { return false; }
    bool CanRedo() const override { return false; }
    void EmptyUndoBuffer() override {}
};

class NoStatus : public StatusLine
{
public:
    QString Text() const override { return {}; }
    void Show(const QString &) override {}
};

class NoOperations : public DocumentOperations
{
public:
    void OpenFile(const QString &, OpenOrigin) override {}
    bool SaveFile(const QString &) override { return true; }
    void NewFile(FileKind, const QString &) override {}
    void InsertFile(const QString &) override {}
    bool QuerySave() override { return true; }
    void KeepUnsaved() override {}
};

} // namespace

struct DialogProgram::Void {
    NoText text;
    NoStatus status;
    NoOperations operations;
};

DialogProgram::DialogProgram(const QString &document, SettingsStore &settings, Desktop &desktop)
    : m_settingReports(settings, desktop),
      m_tools(ReadToolPaths(settings)),
      m_void(std::make_unique<Void>()),
      m_editor{m_document, m_void->text, settings, desktop, m_void->status, *this, m_void->operations},
      m_context{m_editor, m_tools, *this}
{
    m_document.CurrentFile = document;
    ClassifyDocument(m_document, settings);
    m_settingReports.Tell();
}

DialogProgram::~DialogProgram()
{
    m_settingReports.Tell(); // no event loop comes round for what the last preset has read
}

void DialogProgram::MinimizeMainWindow()
{
    if (m_window)
        m_window->hide();
}

void DialogProgram::ShowPreferences()
{
    if (!m_showPreferences)
        return;
    m_showPreferences();
    m_tools = ReadToolPaths(m_editor.settings);
}

void DialogProgram::EditPreset(const QString &name)
{
    ShowPresetEditor(m_context, name);
}

} // namespace zelvane
