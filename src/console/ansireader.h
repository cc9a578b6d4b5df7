// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/styledline.h"

#include <functional>
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// Cuts what a program writes to its terminal into lines: UTF-8 text, the sixteen colours and bold, carriage
/// return and backspace that overwrite, "erase in line". Other control sequences are dropped. It takes any
/// bytes, cut anywhere, in time linear in their number, and holds no more than one line.
class AnsiReader
{
public:
    /// A longer line goes on in the next one, so that output without line ends needs no memory either.
    static constexpr qsizetype LongestLine = 8192;

    using Sink = std::function<void(StyledLine)>;

    /// @param sink called for each line that has ended
    explicit AnsiReader(Sink sink);

    void Read(QByteArrayView bytes);
    /// At the end of the output: the line without an end is given away, if there is one.
    void Finish();
    /// The line that has not ended yet.
    StyledLine Unfinished() const;

private:
    enum class State {
        Text,
        Escape,       ///< after ESC
        Intermediate, ///< in a sequence of several characters that ends with a letter
        Control,      ///< in a control sequence (ESC [)
        Word          ///< in a string meant for the terminal, such as a window title
    };

    void ReadText(QStringView text);
    /// @return how many characters of plain text stand at the start of `text`; they are taken
    qsizetype TakePlain(QStringView text);
    void TakeControl(char16_t character);
    void TakeEscape(char16_t character);
    void TakeParameter(char16_t character);
    void EndControl(char16_t final);
    void Colour();
    qsizetype ExtendedColour(qsizetype position);
    void Erase();
    void Put(QStringView text);
    void EndLine();
    void Style(qsizetype start, qsizetype length, TextStyle style);

    Sink m_sink;
    QByteArray m_cut; ///< the beginning of a character whose end has not come
    State m_state = State::Text;
    std::vector<int> m_parameters;
    bool m_private = false;  ///< the control sequence is none of the common ones
    qsizetype m_skipped = 0; ///< characters of the sequence so far
    TextStyle m_style;
    QString m_text;
    std::vector<TextStyle> m_styles; ///< of the characters of the line; shorter where the rest is plain
    qsizetype m_cursor = 0;
    qsizetype m_blank = 0; ///< how much of the line's start is known to be erased
};

} // namespace zelvane
