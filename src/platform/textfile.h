// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <QByteArray>
#include <QString>

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

/// Reads a whole file. Refuses directories, FIFOs, devices and sockets with a clear description; never blocks
/// on them.
/// @param stamp given the state that the file was in before it was read
/// @throws RunTimeError
QByteArray ReadFileBytes(const QString &name, FileStamp *stamp = nullptr);
/// Writes a whole file so that a failure leaves the old one whole: beside the target, flushed, renamed over
/// it. Symbolic links are followed and permission bits kept; where the folder takes no second file, writes in
/// place.
/// @throws RunTimeError
void WriteFileBytes(const QString &name, const QByteArray &bytes);

/// The text of a file; empty for an empty name. @throws RunTimeError
QString ReadTextFile(const QString &name);
/// Writes text as UTF-8 and adds no line end. Does nothing for an empty name. @return true on success.
/// @throws RunTimeError
bool WriteTextFile(const QString &name, const QString &text);

} // namespace zelvane
