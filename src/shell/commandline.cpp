// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commandline.h"

#include "shell/splitpath.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool NamesFile(const QString &argument)
{
    const QFileInfo file(argument);
    return !argument.isEmpty() && file.exists() && !file.isDir();
}

QString Absolute(const QString &argument)
{
    return QFileInfo(argument).absoluteFilePath();
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments)
{
    const QString joined = arguments.join(u' ');
    if (NamesFile(joined)) {
        m_form = StartForm::Document;
        m_text = m_document = Absolute(joined);
        return;
    }

    // The same string twice: with the file names, and with a stand-in of the same length for each of them.
    QString searched;
    for (const QString &argument : arguments) {
        const bool isFile = NamesFile(argument);
        if (!m_text.isEmpty()) {
            m_text += u' ';
            searched += u' ';
        }
        const QString part = isFile ? Absolute(argument) : argument;
        m_text += part;
        searched += isFile ? QString(part.size(), u'?') : part;
    }

    // What decides is the switch with its blank; what is cut is its first two characters, wherever they stand
    // first, and the one behind them.
    const auto cut = [&](QStringView letters) {
        const qsizetype start = searched.indexOf(letters);
        return DropOuterQuotes((m_text.first(start) + m_text.sliced(start + 3)).trimmed());
    };
    if (searched.contains(u"/p "_s)) {
        m_form = StartForm::QuickPreset;
        m_document = cut(u"/p");
    } else if (searched.contains(u"/r "_s)) {
        m_form = StartForm::RunCsound;
        m_document = cut(u"/r");
    } else if (m_text == u"/i"_s) {
        m_form = StartForm::NewInstance;
    } else if (!m_text.isEmpty()) {
        m_form = StartForm::Document;
        m_document = m_text;
    }
}

} // namespace zelvane
