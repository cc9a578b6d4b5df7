// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace zelvane
{

struct EditorContext;

/// An entry of the history.
struct NavigationFile {
    QString filename = {};    ///< full path
    QString displayName = {}; ///< the name without the folder
    qint32 position = 0;      ///< always 0: the selection tells the place
    qint32 selStart = 0;      ///< the selection when the file was left, in characters from 0
    qint32 selEnd = 0;        ///< end exclusive

    bool operator==(const NavigationFile &) const = default;
};

/// The history of the files that were opened in the window, as a browser has it. Positions count from 1. A
/// file appears once; names are compared without regard to case.
class Navigation
{
public:
    explicit Navigation(EditorContext &editor) : m_editor(editor) {}

    /// Moves by `delta` and opens that file with the selection that it was left with. Outside of the list the
    /// move itself stays, and nothing else happens. An opening that the user refuses or that fails takes the
    /// move back. What was selected in the file that is left is not kept: only other openings keep it.
    /// @return whether the file was opened
    bool go(int delta);
    /// Appends an entry behind the current one and makes it the current one. All entries that followed are
    /// dropped, and so is an earlier one of the same file. @return the entry in the list
    const NavigationFile &add(const NavigationFile &item);

    bool canGoBack() const { return IsInList(m_current) && m_current > 1; }
    bool canGoNext() const { return m_current >= 0 && m_current < Length(); }
    /// The entries that one step on or back leads to; an empty entry where there is no such step.
    NavigationFile nextItem() const { return canGoNext() ? Item(m_current + 1) : NavigationFile(); }
    NavigationFile backItem() const { return canGoBack() ? Item(m_current - 1) : NavigationFile(); }
    NavigationFile currentItem() const { return Item(m_current); }
    int nextCount() const { return Length() - m_current; }
    int backCount() const { return m_current - 1; }
    /// The entry at a position from 1; an empty one outside of the list.
    NavigationFile Item(int position) const;

    /// Before a text is loaded: keeps the selection with the current entry, unless `go` opens.
    void navBeforeOpen();
    /// When a file has been opened: adds it, unless `go` opened it.
    void navAfterOpen();

private:
    int Length() const { return int(m_items.size()); }
    bool IsInList(int position) const { return position >= 1 && position <= Length(); }

    EditorContext &m_editor;
    std::vector<NavigationFile> m_items; ///< oldest first
    int m_current = 0;                   ///< 0 while the list is empty
    bool m_navigating = false;           ///< `go` has a file opening
};

/// What a button of the history shows.
struct NavigationButton {
    bool enabled = false;
    QString tooltip = {};
    QStringList captions = {}; ///< of its drop-down list, the nearest file first

    bool operator==(const NavigationButton &) const = default;
};
NavigationButton BackButton(const Navigation &navigation);
NavigationButton NextButton(const Navigation &navigation);

} // namespace zelvane
