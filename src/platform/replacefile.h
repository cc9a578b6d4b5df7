// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace zelvane
{

/// Replaces or creates a document, so that a failure at any step leaves the old one whole and a power cut
/// leaves one of the two. Links are followed where the system lets the given name be opened; permission bits,
/// attributes and, where possible, the owner are kept, and at no moment may anyone read the new file who may
/// not read the old. A file without write permission is refused. Where the folder takes no second file, or
/// where a second file could not be what the first was (hard links, owner), the bytes are written in place:
/// the old ones are put back on failure, and until the new ones are complete they stand in an UnsavedCopy.
/// What killed saves have left beside the target is removed.
/// @throws RunTimeError with the system's description
void ReplaceFile(const QString &name, const QByteArray &bytes);

/// Removes what killed saves have left beside a document; a save does so by itself. A name that leads nowhere
/// is no failure.
void RemoveLeftBeside(const QString &name);

} // namespace zelvane
