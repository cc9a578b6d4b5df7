// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;
class QString;

namespace zelvane
{

/// Turns the line ends of what is pasted into a field into blanks. The field shows them as blanks, but would
/// keep them, and so let a name or a comment run on into lines of code.
void KeepOneLine(QLineEdit &field);

/// Gives a field a text whose own line ends stay. Those of what is then typed, pasted or dropped into it
/// become blanks.
void PutKeptText(QLineEdit &field, const QString &text);

} // namespace zelvane
