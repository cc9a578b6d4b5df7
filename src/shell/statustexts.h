// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QLocale>
#include <QString>

class QDateTime;

namespace zelvane
{

class Desktop;
class TextBuffer;

/// Date and time as the desktop's locale writes them in short, with seconds.
QString GeneralDate(const QDateTime &time, const QLocale &locale = QLocale::system());

/// "12 bytes", "1.5Kb", "2Mb": one decimal, ties to even, no ".0".
QString ShortSizeText(qint64 bytes);

/// The same with all bytes told: "12 bytes", "1.5Kb (1536 bytes)", "2Mb (2097152 bytes)".
QString SizeText(qint64 bytes);

/// Display name, ": last saved ", date, and the attributes that the file has: " Read only", " Hidden", "
/// System". Only the display name when the file is not there.
QString FileFacts(const QString &name, const Desktop &desktop);

/// The file line of the document: facts, lines, size at two bytes a character, platform. Empty for an unnamed
/// one.
QString DocumentInfoText(const DocumentRecord &document, const TextBuffer &text, const Desktop &desktop);

/// The file line of any file: facts and size on disk; empty when the file is not there.
QString FileInfoLine(const QString &name, const Desktop &desktop);

/// Text of `lblLine`: "Line ", " Col ", both counted from 1, of the selection's start.
QString LineColumnText(const TextBuffer &text);

/// Text of `lblStatus` after a change of the selection: characters or lines selected; empty when nothing is,
/// by which the file line goes away with the first move of the caret.
QString SelectionText(const TextBuffer &text);

} // namespace zelvane
