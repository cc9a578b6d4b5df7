// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/fragmenttext.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString EscapeFragment(QStringView text)
{
    QString line;
    line.reserve(text.size() + text.size() / 16);
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit == u'\n') {
            if (i > 0 && text[i - 1] == u'\r')
                line.chop(1);
            line += u"\\n";
        } else if (unit == u'\t') {
            line += u"\\t";
        } else {
            line += unit;
        }
    }
    if (!text.isEmpty())
        line += text.back();
    return line;
}

QString UnescapeFragment(QStringView line)
{
    QString text;
    text.reserve(line.size() + line.size() / 16);
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar unit = line[i];
        const QChar next = unit == u'\\' && i + 1 < line.size() ? line[i + 1] : QChar();
        if (next == u'n' || next == u't') {
            text += next == u'n' ? u"\r\n"_s : u"\t"_s;
            ++i;
        } else {
            text += unit;
        }
    }
    return text;
}

QString PersonalFileName(const QString &login)
{
    QString name = login;
    // Kept: the files of earlier versions have such names.
    for (qsizetype at = 0; (at = name.indexOf(u"32"_s, at)) >= 0;)
        name[at] = u'_';
    // A login comes from the environment too.
    for (QChar &unit : name) {
        if (unit == u'/' || unit == u'\\' || unit.isNull())
            unit = u'_';
    }
    return name.toLower() + u".csr"_s;
}

qsizetype NamesWithinLimit(const QStringList &names)
{
    qsizetype length = 0;
    for (qsizetype i = 0; i < names.size(); ++i) {
        length += names[i].size() + 1;
        if (length > ReadLimit)
            return i;
    }
    return names.size();
}

QString StartOf(const QString &text, qsizetype units)
{
    if (units > 0 && units < text.size() && text[units].isLowSurrogate() && text[units - 1].isHighSurrogate())
        --units;
    return text.left(units);
}

qsizetype CutSection(ProfileEntries &entries)
{
    qsizetype length = 0;
    qsizetype whole = 0; // entries that fit
    qsizetype lost = 0;
    for (const auto &[key, value] : entries) {
        length += key.size() + 1 + value.size() + 1;
        whole += length <= ReadLimit;
    }
    if (length <= ReadLimit)
        return 0;
    lost = length - ReadLimit;
    qsizetype room = ReadLimit;
    for (qsizetype i = 0; i < whole; ++i)
        room -= entries[size_t(i)].first.size() + 1 + entries[size_t(i)].second.size() + 1;
    auto &[key, value] = entries[size_t(whole)];
    const qsizetype valueRoom = room - key.size() - 1;
    if (valueRoom >= 0) {
        value = StartOf(value, valueRoom);
        ++whole;
    }
    entries.resize(size_t(whole));
    return lost;
}

} // namespace zelvane
