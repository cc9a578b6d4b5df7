// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <array>
#include <optional>
#include <QColor>
#include <QObject>
#include <Qt>
#include <vector>

namespace zelvane
{

class TextControl;

/// Marks on stretches of the text.
enum class Indicator { Brace, BraceUnmatched, SameWord };
inline constexpr int IndicatorCount = 3;

/// Marks on lines. A header that is folded over bookmarks shows one of its own.
enum class LineMarker { Bookmark, FoldedBookmark };
inline constexpr int LineMarkerCount = 2;

/// The margins, in their order from the left.
enum class TextMargin { Markers, Numbers, Folds };
inline constexpr int TextMarginCount = 3;

/// How deep a line stands, from 0, and whether the deeper lines below it can be folded into it.
struct FoldLevel {
    int depth = 0;
    bool header = false;

    bool operator==(const FoldLevel &) const = default;
};

/// Lines from 0, end exclusive.
struct LineSpan {
    qsizetype first = 0;
    qsizetype end = 0;

    bool operator==(const LineSpan &) const = default;
};

/// What a text control shows beside the text and its colours: margins, marks on lines, marks on stretches,
/// folds. None of it is an edit: text, classes, undo buffer, selection and what is printed or exported stay
/// as they are. Marks on lines and stretches go with the text when it is edited; a fresh text has none. When
/// the object goes, all of it goes. Offsets are UTF-16 offsets from 0, lines count from 0; what lies beyond
/// the text is cut to it.
class TextDecorations : public QObject
{
    Q_OBJECT

public:
    /// @param text has to outlive the object
    explicit TextDecorations(TextControl &text);
    ~TextDecorations() override;

    // Stretches.

    /// Marks these stretches and no others. What is marked already is left alone.
    void Show(Indicator indicator, const std::vector<TextSpan> &spans);
    void Clear(Indicator indicator) { Show(indicator, {}); }
    /// What is marked, in order; stretches that touch are one.
    std::vector<TextSpan> Shown(Indicator indicator) const;

    // Margins. All are off at first.

    void ShowMargin(TextMargin margin, bool show);
    bool IsMarginShown(TextMargin margin) const { return m_margins[size_t(margin)]; }

    // Lines. They are seen while the margin of the markers is shown.

    void SetMarker(LineMarker marker, qsizetype line, bool set);
    bool HasMarker(LineMarker marker, qsizetype line) const;
    /// The lines that have the marker, in order.
    std::vector<qsizetype> MarkedLines(LineMarker marker) const;
    /// The first marked line from `line` on, or from there back; none when there is none.
    std::optional<qsizetype> NextMarked(LineMarker marker, qsizetype line) const;
    std::optional<qsizetype> PreviousMarked(LineMarker marker, qsizetype line) const;
    void ClearMarkers(LineMarker marker);

    /// The line of the caret has a background of its own.
    void ShowCurrentLine(bool show);

    // Folds. Lines are folded and unfolded here, not by a click; the caret's own line is never hidden by an
    // edit.

    /// The depths of the lines from `line` on; what is as it was costs little. A header that is none any more
    /// is unfolded.
    void SetFoldLevels(qsizetype line, const std::vector<FoldLevel> &levels);
    FoldLevel FoldLevelOf(qsizetype line) const;
    /// The header that the line is inside of; none for a line that is in no fold.
    std::optional<qsizetype> FoldHeaderOf(qsizetype line) const;
    /// Folds or unfolds a header; nothing happens on other lines.
    void SetFolded(qsizetype line, bool folded);
    bool IsFolded(qsizetype line) const;
    /// The headers that are folded, in order.
    std::vector<qsizetype> FoldedLines() const;
    /// Folds the headers of depth 0, or unfolds all.
    void FoldAll(bool folded);
    bool IsLineHidden(qsizetype line) const;
    /// The header that is seen in the place of a hidden line; the line itself when it is not hidden.
    qsizetype SeenLine(qsizetype line) const;
    /// Unfolds what hides the line.
    void RevealLine(qsizetype line);
    /// All lines at depth 0, nothing hidden.
    void ClearFolds();

    /// The lines of the text that stand in the view; what is folded between them counts.
    LineSpan VisibleLines() const;
    /// What of a line's text stands in the view, and maybe some characters beside it. The line has to stand
    /// there itself.
    TextSpan VisiblePart(qsizetype line) const;

Q_SIGNALS:
    /// The left button on a margin.
    void marginClicked(TextMargin margin, qsizetype line, Qt::KeyboardModifiers held);
    /// Other lines, or other text, may stand in the view. Comes when the event that did it is over.
    void viewChanged();
    /// A fresh text is about to come: marks and folds are still there. And it has come: they are not.
    void loading();
    void loaded();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Colours and symbols, by the colours of the text.
    void ApplyLook();
    void ApplyWidths();
    void ApplySymbols();
    void DefineMarker(int number, int symbol, const QColor &ink, const QColor &back);
    void FollowLineCount();
    void MarginClicked(int position, int modifiers, int margin);
    void Load();
    void ViewMayHaveChanged();
    /// Other lines are folded away, or others have bookmarks.
    void FoldsHaveChanged();
    /// Shows the bookmarks that are folded away at what hides them.
    void MarkFolds();

    TextControl &m_text;
    std::array<bool, TextMarginCount> m_margins = {};
    std::array<bool, IndicatorCount> m_shown = {};
    bool m_currentLine = false;
    bool m_folds = false; ///< a line has been given a depth
    int m_digits = 0;     ///< of the line numbers
    bool m_viewTold = true;
    bool m_foldsTold = true;
};

} // namespace zelvane
