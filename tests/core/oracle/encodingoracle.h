// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"

#include <optional>
#include <QByteArray>
#include <QString>

/// The encodings written out by hand, a byte at a time.
namespace zelvane::oracle
{

/// @return no value for bytes that are no UTF-8: cut short, longer than needed, half of a pair, beyond the
/// last character
inline std::optional<QString> FromUtf8(const QByteArray &bytes)
{
    QString text;
    for (qsizetype i = 0; i < bytes.size();) {
        const uint lead = uchar(bytes[i]);
        const int following = lead < 0x80 ? 0 : lead < 0xC0 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        if (following < 0 || lead > 0xF4 || i + following >= bytes.size())
            return std::nullopt;
        char32_t character = following == 0 ? lead : lead & (0x3F >> following);
        for (int k = 1; k <= following; ++k) {
            const uint byte = uchar(bytes[i + k]);
            if ((byte & 0xC0) != 0x80)
                return std::nullopt;
            character = character << 6 | (byte & 0x3F);
        }
        const char32_t least[] = {0, 0x80, 0x800, 0x10000};
        if (character < least[following] || character > 0x10FFFF ||
            (character >= 0xD800 && character < 0xE000))
            return std::nullopt;
        text += QChar::fromUcs4(character);
        i += following + 1;
    }
    return text;
}

/// What stands behind the mark. @return no value for an odd number of bytes and for half of a pair
inline std::optional<QString> FromUtf16(const QByteArray &bytes, bool big)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    QString text;
    for (qsizetype i = 0; i < bytes.size(); i += 2) {
        const ushort first = uchar(bytes[i]), second = uchar(bytes[i + 1]);
        text += QChar(char16_t(big ? first << 8 | second : second << 8 | first));
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            return std::nullopt;
    }
    return text;
}

/// The character of each byte of Windows-1252; the five unassigned ones are themselves.
inline QString FromWindows1252(const QByteArray &bytes)
{
    static const QString upper = QString::fromUtf16(
        u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
        u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178");
    QString text;
    for (const char byte : bytes) {
        const uchar code = uchar(byte);
        text += code >= 0x80 && code < 0xA0 ? upper[code - 0x80] : QChar(char16_t(code));
    }
    return text;
}

inline DecodedText Decode(const QByteArray &bytes)
{
    using Form = TextEncoding::Form;
    for (const bool big : {false, true}) {
        if (bytes.startsWith(big ? "\xFE\xFF" : "\xFF\xFE")) {
            if (const auto text = FromUtf16(bytes.mid(2), big))
                return {*text, {big ? Form::Utf16Big : Form::Utf16Little, false}};
        }
    }
    const bool mark = bytes.startsWith("\xEF\xBB\xBF");
    if (const auto text = FromUtf8(mark ? bytes.mid(3) : bytes))
        return {*text, {Form::Utf8, mark}};
    return {FromWindows1252(bytes), {Form::Windows1252, false}};
}

} // namespace zelvane::oracle
