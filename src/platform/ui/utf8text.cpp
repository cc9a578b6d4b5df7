// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/utf8text.h"

#include <algorithm>

namespace zelvane
{

QString FromUtf8(QByteArrayView bytes)
{
    if (!bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes);
    return QChar(QChar::ByteOrderMark) + FromUtf8(bytes.sliced(3));
}

namespace
{

/// As QString::toUtf8, which takes three bytes a character at once.
QByteArray Encoded(QStringView text)
{
    constexpr qsizetype chunk = 65536;
    if (text.size() <= chunk)
        return text.toUtf8();
    QByteArray bytes;
    bytes.reserve(text.size() + text.size() / 64);
    while (!text.isEmpty()) {
        qsizetype count = std::min(chunk, text.size());
        if (count < text.size() && text[count - 1].isHighSurrogate())
            --count;
        bytes += text.first(count).toUtf8();
        text = text.sliced(count);
    }
    return bytes;
}

} // namespace

QByteArray ToUtf8(const QString &text)
{
    QByteArray bytes = Encoded(text);
    qsizetype to = bytes.indexOf('\r');
    if (to < 0)
        return bytes;
    char *const data = bytes.data();
    for (qsizetype from = to; from < bytes.size(); ++from) {
        if (data[from] != '\r')
            data[to++] = data[from];
        else if (from + 1 == bytes.size() || data[from + 1] != '\n')
            data[to++] = '\n';
    }
    bytes.truncate(to);
    return bytes;
}

} // namespace zelvane
