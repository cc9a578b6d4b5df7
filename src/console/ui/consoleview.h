// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/linestore.h"

#include <QAbstractScrollArea>
#include <QPointF>
#include <QString>

class QColor;
class QPainter;

namespace zelvane
{

/// Shows the lines of a LineStore and one line more that has not ended, and follows the end until the user
/// scrolls up. It paints what is in view and nothing else. Whole lines are selected, by the mouse or by
/// Shift with the arrows.
class ConsoleView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit ConsoleView(const LineStore &store, QWidget *parent = nullptr);

    /// The store has changed. @param unfinished the line after its last one
    void UpdateLines(const StyledLine &unfinished);

    qint64 CurrentLine() const { return m_current; } ///< -1 before the user has chosen one
    /// Selects a line and brings it into view.
    void GoToLine(qint64 number);
    QString SelectedText() const;
    void CopySelected() const;
    void SelectAll();

Q_SIGNALS:
    /// A line was double-clicked, or Enter pressed on it.
    void LineActivated(qint64 number);

protected:
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    int LineHeight() const;
    int LinesInView() const;
    qint64 LineAt(int y) const;
    bool IsAtEnd() const;
    void SetRanges(bool follow);
    void MeasureShown();
    void Move(qint64 number, bool extend);
    struct Faces;
    void PaintWhole(QPainter &painter, const Faces &faces, QPointF at, const StyledLine &line,
                    const QColor &plain, bool bold, bool selected) const;
    void PaintLine(QPainter &painter, Faces &faces, int y, const StyledLine &line, LineMark mark,
                   bool selected) const;

    const LineStore &m_store;
    StyledLine m_unfinished;
    qint64 m_shownFirst = 0; ///< the first line of the store when it was last shown
    qint64 m_current = -1;
    qint64 m_anchor = -1;
    double m_widest = 0; ///< width of the widest line that was in view, pixels
};

} // namespace zelvane
