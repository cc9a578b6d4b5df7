// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"
#include "writing/filesearch.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// What the fields of the dialog that finds in files hold.
struct FileSearchFields {
    QString text = {};
    QString folder = {};   ///< "~" is the user's own
    QString patterns = {}; ///< with ";", "," or blanks between
    bool subFolders = true;
    bool wholeWords = false;
    bool matchCase = false;
    bool regularExpression = false;
};

/// The fields as the dialog opens with them: those of the store; as text what is selected on one line, as
/// folder the document's where none is stored or the stored one is gone.
FileSearchFields OpeningFileSearch(const EditorContext &editor);
/// The texts that were searched for, the newest first.
QStringList FileSearchTexts(const SettingsStore &settings);

/// The patterns of all files of Csound, as their extensions are set.
QString CsoundPatterns(const SettingsStore &settings);

/// Why there is nothing to search with these fields; empty when there is. An empty text is said so too.
QString FileSearchError(const FileSearchFields &fields);
/// The search that the fields mean. Without a pattern all files are searched.
FileSearch FileSearchOf(const FileSearchFields &fields);
/// Stores the fields, and the text among the recent ones. @throws RunTimeError
void StoreFileSearch(SettingsStore &settings, const FileSearchFields &fields);

/// "12 lines in 3 of 40 files." and, where there are any, what was passed over and why.
QString FileSearchText(const SearchCounts &counts);

/// Opens the file of a found line, which asks about unsaved work, and selects the hit. In the file that is
/// the document already the hit is only selected. Where the line is not there any more, the caret goes to
/// where it was.
/// @return false where the file was not opened
bool OpenFoundLine(EditorContext &editor, const FoundLine &found);

/// The line, from 1, nearest to another one that holds a text; the line itself where none does. The document
/// may have been edited since the search.
qsizetype NearestLineWith(QStringView text, qsizetype line, QStringView wanted);

} // namespace zelvane
