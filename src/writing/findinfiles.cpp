// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/findinfiles.h"

#include "shell/documentkind.h"
#include "shell/findpattern.h"
#include "shell/findreplace.h"
#include "shell/findtext.h"
#include "shell/recentlist.h"
#include "shell/splitpath.h"
#include "writing/findinfileskeys.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

FindOptions OptionsOfSearch(const FileSearchFields &fields)
{
    return (fields.wholeWords ? FindWholeWord : FindAnywhere) |
           (fields.matchCase ? FindMatchCase : FindAnywhere) |
           (fields.regularExpression ? FindRegularExpression : FindAnywhere);
}

QStringList SplitPatterns(const QString &patterns)
{
    QStringList all;
    QString pattern;
    for (const QChar c : patterns + u';') {
        if (c != u';' && c != u',' && !c.isSpace())
            pattern += c;
        else if (!pattern.isEmpty())
            all.append(std::exchange(pattern, {}));
    }
    return all;
}

/// The folder that is meant by what was typed; empty for nothing.
QString FolderMeant(const QString &typed)
{
    if (typed.isEmpty())
        return {};
    const bool isAtHome = typed == u"~" || typed.startsWith(u"~/"_s);
    const QString path = isAtHome ? QDir::homePath() + typed.sliced(1) : typed;
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString FolderToSearch(const EditorContext &editor)
{
    const QString stored = editor.settings.Text(Keys::FindInFilesFolder);
    if (!stored.isEmpty() && QFileInfo(stored).isDir())
        return stored;
    const QString &file = editor.document.CurrentFile;
    return file.isEmpty() ? QDir::homePath() : QFileInfo(file).absolutePath();
}

bool AreOne(const QString &one, const QString &other)
{
    if (one == other)
        return true;
    const QString path = QFileInfo(one).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(other).canonicalFilePath();
}

QString Counted(qsizetype count, const QString &one, const QString &many)
{
    return QString::number(count) + u' ' + (count == 1 ? one : many);
}

} // namespace

FileSearchFields OpeningFileSearch(const EditorContext &editor)
{
    const SettingsStore &settings = editor.settings;
    const QString selected = WhatIsSelected(editor.text).text;
    const QString patterns = settings.Text(Keys::FindInFilesPatterns);
    return {.text = selected.isEmpty() ? FileSearchTexts(settings).value(0) : selected,
            .folder = FolderToSearch(editor),
            .patterns = patterns.isEmpty() ? CsoundPatterns(settings) : patterns,
            .subFolders = settings.Flag(Keys::FindInFilesSubFolders),
            .wholeWords = settings.Flag(Keys::FindInFilesWholeWords),
            .matchCase = settings.Flag(Keys::FindInFilesMatchCase),
            .regularExpression = settings.Flag(Keys::FindInFilesRegularExpression)};
}

QStringList FileSearchTexts(const SettingsStore &settings)
{
    return RecentItems(settings, Sections::RecentFileSearches, RecentFindStringCount);
}

QString CsoundPatterns(const SettingsStore &settings)
{
    QStringList extensions;
    for (const FileKind kind : {FileKind::Orchestra, FileKind::Score, FileKind::Unified})
        extensions += KindExtensions(settings, kind);
    return ExtensionPatterns(extensions);
}

QString FileSearchError(const FileSearchFields &fields)
{
    if (fields.text.isEmpty())
        return u"There is no text to find."_s;
    if (fields.folder.isEmpty() || !QFileInfo(FolderMeant(fields.folder)).isDir())
        return u"There is no folder '"_s + fields.folder + u"'."_s;
    if (!fields.regularExpression)
        return {};
    const QString error = FindPattern(fields.text, OptionsOfSearch(fields)).Error();
    return error.isEmpty() ? QString() : BadPatternText(fields.text, error);
}

