// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/wordlist.h"

#include <QListView>
#include <QRect>
#include <vector>

namespace zelvane
{

class CompletionModel;

/// The list of what may come next, a small window of its own at the word that is typed. The text keeps the
/// focus: who shows the list moves its current row. A click takes a row.
class CompletionList : public QListView
{
    Q_OBJECT

public:
    explicit CompletionList(QWidget *window);

    /// Shows rows, the first of them current, below a place of the screen, or above it where there is no room
    /// below. While the list stands it stays on the side where it came.
    void ShowRows(std::vector<Completion> rows, const QRect &place);
    const Completion *Current() const;
    /// Moves the current row, by pages of what is in sight or by single rows, as far as there are rows.
    void Move(int rows);
    void MovePage(int pages);

Q_SIGNALS:
    void taken();

protected:
    void hideEvent(QHideEvent *event) override;

private:
    void Place(const QRect &word);
    /// A place with the hint that stands above or below it, which the list leaves in sight.
    QRect WithHint(QRect place) const;
    void MakeCurrent(int row);

    CompletionModel *m_model;
    bool m_above = false;
};

} // namespace zelvane
