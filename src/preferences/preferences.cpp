// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/preferences.h"

#include "platform/executables.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QStringList StartupTexts()
{
    return {u"Open last document"_s, u"Show Open dialog box"_s, u"Nothing"_s};
}

QStringList SyntaxElements()
{
    return {u"Normal text"_s, u"Opcodes"_s, u"Macros"_s, u"Includes"_s, u"String literals"_s, u"Comments"_s};
}

QString ExtensionsNote()
{
    return u"Type extensions separated by only one space. Example: \"xxx yyy zzz\" NOT \"*.xxx .yyy    zzz\" "_s;
}

QString VariableLine(const QString &name, const Desktop &desktop)
{
    return name + u": "_s + desktop.EnvironmentVariable(name);
}

FileDialogRequest ProgramRequest(const QString &title, const QString &path)
{
    return {.title = title, .filters = {{u"Executables"_s, u"*.exe"_s}}, .folder = ProgramPath(path)};
}

FileDialogRequest HelpFileRequest(const QString &title, const QString &path)
{
    return {.title = title,
            .filters = {{u"Help files"_s, u"*.hlp;*.htm;*.html;*.pdf;*.txt;*.chm;*.rtf;*.doc"_s}},
            .folder = ProgramPath(path)};
}

} // namespace zelvane
