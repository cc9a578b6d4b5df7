// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

class Desktop;
class TextBuffer;

/// The message of a text control that the left button was released.
inline constexpr int LeftButtonReleased = 514;

/// The address of a link, from the offsets that the text control reports: `end` + 1 characters from `start`
/// on, fewer where the text ends. So `end` is a count, and this is not the text between the two offsets.
QString LinkAddress(const QString &text, qsizetype start, qsizetype end);

/// What a text control that reports links calls: opens the address when the left button is released, and
/// tells when there is no such file. No control reports links at present.
void LinkOver(int message, qsizetype start, qsizetype end, const TextBuffer &text, Desktop &desktop);

} // namespace zelvane
