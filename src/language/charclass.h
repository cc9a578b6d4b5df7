// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace zelvane
{

/// The character tests of the Windows-1252 code page, by UTF-16 code unit. A letter is what that code page
/// has as a letter (the Latin letters of U+0080 to U+00FF with the two ordinals and the micro sign, and eight
/// others); a code unit that the code page does not hold is neither letter nor digit. The superscript digits
/// count as digits there.
namespace CharClass
{

enum : unsigned char { Letter = 1, Digit = 2 };

inline constexpr std::array<unsigned char, 256> Latin = [] {
    std::array<unsigned char, 256> classes{};
    for (int c = 'A'; c <= 'Z'; ++c)
        classes[c] = classes[c + 0x20] = Letter;
    for (int c = '0'; c <= '9'; ++c)
        classes[c] = Digit;
    for (int c : {0xAA, 0xB5, 0xBA})
        classes[c] = Letter;
    for (int c = 0xC0; c <= 0xFF; ++c)
        classes[c] = c == 0xD7 || c == 0xF7 ? 0 : Letter;
    for (int c : {0xB2, 0xB3, 0xB9})
        classes[c] = Digit;
    return classes;
}();

/// The letters of the code page's rows 0x80 and 0x90.
constexpr bool IsOuterLetter(char16_t c)
{
    switch (c) {
    case 0x0152: // OE ligature
    case 0x0153:
    case 0x0160: // S with caron
    case 0x0161:
    case 0x0178: // Y with diaeresis
    case 0x017D: // Z with caron
    case 0x017E:
    case 0x0192: // f with hook
        return true;
    default:
        return false;
    }
}

} // namespace CharClass

constexpr bool IsAnsiLetter(char16_t c)
{
    return c < 256 ? CharClass::Latin[c] & CharClass::Letter : CharClass::IsOuterLetter(c);
}

constexpr bool IsAnsiLetterOrDigit(char16_t c)
{
    return c < 256 ? CharClass::Latin[c] != 0 : CharClass::IsOuterLetter(c);
}

} // namespace zelvane
