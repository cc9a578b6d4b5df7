// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/utf8text.h"

namespace zelvane
{

QString FromUtf8(QByteArrayView bytes)
{
    if (!bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes);
    return QChar(QChar::ByteOrderMark) + FromUtf8(bytes.sliced(3));
}

QByteArray ToUtf8(const QString &text)
{
    QByteArray bytes = text.toUtf8();
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
