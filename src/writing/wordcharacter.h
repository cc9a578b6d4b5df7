// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findtext.h"

#include <array>
#include <cstddef>
#include <QChar>

namespace zelvane
{

/// IsWordCharacter of the characters that most texts are made of.
inline constexpr std::array<bool, 128> AsciiInWord = [] {
    std::array<bool, 128> is{};
    for (char c = '0'; c <= '9'; ++c)
        is[std::size_t(c)] = true;
    for (char c = 'a'; c <= 'z'; ++c)
        is[std::size_t(c)] = is[std::size_t(c - 0x20)] = true;
    is['_'] = true;
    return is;
}();

/// IsWordCharacter for those who ask it of each character of a text.
inline bool IsInWord(char16_t c)
{
    return c < 128 ? AsciiInWord[c] : IsWordCharacter(c);
}

} // namespace zelvane
