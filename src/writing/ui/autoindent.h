// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/autoindent.h"
#include "writing/ui/writingaid.h"

#include <optional>
#include <QObject>
#include <QString>

class QEvent;

namespace zelvane
{

/// Indents new lines as the blocks around them ask for, and takes words that close a block back to where it
/// was opened; each in one undo step with the key or the word.
class AutoIndent : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit AutoIndent(const WritingContext &context);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The text from the start of a line to an offset, as far as it is looked at.
    struct Before {
        QString text;
        bool isWhole = false;
    };
    /// A line that a word has taken back. The word may turn out to be the beginning of another one.
    struct TakenBack {
        qsizetype lineStart = 0;
        QString before; ///< its blanks
        QString now;
    };

    Before ReadBefore(qsizetype offset) const;
    void Enter();
    void TextChanged();
    void FollowWord();
    void SetBlanks(qsizetype lineStart, qsizetype count, const QString &blanks, bool goesOn);

    EditorContext &m_editor;
    TextControl &m_text;
    bool m_typed = false;  ///< the next change of the text is by a typed character
    bool m_inside = false; ///< the aid itself changes the text
    std::optional<TakenBack> m_takenBack;
};

} // namespace zelvane
