// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// What SplitPath answers; the numbers are its modes.
enum class PathPart {
    /// The text before the last "." of the file name; the whole path when there is none.
    WithoutExtension = 0,
    Folder = 1,    ///< the text before the last separator; empty when there is none
    BaseName = 2,  ///< the file name without its extension; empty unless the file is on disk
    Quoted = 3,    ///< the path, in double quotes if it holds a blank
    Extension = 4, ///< the text after the last "." of the file name; empty unless the file is on disk
};

/// Cuts a file name. "\" and "/" both separate, on every platform: paths travel between them. BaseName and
/// Extension look at the disk, so for an unsaved or deleted document they answer the empty string.
/// @param currentFile is cut instead when `path` is empty; when both are, the answer is empty
QString SplitPath(PathPart part, const QString &path, const QString &currentFile = {});

/// The text behind the last separator, the whole path when there is none; the disk is not looked at.
QString BareFileName(const QString &path);

/// The text after the last "." of the bare file name, empty when there is none; the disk is not looked at.
QString BareExtension(const QString &path);

/// Removes one leading and one trailing double quote, each if present: what a person may have typed around a
/// name, where UnquoteFile undoes QuoteFile.
QString DropOuterQuotes(const QString &name);

} // namespace zelvane
