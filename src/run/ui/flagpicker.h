// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/ui/fieldselection.h"

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QMenu;
class QWidget;

namespace zelvane
{

struct EditorContext;

/// A button that picks flags of Csound for a field, which is a text box or an editable combo box. A click
/// opens frmFlags; with Ctrl held it pops up a menu of the flags. What is picked replaces the selection that
/// the field had when it last had the focus.
class FlagPicker : public QObject
{
public:
    /// Belongs to the button, whose clicks it takes. @param target the field
    FlagPicker(EditorContext &editor, QAbstractButton *button, QWidget *target);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Pick();
    void PopUp();
    /// Puts a flag in place of the selection. The caret goes to the offset that is the flag's length,
    /// wherever the flag stands (kept).
    void Put(const QString &flag);

    EditorContext &m_editor;
    QAbstractButton *m_button;
    QPointer<QWidget> m_target;
    QMenu *m_menu = nullptr;    ///< made at the first use
    FieldSelection m_selection; ///< of the field, as it was when the focus left it
};

} // namespace zelvane
