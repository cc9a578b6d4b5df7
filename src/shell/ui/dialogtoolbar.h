// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <Qt>

class QAction;
class QString;
class QToolBar;
class QWidget;

namespace zelvane
{

/// The toolbar of a dialog: small icons with their captions beside them.
QToolBar *NewDialogToolbar(QWidget *dialog, const QString &name);

/// Puts a button at the toolbar's end. @param key its icon, and its objectName behind the toolbar's and "_"
/// @param focus how the button takes the keyboard; what works on the control that has it must not
QAction *AddDialogTool(QToolBar &toolbar, const QString &key, const QString &caption, const QString &tooltip,
                       Qt::FocusPolicy focus = Qt::NoFocus);

} // namespace zelvane
