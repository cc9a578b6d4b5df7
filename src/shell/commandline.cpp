// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commandline.h"

#include "shell/splitpath.h"

#include <QFileInfo>
#include <QSysInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool NamesFile(const QString &argument)
{
    // A pipe or a device is nothing to edit, and hides no file that is named behind it.
    return !argument.isEmpty() && QFileInfo(argument).isFile();
}

/// The path behind an address of a file of this machine ("file:///a%20b.csd", "file:/a%20b.csd"), else
/// nothing.
QString PathOfAddress(const QString &argument)
{
    static const QString scheme = u"file:"_s;
    if (!argument.startsWith(scheme + u'/', Qt::CaseInsensitive))
        return {};
    const qsizetype start = scheme.size();
    const bool hasHost = QStringView(argument).sliced(start).startsWith(u"//");
    const qsizetype slash = hasHost ? argument.indexOf(u'/', start + 2) : start;
    if (slash < 0)
        return {};
    const QStringView host =
        hasHost ? QStringView(argument).sliced(start + 2, slash - start - 2) : QStringView();
    if (!host.isEmpty() && host.compare(u"localhost"_s, Qt::CaseInsensitive) != 0 &&
        host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0)
        return {};
    // Nothing can follow a path here: a "#" or "?" that the sender has not escaped belongs to the name.
    QUrl url;
    url.setScheme(u"file"_s);
    url.setPath(argument.sliced(slash), QUrl::TolerantMode);
    const QString path = url.toLocalFile();
    return path.contains(QChar::Null) ? QString() : path;
}

/// The absolute path of the file that an argument names; nothing when there is none.
QString ExistingFile(const QString &argument)
{
    for (const QString &name : {argument, DropOuterQuotes(argument), PathOfAddress(argument)})
        if (NamesFile(name))
            return QFileInfo(name).absoluteFilePath();
    return {};
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments, const QStringList &given)
{
    const qsizetype end = arguments.indexOf(u"--"_s);
    QStringList words = arguments;
    if (end >= 0)
        words.removeAt(end);
    for (const QStringList &whole : {given, arguments, words}) {
        if (const QString file = ExistingFile(whole.join(u' ')); !file.isEmpty()) {
            m_form = StartForm::Document;
            m_text = m_document = file;
            return;
        }
    }

    // The same string twice: with the file names, and with a stand-in of the same length for each of them.
    QString searched;
    QString firstFile;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString file = ExistingFile(words[i]);
        const QString path = file.isEmpty() ? PathOfAddress(words[i]) : file;
        const bool isName = !path.isEmpty() || (end >= 0 && i >= end);
        if (firstFile.isEmpty())
            firstFile = file;
        if (!m_text.isEmpty()) {
            m_text += u' ';
            searched += u' ';
        }
        const QString part = path.isEmpty() ? words[i] : path;
        m_text += part;
        searched += isName ? QString(part.size(), u'?') : part;
    }

    // What decides is the switch with its blank; what is cut is its first two characters, wherever they stand
    // first, and the one behind them.
    const auto cut = [&](QStringView letters) {
        const qsizetype start = searched.indexOf(letters);
        const QString rest = DropOuterQuotes((m_text.first(start) + m_text.sliced(start + 3)).trimmed());
        const QString file = ExistingFile(rest);
        return !file.isEmpty() ? file : !firstFile.isEmpty() ? firstFile : rest;
    };
    if (searched.contains(u"/p "_s)) {
        m_form = StartForm::QuickPreset;
        m_document = cut(u"/p");
    } else if (searched.contains(u"/r "_s)) {
        m_form = StartForm::RunCsound;
        m_document = cut(u"/r");
    } else if (searched == u"/i"_s) {
        m_form = StartForm::NewInstance;
    } else if (!m_text.isEmpty()) {
        m_form = StartForm::Document;
        // The switch with a name behind it is taken as it stands, and is no file.
        if (!firstFile.isEmpty() && !searched.startsWith(u"/i "_s))
            m_text = firstFile;
        m_document = m_text;
    }
}

} // namespace zelvane
