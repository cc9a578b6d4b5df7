// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/splitpath.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsSeparator(QChar c)
{
    return c == u'\\' || c == u'/';
}

/// The offset of the last separator, -1 when there is none.
qsizetype LastSeparator(const QString &path)
{
    qsizetype i = path.size() - 1;
    while (i >= 0 && !IsSeparator(path[i]))
        --i;
    return i;
}

/// The bare name of a file that is on disk, else empty.
QString NameOnDisk(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isDir() ? BareFileName(path) : QString();
}

} // namespace

QString SplitPath(PathPart part, const QString &path, const QString &currentFile)
{
    const QString &whole = path.isEmpty() ? currentFile : path;
    if (whole.isEmpty())
        return {};
    switch (part) {
    case PathPart::WithoutExtension: {
        const qsizetype point = whole.lastIndexOf(u'.');
        return point > LastSeparator(whole) ? whole.first(point) : whole;
    }
    case PathPart::Folder: {
        const qsizetype separator = LastSeparator(whole);
        return separator >= 0 ? whole.first(separator) : QString();
    }
    case PathPart::BaseName: {
        const QString name = NameOnDisk(whole);
        const qsizetype point = name.lastIndexOf(u'.');
        return point >= 0 ? name.first(point) : name;
    }
    case PathPart::Quoted:
        return whole.contains(u' ') ? u'"' + whole + u'"' : whole;
    case PathPart::Extension:
        return BareExtension(NameOnDisk(whole));
    }
    return {};
}

QString BareFileName(const QString &path)
{
    return path.sliced(LastSeparator(path) + 1);
}

QString BareExtension(const QString &path)
{
    const QString name = BareFileName(path);
    const qsizetype point = name.lastIndexOf(u'.');
    return point >= 0 ? name.sliced(point + 1) : QString();
}

QString DropOuterQuotes(const QString &name)
{
    QStringView inner = name;
    if (inner.startsWith(u'"'))
        inner = inner.sliced(1);
    if (inner.endsWith(u'"'))
        inner.chop(1);
    return inner.toString();
}

} // namespace zelvane
