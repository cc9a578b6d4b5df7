// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>

namespace zelvane
{

class FileOperations;
struct EditorContext;

/// The name of a document's backup of that day: "song(01-03-07).orc". A name without an
/// extension gets no point either: "song(01-03-07)".
/// @param folder where backups go; empty for the document's own
QString BackupPath(const QString &document, const QString &folder, QDate day);

/// Copies the document's file, as it was last saved, to its backup, which may not be written; asks first, and
/// tells how it went. Nothing happens without a file.
void BackupNow(EditorContext &editor, FileOperations &files);

/// Deletes the user's files in the system's temporary folder whose names begin with "cs", whoever made them.
/// @param folder the temporary folder; empty when the system has none
/// @param interactive asks first, and tells when there is nothing to delete; else all is done without a word
void DeleteTempFiles(bool interactive, const QString &folder, EditorContext &editor, FileOperations &files);

} // namespace zelvane
