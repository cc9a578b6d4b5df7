// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/textencoding.h"

#include <algorithm>
#include <array>
#include <optional>
#include <QChar>
#include <QtEndian>
#include <utility>

namespace zelvane
{

namespace
{

constexpr char Utf8Mark[] = "\xEF\xBB\xBF";
constexpr char16_t Mark = QChar::ByteOrderMark;

/// The characters of the bytes 0x80 to 0x9F; all other bytes stand for the character of their own number.
constexpr std::array<char16_t, 32> Upper = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

QString FromWindows1252(const QByteArray &bytes)
{
    QString text = QString::fromLatin1(bytes);
    char16_t *unit = reinterpret_cast<char16_t *>(text.data());
    for (const char16_t *end = unit + text.size(); unit != end; ++unit) {
        if (*unit >= 0x80 && *unit < 0xA0)
            *unit = Upper[*unit - 0x80];
    }
    return text;
}

/// @return false when a character has no byte
bool ToWindows1252(const QString &text, QByteArray &bytes)
{
    bytes.resize(text.size());
    char *out = bytes.data();
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if (code < 0x80 || (code >= 0xA0 && code < 0x100)) {
            *out++ = char(code);
            continue;
        }
        const auto place = std::find(Upper.begin(), Upper.end(), code);
        if (place == Upper.end())
            return false;
        *out++ = char(0x80 + (place - Upper.begin()));
    }
    return true;
}

/// @return no value where this is no UTF-16: without its mark, of an odd number of bytes, or with half a
/// character, which could not be written back
std::optional<DecodedText> FromUtf16(const QByteArray &bytes)
{
    if (bytes.size() % 2 != 0 || !(bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")))
        return {};
    const char *from = bytes.constData() + 2;
    QString text(bytes.size() / 2 - 1, Qt::Uninitialized);
    auto form = TextEncoding::Form::Utf16Big;
    if (bytes.startsWith("\xFE\xFF")) {
        qFromBigEndian<char16_t>(from, text.size(), text.data());
    } else {
        form = TextEncoding::Form::Utf16Little;
        qFromLittleEndian<char16_t>(from, text.size(), text.data());
    }
    if (!text.isValidUtf16())
        return {};
    return DecodedText{std::move(text), {form, false}};
}

QByteArray ToUtf16(const QString &text, TextEncoding::Form form)
{
    // Half a character becomes the character that stands for all that cannot be written, as in UTF-8.
    const QString whole = text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
    QByteArray bytes(2 + 2 * whole.size(), Qt::Uninitialized);
    if (form == TextEncoding::Form::Utf16Big) {
        qToBigEndian(Mark, bytes.data());
        qToBigEndian<char16_t>(whole.constData(), whole.size(), bytes.data() + 2);
    } else {
        qToLittleEndian(Mark, bytes.data());
        qToLittleEndian<char16_t>(whole.constData(), whole.size(), bytes.data() + 2);
    }
    return bytes;
}

bool IsAscii(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) == 0; });
}

} // namespace

DecodedText DecodeText(const QByteArray &bytes)
{
    if (std::optional<DecodedText> decoded = FromUtf16(bytes))
        return *std::move(decoded);
    if (!bytes.isValidUtf8())
        return {FromWindows1252(bytes), {TextEncoding::Form::Windows1252, false}};
    // fromUtf8 takes one byte order mark off itself.
    return {QString::fromUtf8(bytes), {TextEncoding::Form::Utf8, bytes.startsWith(Utf8Mark)}};
}

QByteArray EncodeText(const QString &text, TextEncoding &encoding)
{
    if (encoding.form == TextEncoding::Form::Utf16Little || encoding.form == TextEncoding::Form::Utf16Big)
        return ToUtf16(text, encoding.form);
    if (encoding.form == TextEncoding::Form::Windows1252) {
        // Bytes that happen to be UTF-8, or to begin like UTF-16, would be read back as another text.
        QByteArray bytes;
        if (ToWindows1252(text, bytes) && (IsAscii(bytes) || (!bytes.isValidUtf8() && !FromUtf16(bytes))))
            return bytes;
        encoding = {};
    }
    // A text that begins with the mark's own character keeps it behind a mark.
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        encoding.byteOrderMark = true;
    return encoding.byteOrderMark ? Utf8Mark + text.toUtf8() : text.toUtf8();
}

} // namespace zelvane
