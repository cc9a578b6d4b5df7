// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/samewords.h"

#include "shell/findtext.h"

namespace zelvane
{

TextSpan WordAt(QStringView line, const TextSpan &selection)
{
    TextSpan word{selection.start, selection.start};
    while (word.start > 0 && IsWordCharacter(line[word.start - 1]))
        --word.start;
    while (word.end < line.size() && IsWordCharacter(line[word.end]))
        ++word.end;
    if (word.IsEmpty() || line[word.start].isDigit() || (!selection.IsEmpty() && word != selection))
        return {};
    return word;
}

std::vector<TextSpan> WordsLike(QStringView text, QStringView word)
{
    std::vector<TextSpan> words;
    for (qsizetype at = 0; (at = FindText(text, word, at, -1, FindWholeWord | FindMatchCase)) >= 0;) {
        words.push_back({at, at + word.size()});
        at += word.size();
    }
    return words;
}

} // namespace zelvane
