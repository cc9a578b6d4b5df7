// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

struct EditorContext;

// The texts that the Insert menu writes. Their line ends are CR LF.

/// Date, a blank and time, in the short formats of the desktop.
QString DateAndTime(const QDateTime &now, const QLocale &locale = QLocale::system());

// The orchestra header

/// Whether a sample rate is a multiple of a control rate. @throws RunTimeError for a control rate of 0
bool IsControlRate(qint32 sampleRate, qint32 controlRate);
/// The next divisor of the sample rate above or below a control rate, which need be none itself.
/// @param direction 1 for up, -1 for down
/// @throws RunTimeError where it would be 0, or beyond 32 bits
qint32 NextControlRate(qint32 sampleRate, qint32 controlRate, int direction);
/// @param controlRate divides the sample rate
QString HeaderText(qint32 sampleRate, qint32 controlRate, const QString &channels);

// The random number

/// @param random from 0 up to, but not, 1; it leads from `min` to `max`
/// @param digits behind the point, 0 to 15; a half goes to the even neighbour
/// @throws RunTimeError for negative digits, and 6 "Overflow"
QString RandomNumber(double random, double min, double max, int digits);

// Definitions

/// @param number as it was typed; a name is put behind it as a comment
QString InstrumentText(const QString &number, const QString &name);
/// @param arguments with a straight single quote between them; blanks around them and empty ones go
/// @param replacement holds no number sign; a comment stands for an empty one
QString MacroText(const QString &name, const QString &arguments, const QString &replacement);

// File names

/// A path as seen from a folder: what follows the folder for a file in it or below it, else the path. The
/// disk is not looked at.
QString RelativeTo(const QString &folder, const QString &path);
/// The name that an include statement takes for what the user typed or picked.
/// @param folder of the document, empty where it has none
/// @param qualified the full path, also for a file below the folder
QString IncludeName(const QString &file, const QString &folder, bool qualified);
QString IncludeText(const QString &name);
/// Asks for a file and puts its name in place of the selection.
void InsertFilename(EditorContext &editor);

// Line separators

/// The first character of a line's style, which is one blank where the setting is empty.
QString StyleCharacter(const QString &style);
/// A line of `width` characters, the text with a blank on each side in its middle; one that has no room gets
/// three characters on each side. An empty text stands for none.
QString SeparatorLine(const QString &character, int width, const QString &text);
/// Puts a comment of such a line under the line of the caret; with Ctrl held it asks for a text.
void InsertLineSeparation(EditorContext &editor, LineStyle style);

} // namespace zelvane