FileSearch FileSearchOf(const FileSearchFields &fields)
{
    const QStringList patterns = SplitPatterns(fields.patterns);
    return {.text = fields.text,
            .options = OptionsOfSearch(fields),
            .folder = FolderMeant(fields.folder),
            .patterns = patterns.isEmpty() ? QStringList(u"*"_s) : patterns,
            .subFolders = fields.subFolders};
}

void StoreFileSearch(SettingsStore &settings, const FileSearchFields &fields)
{
    settings.InOneStep([&] {
        settings.SaveText(Keys::FindInFilesFolder, FolderMeant(fields.folder));
        settings.SaveText(Keys::FindInFilesPatterns,
                          fields.patterns == CsoundPatterns(settings) ? QString() : fields.patterns);
        settings.SaveFlag(Keys::FindInFilesSubFolders, fields.subFolders);
        settings.SaveFlag(Keys::FindInFilesWholeWords, fields.wholeWords);
        settings.SaveFlag(Keys::FindInFilesMatchCase, fields.matchCase);
        settings.SaveFlag(Keys::FindInFilesRegularExpression, fields.regularExpression);
        AddRecentItem(settings, fields.text, Sections::RecentFileSearches, RecentFindStringCount);
    });
}

QString FileSearchText(const SearchCounts &counts)
{
    QString text = Counted(counts.lines, u"line"_s, u"lines"_s) + u" in "_s + QString::number(counts.files) +
                   u" of "_s + Counted(counts.searched, u"file"_s, u"files"_s) + u'.';
    if (counts.cut)
        text += u" There may be more."_s;
    QStringList passed;
    const auto tell = [&passed](int count, const QString &what) {
        if (count > 0)
            passed.append(QString::number(count) + u' ' + what);
    };
    tell(counts.binary, u"binary"_s);
    tell(counts.large, u"too large"_s);
    tell(counts.unreadable, u"unreadable"_s);
    tell(counts.special, counts.special == 1 ? u"pipe or device"_s : u"pipes or devices"_s);
    tell(counts.hard, u"too hard for the expression"_s);
    if (!passed.isEmpty())
        text += u" Passed over: "_s + passed.join(u", "_s) + u'.';
    return text;
}

bool OpenFoundLine(EditorContext &editor, const FoundLine &found)
{
    if (!AreOne(found.file, editor.document.CurrentFile)) {
        editor.operations.OpenFile(found.file);
        if (!AreOne(found.file, editor.document.CurrentFile))
            return false;
    }
    TextBuffer &text = editor.text;
    const qsizetype line = NearestLineWith(text.Text(), found.line, found.text) - 1;
    const qsizetype shown = std::clamp<qsizetype>(line, 0, text.LineCount() - 1);
    const qsizetype start = text.LineStart(shown);
    const QString there = text.TextRange(start, text.LineEnd(shown));
    // Something may have been put in front of it since.
    const qsizetype from =
        QStringView(there).sliced(std::min(found.from, there.size())).startsWith(found.text)
            ? found.from
            : there.indexOf(found.text);
    if (from < 0) {
        text.SetSelection(start, start);
        return true;
    }
    const qsizetype hit = start + from - found.from + found.hit.start;
    text.SetSelection(hit, std::min(hit + found.hit.Length(), start + there.size()));
    return true;
}

qsizetype NearestLineWith(QStringView text, qsizetype line, QStringView wanted)
{
    qsizetype nearest = 0;
    qsizetype number = 1;
    const auto distance = [line](qsizetype other) { return other < line ? line - other : other - line; };
    for (qsizetype start = 0; start <= text.size(); ++number) {
        const qsizetype feed = text.indexOf(u'\n', start);
        const qsizetype end = feed < 0 ? text.size() : feed;
        if (nearest > 0 && number > line && distance(number) >= distance(nearest))
            break;
        if (text.sliced(start, end - start).contains(wanted) &&
            (nearest == 0 || distance(number) < distance(nearest)))
            nearest = number;
        start = end + 1;
    }
    return nearest == 0 ? line : nearest;
}

} // namespace zelvane
