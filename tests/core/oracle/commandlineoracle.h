// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandline.h"

#include <QString>
#include <QStringList>
#include <utility>

/// Command lines, cut step by step.
namespace zelvane::oracle
{

struct CommandLineEnd {
    StartForm form = StartForm::Nothing;
    QString text = {};
    QString document = {};
};

/// A command line of arguments none of which names a file.
inline CommandLineEnd CutCommandLine(const QString &text)
{
    for (const auto &[mark, form] : {std::pair(QStringLiteral("/p"), StartForm::QuickPreset),
                                     std::pair(QStringLiteral("/r"), StartForm::RunCsound)}) {
        if (text.indexOf(mark + u' ') < 0)
            continue;
        const qsizetype at = text.indexOf(mark);
        QString document = text.left(at) + text.mid(at + mark.size()).mid(1);
        document = document.trimmed();
        if (document.left(1) == QStringLiteral("\""))
            document = document.mid(1);
        if (document.right(1) == QStringLiteral("\""))
            document = document.left(document.size() - 1);
        return {form, text, document};
    }
    if (text == QStringLiteral("/i"))
        return {StartForm::NewInstance, text, {}};
    return {text.isEmpty() ? StartForm::Nothing : StartForm::Document, text, text};
}

/// The parameters of a program as its arguments: one character after the other, quotes in pairs.
inline QStringList SplitParameters(const QString &parameters)
{
    QStringList arguments;
    qsizetype i = 0;
    while (i < parameters.size()) {
        if (parameters[i] == u' ') {
            i = i + 1;
            continue;
        }
        QString argument;
        while (i < parameters.size() && parameters[i] != u' ') {
            if (parameters[i] != u'"') {
                argument = argument + parameters[i];
                i = i + 1;
                continue;
            }
            i = i + 1;
            while (i < parameters.size()) {
                if (parameters.mid(i, 2) == QStringLiteral("\"\"")) {
                    argument = argument + u'"';
                    i = i + 2;
                } else if (parameters[i] == u'"') {
                    i = i + 1;
                    break;
                } else {
                    argument = argument + parameters[i];
                    i = i + 1;
                }
            }
        }
        arguments.append(argument);
    }
    return arguments;
}

} // namespace zelvane::oracle
