// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/helpviewer.h"

#include "platform/desktop.h"
#include "platform/profilefile.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

const QString WordMark = u"$WORD$"_s;

/// A keyword as one argument, whatever quotes and blanks it holds.
QString Quoted(QString word)
{
    return u'"' + word.replace(u'"', u"\"\""_s) + u'"';
}

} // namespace

bool Manual::IsLocal() const
{
    return !folder.startsWith(u"http:"_s) && !folder.startsWith(u"https:"_s);
}

bool Manual::IsThere() const
{
    return !IsLocal() || QFileInfo(ContentsPage()).isFile();
}

QString Manual::ContentsPage() const
{
    return folder + u'/' + contents;
}

QString Manual::PageOf(const QString &word) const
{
    QString name;
    if (const auto named = pages.constFind(word); named != pages.constEnd()) {
        name = *named;
    } else if (const auto family =
                   std::find_if(families.begin(), families.end(),
                                [&word](const auto &row) { return word.startsWith(row.first); });
               family != families.end()) {
        name = family->second;
    } else if (!IsLocal()) {
        name = QString(page).replace(WordMark, QString::fromLatin1(QUrl::toPercentEncoding(word)));
    } else if (!word.contains(u'/') && !word.contains(QDir::separator())) {
        // A word is no path: what is selected in a text leads to no file but a page.
        name = QString(page).replace(WordMark, word);
    }
    const QString file = folder + u'/' + name;
    // Another edition of a manual may lack a page that the help file names.
    return !IsLocal() || QFileInfo(file).isFile() ? file : ContentsPage();
}

std::optional<Manual> ReadManual(const QString &helpFile)
{
    const ProfileFile file(helpFile);
    const auto key = [&file](QStringView name) { return file.Value(u"Manual", name).value_or(QString()); };
    Manual manual{.folder = key(u"Folder"),
                  .page = key(u"Page"),
                  .contents = key(u"Contents"),
                  .pages = {},
                  .families = {}};
    if (manual.folder.isEmpty() || manual.contents.isEmpty())
        return {};
    if (manual.IsLocal())
        manual.folder = QDir::cleanPath(QFileInfo(helpFile).absoluteDir().absoluteFilePath(manual.folder));
    while (manual.folder.endsWith(u'/'))
        manual.folder.chop(1);
    for (const auto &[word, page] : file.Entries(u"Pages")) {
        if (word.endsWith(u'*'))
            manual.families.append({word.chopped(1), page});
        else
            manual.pages.insert(word, page);
    }
    return manual;
}

void OpenHelp(Desktop &desktop, const QString &file, HelpCommand command, const QString &word)
{
    if (const auto manual = ReadManual(file)) {
        const QString page = command == HelpCommand::Keyword ? manual->PageOf(word) : manual->ContentsPage();
        desktop.ShellRun({.file = page});
        return;
    }
    const QString parameters = command == HelpCommand::Keyword ? u"-k "_s + Quoted(word) : u"-c"_s;
    desktop.ShellRun({.file = file, .parameters = parameters});
}

} // namespace zelvane
