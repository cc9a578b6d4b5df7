// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/longlines.h"

#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"

#include <algorithm>
#include <limits>
#include <new>
#include <QByteArray>
#include <QFile>
#include <QFileInfo>

namespace zelvane
{

namespace
{

// The text control keeps places in a line as 32-bit floating-point numbers: further on, two characters that
// follow each other may have the same one.
constexpr qsizetype LongestWieldyLine = 8'000'000;

bool IsLineEnd(char16_t unit)
{
    return unit == u'\n' || unit == u'\r';
}

/// Whether line ends stand so close that no line is unwieldy. Little of an ordinary file is read: a first
/// line end in every stretch is enough.
bool LineEndsAreClose(const QString &name)
{
    constexpr qint64 stretch = LongestWieldyLine / 2;
    constexpr qint64 pieceSize = 64 * 1024;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return true;
    QByteArray piece = file.read(2);
    if (piece == "\xFF\xFE" || piece == "\xFE\xFF")
        return false; // UTF-16: these bytes are parts of other characters too
    for (qint64 start = 0; start + stretch <= file.size(); start += stretch) {
        if (!file.seek(start))
            return true;
        for (qint64 done = 0; done < stretch; done += piece.size()) {
            piece = file.read(std::min(pieceSize, stretch - done));
            if (piece.isEmpty())
                return true;
            if (std::any_of(piece.cbegin(), piece.cend(), [](char byte) { return IsLineEnd(uchar(byte)); }))
                break;
            if (done + piece.size() >= stretch)
                return false;
        }
    }
    return true;
}

} // namespace

qsizetype LongestLine(QStringView text)
{
    qsizetype longest = 0;
    while (text.size() > longest) {
        qsizetype end = text.indexOf(u'\n');
        if (const qsizetype mark = text.first(end < 0 ? text.size() : end).indexOf(u'\r'); mark >= 0)
            end = mark;
        longest = std::max(longest, end < 0 ? text.size() : end);
        text = end < 0 ? QStringView() : text.sliced(end + 1);
    }
    return longest;
}

qsizetype UnwieldyLineIn(QStringView text)
{
    const qsizetype longest = text.size() > LongestWieldyLine ? LongestLine(text) : 0;
    return longest > LongestWieldyLine ? longest : 0;
}

qsizetype UnwieldyLineOf(const QString &name)
{
    // A pipe is not looked into: what is read of it is gone. Nor is a file that is too large to be opened.
    const QFileInfo info(name);
    if (!info.isFile() || info.size() <= LongestWieldyLine ||
        info.size() > std::numeric_limits<qint32>::max() || LineEndsAreClose(name))
        return 0;
    try {
        return UnwieldyLineIn(DecodeText(ReadFileBytes(name)).text);
    } catch (const RunTimeError &) {
        return 0; // whoever opens the file tells it
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

} // namespace zelvane
