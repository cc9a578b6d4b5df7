// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/statustexts.h"

#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "shell/lineends.h"

#include <QDateTime>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// size / unit, rounded to one decimal: "1.5", "2". Integers throughout, so that ties are seen exactly.
QString OneDecimal(qint64 size, qint64 unit)
{
    qint64 tenths = size / unit * 10 + size % unit * 10 / unit;
    const qint64 rest = size % unit * 10 % unit;
    if (rest * 2 > unit || (rest * 2 == unit && tenths % 2 != 0))
        ++tenths;
    QString text = QString::number(tenths / 10);
    if (tenths % 10 != 0)
        text += u'.' + QString::number(tenths % 10);
    return text;
}

bool IsReadOnly(const QFileInfo &file)
{
    // The administrator may write everything; a file without any write bit is still marked as not to be
    // written.
    constexpr QFile::Permissions writeBits = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return !file.isWritable() || !(file.permissions() & writeBits);
}

} // namespace

QString GeneralDate(const QDateTime &time, const QLocale &locale)
{
    QString format = locale.timeFormat(QLocale::ShortFormat);
    const qsizetype minutes = format.indexOf(u"mm"_s);
    if (minutes > 0 && !format.contains(u's'))
        format.insert(minutes + 2, format[minutes - 1] + u"ss"_s);
    return locale.toString(time.date(), QLocale::ShortFormat) + u' ' + locale.toString(time.time(), format);
}

QString ShortSizeText(qint64 bytes)
{
    if (bytes < 1024)
        return QString::number(bytes) + u" bytes"_s;
    return bytes < 1048576 ? OneDecimal(bytes, 1024) + u"Kb"_s : OneDecimal(bytes, 1048576) + u"Mb"_s;
}

QString SizeText(qint64 bytes)
{
    const QString text = ShortSizeText(bytes);
    return bytes < 1024 ? text : text + u" ("_s + QString::number(bytes) + u" bytes)"_s;
}

QString FileFacts(const QString &name, const Desktop &desktop)
{
    QString facts = desktop.DisplayName(name);
    const QFileInfo file(name);
    if (!file.exists())
        return facts;
    facts += u": last saved "_s + GeneralDate(file.lastModified());
    if (IsReadOnly(file))
        facts += u" Read only"_s;
    if (file.isHidden())
        facts += u" Hidden"_s;
    // " System" would follow: no platform with that attribute is served yet.
    return facts;
}

QString DocumentInfoText(const DocumentRecord &document, const TextBuffer &text, const Desktop &desktop)
{
    if (document.CurrentFile.isEmpty())
        return {};
    return FileFacts(document.CurrentFile, desktop) + u" - "_s + QString::number(text.LineCount()) +
           u" lines - "_s + SizeText(2 * text.Length()) + u" - "_s + PlatformName(document.CurrentPlatform);
}

QString FileInfoLine(const QString &name, const Desktop &desktop)
{
    const QFileInfo file(name);
    if (!file.exists())
        return {};
    return FileFacts(name, desktop) + u" - "_s + SizeText(file.size());
}

QString LineColumnText(const TextBuffer &text)
{
    const qsizetype start = text.Selection().start;
    const qsizetype line = text.LineOfOffset(start);
    return u"Line "_s + QString::number(line + 1) + u" Col "_s +
           QString::number(start - text.LineStart(line) + 1);
}

QString SelectionText(const TextBuffer &text)
{
    const TextSpan selection = text.Selection();
    if (selection.IsEmpty())
        return {};
    const qsizetype lines = text.LineOfOffset(selection.end) - text.LineOfOffset(selection.start);
    return lines == 0 ? QString::number(selection.Length()) + u" characters selected"_s
                      : QString::number(lines) + u" lines selected"_s;
}

} // namespace zelvane
