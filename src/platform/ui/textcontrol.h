// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "platform/systemcolour.h"
#include "platform/textbuffer.h"
#include "platform/ui/offsetmap.h"
#include "platform/ui/scintilla.h"
#include "platform/ui/textaccessible.h"
#include "platform/ui/undotrail.h"

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace zelvane
{

class Desktop;

/// What the text control asks the window while it handles a key. Settings are read at each use. Missing hooks
/// do nothing: Tab then inserts a tab character.
struct TextControlHooks {
    std::function<bool()> tabInsertsSpaces; ///< `TabInsertSpaces`
    std::function<int()> tabSpaces;         ///< `TabSpaces`; below 1 counts as 1
    std::function<void(bool decrease)> indentSelection;
    /// Runs the command of a key that belongs to the text control. @return whether the key has one
    std::function<bool(const QKeyEvent &event)> commandKey;
    /// A notch of the wheel with Ctrl.
    std::function<void(bool larger)> changeFontSize;
    /// Shows a failure that a key met.
    std::function<void(const RunTimeError &error)> reportError;
};

/// `TxtEdit`, the rich-text control of the document: plain UTF-8 text in Scintilla, with one style class for
/// each character, undo steps with kinds, and a filter on keys, clipboard and drops. Every offset outside is
/// UTF-16.
class TextControl : public QsciScintillaBase, public TextBuffer, public StyledSource
{
    Q_OBJECT

public:
    /// @param desktop gives the clipboard; it must outlive the control
    explicit TextControl(Desktop &desktop, QWidget *parent = nullptr);

    void SetHooks(TextControlHooks hooks) { m_hooks = std::move(hooks); }

    QString Text() const override;
    QByteArray Utf8() const override;
    QString TextRange(qsizetype start, qsizetype end) const override;
    qsizetype Length() const override { return m_map.Units(); }
    void SetText(const QString &text) override;
    void LoadText(QString text) override;
    TextSpan Selection() const override;
    /// Scrolls so that the caret, at `end`, can be seen.
    void SetSelection(qsizetype start, qsizetype end) override;
    QString SelectedText() const override;
    void ReplaceSelection(const QString &text) override;
    /// The selection stays on the same characters; what of it is replaced shrinks to `start`.
    void ReplaceRange(qsizetype start, qsizetype end, const QString &text) override;
    void ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &text) override;
    void ReplaceEach(const std::vector<TextReplacement> &replacements) override;
    qsizetype LineCount() const override;
    qsizetype LineOfOffset(qsizetype offset) const override;
    qsizetype LineStart(qsizetype line) const override;
    qsizetype LineEnd(qsizetype line) const override;
    qsizetype FirstVisibleLine() const override;
    void ScrollToLine(qsizetype line) override;
    void ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs) override;
    bool CanUndo() const override;
    bool CanRedo() const override;
    void EmptyUndoBuffer() override;

    /// The class of the character at an offset; Text at the end of the text.
    StyleClass StyleAt(qsizetype offset) const;
    /// The classes of a stretch, offsets from its start, without those of class Text.
    StyleRuns RunsBetween(qsizetype start, qsizetype end) const;
    /// Counts the calls of ApplyStyles, so that a cache of classes can tell that another caller has changed
    /// them.
    quint64 Colourings() const { return m_colourings; }
    StyledText Styled(qsizetype start, qsizetype end) const override;

    /// The kind of the next undo or redo; None when there is none, and for the program's own replacements.
    UndoKind NextUndo() const;
    UndoKind NextRedo() const;
    /// The kind as text: empty, " Typing", " Delete", " Drag Drop", " Cut" or " Paste".
    QString UndoType() const;
    QString RedoType() const;
    /// One step back or forth: text, classes of characters and selection are as they were.
    void Undo();
    void Redo();
    /// Text typed from now on is an undo step of its own.
    void CloseUndoGroup();
    /// Replaces [start, end) as typing does, and puts the caret to an offset of the new text: what is typed
    /// there goes on with this step. @param goesOn the newest step and this one are undone in one go
    void ReplaceTyped(qsizetype start, qsizetype end, const QString &text, qsizetype caret, bool goesOn);

    /// Around a command: all its edits are one undo step, and undo gives back the selection that stood before
    /// it. Calls may nest; the outermost pair counts.
    void BeginCommand();
    void EndCommand();

    /// Plain text only. Cut and Copy do nothing without a selection. @throws RunTimeError when the clipboard
    /// fails; the text is then as it was
    void Cut();
    void Copy();
    void Paste();
    /// Removes the selection.
    void DeleteSelection();

    /// The colours of text without a class format and of the background: 0xBBGGRR, or a system colour with
    /// the top bit set.
    void SetTextColours(quint32 text, quint32 background);
    /// How the classes look. Class Text takes its format with the next ApplyStyles: until then a fresh text
    /// shows the text colour and the font as they are, bold too.
    void SetStyleFormats(const std::array<StyleFormat, StyleClassCount> &formats);

    TextFont CurrentFont() const { return m_font; }
    void ApplyFont(const TextFont &font);
    /// Makes the text larger or smaller by so many screen pixels; never an edit. Heights stay at one pixel or
    /// more.
    void ChangeFontSize(int pixels);
    void SetWordWrap(bool wrap);
    bool WordWrap() const;
    /// @param dialogUnits distance of the tab stops, a dialog unit being a quarter of an average character of
    /// the desktop's font; rounded to whole columns. 0 gives the control's own stops, 8 columns
    void SetTabWidth(int dialogUnits);
    /// Whether selected text can be dragged, and text be dropped here.
    void SetDragMode(bool drag);
    bool DragMode() const { return m_dragMode; }

    /// The offset of the character under a point of the screen, -1 when there is none.
    qsizetype OffsetAt(const QPoint &screen) const;
    /// The offset of the caret: one of the two ends of the selection.
    qsizetype CaretOffset() const;
    /// Where a range, or its first line, stands on the screen; an empty one is as wide as the caret.
    QRect RangeOnScreen(qsizetype start, qsizetype end) const;
    /// The bottom left corner of the caret on the screen.
    QPoint CaretPoint() const;

