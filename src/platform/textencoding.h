// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

/// The encoding of a text file. Windows-1252 maps all 256 bytes, the five unassigned ones to themselves.
struct TextEncoding {
    enum class Form : quint8 { Utf8, Windows1252, Utf16Little, Utf16Big };
    Form form = Form::Utf8;
    bool byteOrderMark = false; ///< UTF-8 only: UTF-16 always has its mark

    bool operator==(const TextEncoding &) const = default;
};

struct DecodedText {
    QString text;
    TextEncoding encoding;
};

/// Valid UTF-8 is UTF-8, with or without byte order mark; valid UTF-16 behind its mark is UTF-16; anything
/// else is Windows-1252. NUL bytes survive.
DecodedText DecodeText(const QByteArray &bytes);
/// The inverse of DecodeText. When the encoding cannot hold the text, the answer is UTF-8 and `encoding` is
/// set so.
QByteArray EncodeText(const QString &text, TextEncoding &encoding);

} // namespace zelvane
