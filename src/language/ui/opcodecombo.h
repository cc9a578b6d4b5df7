// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QComboBox>

namespace zelvane
{

struct EditorContext;

/// `cmbOpcodes`: the sorted list of opcode names, with a text field. Enter inserts what stands in the field
/// into the document; a click drops the list. It stays empty until LoadOpcodeCombo fills it.
class OpcodeCombo : public QComboBox
{
    Q_OBJECT

public:
    /// @param folder the folder of the opcode file; @param focusText gives the focus to the text control
    OpcodeCombo(EditorContext &editor, const QString &folder, std::function<void()> focusText,
                QWidget *parent = nullptr);

    /// Fills the list from the opcode file, handling events meanwhile. Says so in the status line, and a
    /// failure too: the list then keeps what it has. Nothing happens while it is running already.
    void LoadOpcodeCombo();

    /// Puts the field's text in place of the document's selection, selects it there and gives the focus to
    /// the text.
    void InsertOpcode();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void AddSorted(const QString &word);
    bool PopupKey(class QKeyEvent *event);
    void SelectNearest();

    EditorContext &m_editor;
    QString m_folder;
    std::function<void()> m_focusText;
    bool m_loading = false;
};

} // namespace zelvane
