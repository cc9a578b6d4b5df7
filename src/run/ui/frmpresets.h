// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/canceldialogs.h"
#include "run/preseteditor.h"
#include "run/runcontext.h"

#include <functional>
#include <QDialog>

class QAction;
class QCheckBox;
class QComboBox;
class QMenu;
class QPushButton;
class QTabWidget;
class QToolBar;

namespace zelvane
{

class ActionPage;
class ButtonPage;

/// The preset editor, "Add/Remove Presets". Saving, deleting and moving act on the store at once; what stands
/// in the fields and is not saved is lost when another preset is chosen. A new preset and the end of the
/// dialog ask before.
class frmPresets : public QDialog, public KeepsWork
{
    Q_OBJECT

public:
    explicit frmPresets(const RunContext &context, QWidget *parent = nullptr);

    /// Chooses the row whose text equals the name; nothing happens when there is none.
    void SelectPreset(const QString &name);
    /// Takes a built-in image for the preset, instead of a picture file.
    void setImgnumber(int number);

    void reject() override;
    bool MayCancel() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildToolbar();
    void BuildPages();
    void LayOut();
    void Connect();

    /// Fills the lists from the store and chooses the first preset. Runs again after each deletion, when the
    /// window list of the second action gets its rows once more (kept; the first four are the valid ones).
    void LoadLists();
    QStringList Rows() const;
    /// The row whose text stands in `cmbPreset`, -1 for none.
    int SelectedRow() const;
    void ChooseRow(int row);
    /// Puts rows into `cmbPreset` and leaves the fields as they are.
    void ShowRows(const QStringList &rows, int row);
    void EnableTools();

    PresetFields Fields() const;
    void ShowFields(const PresetFields &fields);
    /// The name and the fields are stored as they stand, or nothing that is worth a question.
    void MarkSaved();
    /// The tooltip of the command, and whether a second action can follow it.
    void ShowCommandFacts();
    void CommandChanged();

    /// The buttons of the toolbar.
    enum class Tool { New, Save, Delete, Up, Down, Macro };
    /// A button: its name (of its icon, and behind the toolbar's), its words and the key that does the same.
    struct ToolRow {
        Tool tool;
        const char16_t *name;
        const char16_t *caption;
        const char16_t *tooltip;
        int shortcut; ///< with Ctrl, but for F8
    };
    static const ToolRow Tools[];
    static const ToolRow &RowOf(Tool tool);
    QAction *ActionOf(Tool tool) const;
    void RunTool(Tool tool);
    void NewPreset();
    void Save();
    void Delete();
    void Move(bool up);
    void PopUpMacros();
    void InsertMacro(const QString &macro);
    void StepPage(int step);
    /// @return whether the key is one of the dialog's own; it has been done then, unless only asked for
    bool TakeKey(const QKeyEvent &event, bool onlyAsk);

    /// Reports what the work throws.
    void Guard(const std::function<void()> &work);

    RunContext m_context;
    QString m_savedName;
    PresetFields m_savedFields;

    QToolBar *tlbPreset;
    QMenu *mnuMacros = nullptr; ///< filled at the first use
    QComboBox *cmbPreset;
    QTabWidget *TbsPreset;

    ActionPage *m_first;
    QCheckBox *chkSaveFirst;
    ActionPage *m_second; ///< enabled only behind a program
    ButtonPage *m_button;
    QPushButton *bCancel;
};

/// Shows the preset editor, modal over the active window, with the preset of this name chosen if it is there.
void ShowPresetEditor(const RunContext &context, const QString &name = {});

} // namespace zelvane
