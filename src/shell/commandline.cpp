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

/// The arguments joined by blanks.
struct JoinedArguments {
    QString text;
    QString searched;  ///< the same, with a stand-in of the same length for each name of a file
    QString firstFile; ///< that there is
};

/// @param firstName from this one on all are names; behind the end when none is
JoinedArguments Join(const QStringList &words, qsizetype firstName)
{
    JoinedArguments joined;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString file = ExistingFile(words[i]);
        const QString path = file.isEmpty() ? PathOfAddress(words[i]) : file;
        if (joined.firstFile.isEmpty())
            joined.firstFile = file;
        if (!joined.text.isEmpty()) {
            joined.text += u' ';
            joined.searched += u' ';
        }
        const QString part = path.isEmpty() ? words[i] : path;
        const bool isName = !path.isEmpty() || i >= firstName;
        joined.text += part;
        joined.searched += isName ? QString(part.size(), u'?') : part;
    }
    return joined;
}

/// What decides is the switch with its blank; what is cut is its first two characters, wherever they stand
/// first, and the one behind them.
QString WithoutSwitch(const JoinedArguments &joined, QStringView letters)
{
    const qsizetype start = joined.searched.indexOf(letters);
    const qsizetype behind = start + letters.size() + 1;
    const QString rest = DropOuterQuotes((joined.text.first(start) + joined.text.sliced(behind)).trimmed());
    const QString file = ExistingFile(rest);
    return !file.isEmpty() ? file : !joined.firstFile.isEmpty() ? joined.firstFile : rest;
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

    const JoinedArguments joined = Join(words, end >= 0 ? end : words.size());
    m_text = joined.text;
    if (joined.searched.contains(u"/p "_s)) {
        m_form = StartForm::QuickPreset;
        m_document = WithoutSwitch(joined, u"/p");
    } else if (joined.searched.contains(u"/r "_s)) {
        m_form = StartForm::RunCsound;
        m_document = WithoutSwitch(joined, u"/r");
    } else if (joined.searched == u"/i"_s) {
        m_form = StartForm::NewInstance;
    } else if (!m_text.isEmpty()) {
        m_form = StartForm::Document;
        // The switch with a name behind it is taken as it stands, and is no file.
        if (!joined.firstFile.isEmpty() && !joined.searched.startsWith(u"/i "_s))
            m_text = joined.firstFile;
        m_document = m_text;
    }
}

} // namespace zelvane
