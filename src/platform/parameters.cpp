// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/parameters.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QStringList SplitParameters(const QString &parameters)
{
    QStringList arguments;
    QString argument;
    bool begun = false; // an argument may be empty: ""
    bool quoted = false;
    for (qsizetype i = 0; i < parameters.size(); ++i) {
        const QChar c = parameters[i];
        if (c == u'"') {
            if (quoted && i + 1 < parameters.size() && parameters[i + 1] == u'"') {
                argument += c;
                ++i;
            } else {
                quoted = !quoted;
                begun = true;
            }
        } else if (c == u' ' && !quoted) {
            if (begun)
                arguments.append(argument);
            argument.clear();
            begun = false;
        } else {
            argument += c;
            begun = true;
        }
    }
    if (begun)
        arguments.append(argument);
    return arguments;
}

QString QuoteFile(const QString &path)
{
    if (!path.contains(u' ') && !path.contains(u'"'))
        return path;
    QString inner = path;
    inner.replace(u"\""_s, u"\"\""_s);
    return u'"' + inner + u'"';
}

QString UnquoteFile(const QString &text)
{
    if (text.size() < 2 || !text.startsWith(u'"') || !text.endsWith(u'"'))
        return text;
    return text.sliced(1, text.size() - 2).replace(u"\"\""_s, u"\""_s);
}

} // namespace zelvane
