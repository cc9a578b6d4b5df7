// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QComboBox>

class QKeyEvent;

namespace zelvane
{

struct EditorContext;

/// `cmbOpcodes`: the sorted list of opcode names, with a text field. Enter inserts what stands in the field
/// into the document; a click drops the list, and what is typed then goes to the field. It stays empty until
/// LoadOpcodeCombo fills it.
class OpcodeCombo : public QComboBox
{
    Q_OBJECT

public:
    /// @param folder the folder of the opcode file; @param focusText gives the focus to the text control
    OpcodeCombo(EditorContext &editor, const QString &folder, std::function<void()> focusText,
                QWidget *parent = nullptr);

    /// Fills the list from the opcode file, handling events meanwhile. Says so in the status line, which then
    /// tells again what it told before. A failure is told there too: the list keeps what it has. Nothing
    /// happens while it is running already.
    void LoadOpcodeCombo();

    void showPopup() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void AddSorted(const QString &word);
    void InsertOpcode();
    /// A key while the list is down: Enter inserts, arrows put the name they reach in the field, text goes to
    /// the field.
    bool PopupKey(QKeyEvent *event);
    void MarkInPopup(int row);
    /// Marks the name that stands in the field, and no other: it is what Enter inserts. Where only the
    /// beginning of names stands there, the list shows the first of these, and the arrow keys begin there.
    void MarkField();
    /// A click on the field drops the list, and selects the field: what is typed takes its place.
    void TakeClick();

    EditorContext &m_editor;
    QString m_folder;
    std::function<void()> m_focusText;
    bool m_loading = false;
    int m_place = 0; ///< the row where the arrow keys begin while no name is marked
};

} // namespace zelvane
