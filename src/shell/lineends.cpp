// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/lineends.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

LineEndForm DetectPlatform(QStringView text)
{
    if (text.isEmpty())
        return LineEndForm::Pc;
    const QStringView walked = text.chopped(1);
    const qsizetype feed = walked.indexOf(u'\n');
    const qsizetype mark = (feed < 0 ? walked : walked.first(feed)).indexOf(u'\r');
    if (mark >= 0)
        return text[mark + 1] == u'\n' ? LineEndForm::Pc : LineEndForm::Mac;
    return feed >= 0 ? LineEndForm::Unix : LineEndForm::Pc;
}

QString PlatformName(LineEndForm form)
{
    switch (form) {
    case LineEndForm::Pc:
        return u"PC"_s;
    case LineEndForm::Unix:
        return u"UNIX"_s;
    case LineEndForm::Mac:
        return u"MAC"_s;
    }
    return {};
}

QString MacToUnix(QString text)
{
    return text.replace(u'\r', u'\n');
}

QString ToLineFeeds(QString text)
{
    const qsizetype first = text.indexOf(u'\r');
    if (first < 0)
        return text;
    QChar *const begin = text.data();
    const QChar *const end = begin + text.size();
    QChar *to = begin + first;
    for (const QChar *from = to; from != end; ++from) {
        if (*from != u'\r')
            *to++ = *from;
        else if (from + 1 == end || from[1] != u'\n')
            *to++ = u'\n';
    }
    text.truncate(to - begin);
    return text;
}

QString FromLineEnds(QString text, LineEndForm form)
{
    return form == LineEndForm::Mac ? MacToUnix(std::move(text)) : ToLineFeeds(std::move(text));
}

QString ToPcLineEnds(QStringView text)
{
    QString result(text.size() + text.count(u'\n'), Qt::Uninitialized);
    QChar *const begin = result.data();
    QChar *to = begin;
    QChar before;
    for (const QChar c : text) {
        if (c == u'\n' && before != u'\r')
            *to++ = u'\r';
        *to++ = c;
        before = c;
    }
    result.truncate(to - begin);
    return result;
}

QString ToUnixLineEnds(QStringView text)
{
    return ToLineFeeds(text.toString());
}

QString ToMacLineEnds(QStringView text)
{
    QString result(text.size(), Qt::Uninitialized);
    QChar *const begin = result.data();
    QChar *to = begin;
    QChar before;
    for (const QChar c : text) {
        if (c != u'\n')
            *to++ = c;
        else if (before != u'\r')
            *to++ = u'\r';
        before = c;
    }
    result.truncate(to - begin);
    return result;
}

} // namespace zelvane
