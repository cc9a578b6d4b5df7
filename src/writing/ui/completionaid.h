// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"
#include "writing/wordlist.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QString>

class QKeyEvent;

namespace zelvane
{

class CompletionList;
class NameKeeper;

/// `Completion`: a list of names that may go on the word at the caret, on command, and with `AutoComplete` by
/// itself while a word is typed. Tab, Enter or a click takes a row, Esc and any other step away closes the
/// list, and what is typed or deleted narrows or widens it. What is taken replaces the whole word, also what
/// stands of it behind the caret.
class CompletionAid : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit CompletionAid(const WritingContext &context);
    ~CompletionAid() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The word that the list stands at.
    struct Shown {
        qsizetype start = 0; ///< where it begins, in the text
        QString typed;
        qsizetype behind = 0; ///< how many letters of it stand behind the caret
        bool asked = false;   ///< by the command
        bool moved = false;   ///< the current row has been chosen
    };
    enum class Why { Asked, Typing, Following };

    /// Whether the key was one of the list's own.
    bool ListKey(const QKeyEvent &event);
    void TextKey(const QKeyEvent &event);
    bool IsListKey(const QKeyEvent &event) const;
    /// Keeps the word at which the list was closed, or forgets it with its first letter.
    void FollowEdit(const TextEdit &edit);
    void TextChanged();
    void SelectionChanged();
    /// Shows what goes on the word at the caret, or closes the list.
    void Open(Why why);
    void Take();
    void Close();

    WindowContext m_context;
    std::shared_ptr<NameKeeper> m_names;
    WordList m_opcodes;
    std::unique_ptr<CompletionList> m_list;
    std::optional<Shown> m_shown;
    bool m_typing = false;      ///< a letter of a word has been typed, and the text has not told it yet
    bool m_following = false;   ///< a key that the list follows is being handled
    qsizetype m_dismissed = -1; ///< the beginning of the word at which the list was closed
    BoundCommands m_commands;
};

} // namespace zelvane
