// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"
#include "instruments/instrumentproperties.h"
#include "instruments/ui/instrumentmodel.h"
#include "instruments/zelvanedata.h"
#include "platform/ui/canceldialogs.h"

#include <functional>
#include <QDialog>

class QAction;
class QComboBox;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QStackedWidget;
class QToolBar;
class QTreeView;
class QWidget;

namespace zelvane
{

struct EditorContext;

/// The Instrument Properties dialog: the instruments of the document, their p-fields, and a page for the
/// chosen one. Nothing is stored before OK. A page whose fields are not valid keeps its node chosen.
class frmInstrEdit : public QDialog, public KeepsWork
{
    Q_OBJECT

public:
    explicit frmInstrEdit(EditorContext &editor, QWidget *parent = nullptr);

    bool MayCancel() override;

private:
    using Node = InstrumentModel::Node;

    void BuildToolbar();
    QWidget *NewInstrumentPage();
    QWidget *NewFieldPage();
    void LayOut();

    /// Builds the tree again and chooses a node, the first one where it has none. The page that was shown is
    /// not saved.
    void BuildTree(const Node &chosen = {});
    Node Current() const;
    void ShowNode(const Node &node);
    void ShowPage(const InstrumentPage &page);
    void ShowPage(const FieldPage &page);
    InstrumentPage TheInstrumentPage() const;
    FieldPage TheFieldPage() const;
    /// Whether anything is other than it was loaded, the page that is shown among it.
    bool HasChanges() const;
    /// Takes the page that is shown into what it shows. @return false when it may not be: the user has been
    /// told
    bool SavePage();

    void AddInstrument();
    void AddField();
    void Move(bool up);
    void Remove();
    bool RemoveField(const Node &node);
    bool RemoveInstrument(const Node &node);
    void Confirm();

    void Warn(const QString &text);
    void TellError(const QString &text);
    /// Reports what the work throws.
    std::function<void()> Guard(void (frmInstrEdit::*work)());

    EditorContext &m_editor;
    Instruments m_instruments;
    LoadedStore m_loaded; ///< where they come from
    Node m_shown;         ///< whose page is shown
    bool m_changed = false;

    QToolBar *tlbInstrEdit;
    QAction *m_newInstrument = nullptr;
    QAction *m_newField = nullptr;
    QAction *m_delete = nullptr;
    QAction *m_up = nullptr;
    QAction *m_down = nullptr;
    InstrumentModel *m_model;
    QTreeView *tvwInstrEdit;
    QStackedWidget *fraP;

    QLineEdit *TxtInsName;
    QLineEdit *TxtInsDesc;
    QLineEdit *TxtInsNumber;

    QLineEdit *txtName;
    QLineEdit *txtDescription;
    QComboBox *cmbGroup;
    QLineEdit *txtMin;
    QLineEdit *txtMax;
    QComboBox *cmbFormat;
    QComboBox *cmbUnit;
    QLineEdit *txtVar;

    QPushButton *bOK;
    QPushButton *bCancel;
};

} // namespace zelvane
