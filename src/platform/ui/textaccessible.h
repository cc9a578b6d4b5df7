// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QString>

namespace zelvane
{

class TextControl;

/// A change of the text at an offset, as it is told to screen readers.
struct TextChange {
    qsizetype offset = 0;
    QString gone;
    QString come;
};

/// What screen readers see of the text control. It stands in place of the one that Scintilla's widget brings
/// along, which counts the characters before the caret at each of its moves and before each change, whether a
/// screen reader listens or not: 80 ms for each key at the end of a text of 10 MB. Offsets are UTF-16.
class TextAccessible : public QAccessibleWidget,
                       public QAccessibleTextInterface,
                       public QAccessibleEditableTextInterface
{
public:
    using Listener = std::function<void(QAccessibleEvent &event)>;

    explicit TextAccessible(TextControl *control);

    /// Makes every text control that is asked for later have this interface; to be called when the widget
    /// below it has registered its own.
    static void Install();

    /// Whether anybody hears what is told: a screen reader, or the listener.
    static bool IsHeard();
    /// Takes every event in the place of screen readers; for tests, where there is none. Null ends it.
    static void SetListener(Listener listener);

    // Told by the control; nothing happens when nobody hears it.
    static void TellChange(TextControl &control, const TextChange &change);
    static void TellSelection(TextControl &control);

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;

    void selection(int index, int *start, int *end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                             int *end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                            int *end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType kind, int *start, int *end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int *start, int *end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    TextControl &Control() const;
    /// The piece of a kind that holds an offset: a character, a word or what stands between two, else a line.
    void PieceAt(qsizetype offset, QAccessible::TextBoundaryType kind, int *start, int *end) const;
};

} // namespace zelvane