Q_SIGNALS:
    /// One change of the text, in their order. Told before textChanged, when all changes of one event or call
    /// have been made.
    void edited(const TextEdit &edit);
    /// The text was changed, by the user or by the program; styles are no text.
    void textChanged();
    /// A fresh text is about to come, and has come.
    void textLoading();
    void textLoaded();
    /// Colours, font or tab stops have been set anew.
    void lookChanged();
    /// Caret or selection stand elsewhere than before.
    void selectionChanged();
    /// Cut or Copy has put text on the clipboard.
    void clipboardFilled();
    void undoBufferEmptied();
    /// The right button or the menu key; `ctrl` tells whether Ctrl was down.
    void contextMenuRequested(const QPoint &screen, bool ctrl);

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    QByteArray fromMimeData(const QMimeData *source, bool &rectangular) const override;
    QMimeData *toMimeData(const QByteArray &text, bool rectangular) const override;

private:
    friend class TextDecorations;

    /// A style run in bytes of the control's text.
    struct ByteRun {
        qsizetype start = 0;
        qsizetype end = 0;
        StyleClass style = StyleClass::Text;
    };

    /// Where typed text, or a key that deletes forward, goes on in the newest step.
    struct GoingOn {
        UndoKind kind = UndoKind::None;
        qsizetype position = 0;

        bool operator==(const GoingOn &) const = default;
    };
    /// An insertion of Scintilla's own.
    struct Coming {
        qsizetype position = 0;
        qsizetype length = 0;
        int type = 0;
    };

    long Send(unsigned message, qint64 wParam = 0, qint64 lParam = 0) const;
    long SendBytes(unsigned message, qint64 wParam, const char *bytes) const;
    /// The bytes [start, start + length) inside the control; good until the next message.
    QByteArrayView Bytes(qsizetype start, qsizetype length) const;
    /// Calls `cells(first, count)` for the style bytes of each piece of a stretch; they stand at every second
    /// place.
    template <typename Cells> void ReadStyles(qsizetype start, qsizetype length, Cells cells) const;
    QByteArray StyleBytes(qsizetype start, qsizetype length) const;
    /// The runs of a stretch of bytes, counted in UTF-16 units from its start, without those of class Text.
    StyleRuns RunsOf(qsizetype start, qsizetype length) const;
    void KeepStyles(qsizetype start, qsizetype length, StyleStack &stack) const;
    /// Runs in the order given; where they follow each other closely inside the range, as a block of bytes.
    void PaintRuns(const ByteRun &range, const StyleRuns &runs);
    void PaintChain(std::vector<ByteRun> &chain);
    void PaintRun(const ByteRun &run);
    void ApplyStyleBytes(qsizetype start, const QByteArray &styles);
    /// The class of the byte before a position; Text at the start.
    char ClassBefore(qsizetype position) const;
    /// Gives long lines alternating styles. To be called when the bytes [start, end) are new or have got
    /// other classes.
    void BreakUpLongLines(qsizetype start, qsizetype end);
    /// Whether the styles of a long line alternate already, as far as a few looks tell.
    bool IsAlternating(qsizetype start, qsizetype length) const;
    void AlternateStyles(qsizetype start, qsizetype end);

    CaretSpan Caret() const;
    void SetCaret(const CaretSpan &span);
    /// Replaces bytes in one undo step of the kind, which may go on with the step before; nothing happens
    /// when nothing would change.
    void ReplaceBytes(qsizetype start, qsizetype end, const QByteArray &utf8, UndoKind kind,
                      bool goesOn = false);
    /// Replaces stretches, in order, in one undo step. @param come bytes of all that takes their places
    /// @param spanAt gives the TextSpan of a stretch @param bytesAt its new bytes
    template <typename SpanAt, typename BytesAt>
    void ReplaceStretches(std::size_t count, std::size_t come, const SpanAt &spanAt, const BytesAt &bytesAt);
    /// Makes sure that there is memory for a change. Scintilla that runs out of it in the middle of one takes
    /// no other any more. @throws RunTimeError "Out of memory"; nothing has changed then
    void ExpectMemory(qsizetype gone, QByteArrayView come, qsizetype length);
    void MakeRoom(qsizetype length);
    /// Bytes are about to go. @return the classes for the text that comes in their place: what is kept of
    /// them keeps its class; empty when nothing is
    QByteArray Replacing(qsizetype start, qsizetype end, QByteArrayView keeping);
    void ReplaceSelectionAs(const QString &text, UndoKind kind);
    /// Puts typed text in the place of the selection.
    void TypeOver(const QString &text);
    /// Scintilla is about to edit by itself: it undoes, redoes, drops or composes. Of an insertion it tells
    /// beforehand only: when told afterwards, the widget counts all characters before it.
    void Modifying(int position, int type, int length);
    void BeginOwnEdit(int position, bool deletes);
    /// What Scintilla has put in by itself is counted and gets its classes.
    void FinishInsertion();
    void FinishOwnEdits();
    /// Text that is about to go: its offsets are forgotten, its styles kept where there is a stack for them.
    void TextGoes(qsizetype position, qsizetype length, StyleStack *styles);
    /// New text takes the class of the character before it.
    void TakeClassBefore(qsizetype position, qsizetype length);
    /// Remembers a change for those who follow each.
    void NoteEdit(const TextEdit &edit);
    void EditedByUser(bool newStep, UndoKind kind, bool goesOn = false);
    /// Tells what an event or a call has changed. Signals leave from here only.
    void Settle();
    /// Keeps the caret out of the middle of a character that Scintilla takes for stray bytes.
    void SnapCaret();
    void CloseCommandGroup();
    /// Before undo and redo.
    void LeaveStep();
    void UndoOrRedo(unsigned message);

    bool EditingKey(const QKeyEvent &event);
    bool TabKey(const QKeyEvent &event);
    bool DeletingKey(const QKeyEvent &event);
    void DeleteCharacter(bool back);
    void TypeText(const QString &text);
    void Compose(QInputMethodEvent &event);
    /// Takes what is being composed out of the text.
    void EndComposition();
    bool SelectionSpansLines() const;
    /// The first byte of the line as word wrap shows it.
    qsizetype DisplayLineStart(qsizetype position) const;

    void ApplyLook();
    /// How the classes look at present.
    std::array<StyleFormat, StyleClassCount> CurrentFormats() const;
    bool TextColourIsDefault() const;
    void ApplyTabWidth();

    /// Lines between two bytes are about to lose text or to be cut in two. Scintilla's scroll range only
    /// grows: remembers when one of them may have been the widest.
    void MayNarrow(qsizetype start, qsizetype end);
    /// After such an edit; waits until it pays.
    void FollowEdit();
    /// Makes the scroll range as wide as the widest line in sight and the longest one of all need.
    void FollowWidth();
    /// In pixels.
    long LineWidth(qsizetype line) const;
    /// The line of the most bytes.
    qsizetype LongestLine() const;

    Desktop &m_desktop;
    TextControlHooks m_hooks;
    OffsetMap m_map;
    qsizetype m_room = 0;    ///< bytes that Scintilla is known to have room for
    qsizetype m_largest = 0; ///< the most bytes that undo or redo may bring back

    UndoSteps m_steps;
    StyleStack m_undoStyles; ///< classes of text that undo would bring back
    StyleStack m_redoStyles; ///< classes of text that redo would bring back
    UndoKind m_kind = UndoKind::None;
    CaretSpan m_caretBeforeEdit;
    bool m_stepOpen = false; ///< the newest step still follows the selection
    GoingOn m_goesOn;
    int m_commandDepth = 0;
    bool m_commandGroup = false;
    CaretSpan m_caretBeforeCommand;
    Coming m_coming;
    bool m_ownGroup = false;  ///< Scintilla's own edits in one event are one step, which is open
    bool m_composing = false; ///< the input method puts in what is being composed, or takes it out
    bool m_composed = false;  ///< the newest step is text that is being composed
    std::vector<TextChange> m_untold;
    std::vector<TextEdit> m_edits; ///< not told yet

    bool m_textDirty = false;
    CaretSpan m_toldCaret;
    bool m_mayBeNarrower = false; ///< the scroll range may be wider than the text needs

    std::array<StyleFormat, StyleClassCount> m_formats;
    bool m_formatsApplied = false;
    quint64 m_colourings = 0;
    bool m_plain = true; ///< no character has another class than Text
    quint32 m_textColour = SystemWindowText;
    quint32 m_backColour = SystemWindow;
    TextFont m_font;
    int m_tabUnits = 0;
    bool m_dragMode = true;
    int m_wheel = 0;
};

} // namespace zelvane
