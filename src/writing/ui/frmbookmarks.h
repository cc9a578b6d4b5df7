// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/keptlines.h"

#include <QDialog>
#include <QtGlobal>
#include <vector>

class QListWidget;
class QPushButton;

namespace zelvane
{

/// The list of the bookmarks: OK goes to the chosen one, Remove takes it away.
class frmBookmarks : public QDialog
{
    Q_OBJECT

public:
    /// @param line the line of the caret, from 0: the nearest bookmark is chosen at first
    frmBookmarks(const std::vector<KeptLine> &bookmarks, qsizetype line, QWidget *parent);

    /// The line of the chosen bookmark, from 0; only of an accepted dialog.
    qsizetype Chosen() const;
    /// The lines of those that were taken away.
    const std::vector<qsizetype> &Removed() const { return m_removed; }

private:
    void Remove();
    void EnableButtons();

    std::vector<qsizetype> m_removed;

    QListWidget *lstBookmarks;
    QPushButton *bOK;
    QPushButton *bRemove;
    QPushButton *bCancel;
};

} // namespace zelvane
