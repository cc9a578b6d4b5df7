// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/flagtable.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// One line without its line end. A line without a tab is a flag without type and description.
FlagRow ReadFlagLine(QStringView line)
{
    FlagRow row;
    qsizetype i = 0;
    while (i < line.size() && line[i] != u' ' && line[i] != u'\t')
        ++i;
    row.flag = line.first(i).toString();
    while (i < line.size() && line[i] == u' ')
        ++i;
    const qsizetype tab = line.indexOf(u'\t', i);
    if (tab < 0) {
        row.type = line.sliced(i).toString();
        return row;
    }
    row.type = line.sliced(i, tab - i).toString();
    row.description = line.sliced(tab + 1).toString();
    return row;
}

} // namespace

std::vector<FlagRow> LoadFlagTable(const QString &text)
{
    std::vector<FlagRow> rows;
    qsizetype start = 1; // the first character stands where a line end would
    while (start < text.size()) {
        qsizetype end = text.indexOf(u'\n', start);
        if (end < 0)
            end = text.size();
        QStringView line = QStringView(text).sliced(start, end - start);
        if (line.endsWith(u'\r'))
            line.chop(1);
        FlagRow row = ReadFlagLine(line);
        if (!row.flag.isEmpty())
            rows.push_back(std::move(row));
        start = end + 1;
    }
    return rows;
}

const std::vector<FlagRow> &ShippedFlagTable()
{
    static const std::vector<FlagRow> rows = [] {
        QFile file(u":/TEXT/FLAGS"_s);
        return file.open(QIODevice::ReadOnly) ? LoadFlagTable(QString::fromLatin1(file.readAll()))
                                              : std::vector<FlagRow>();
    }();
    return rows;
}

} // namespace zelvane
