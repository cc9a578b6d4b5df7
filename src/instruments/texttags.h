// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <optional>
#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

struct EditorContext;

// Tags in the document's text: "<tag>" and "</tag>", in exact case, known to no language.

/// What stands between the first "<tag>" of a text and the next "</tag>"; empty when one of them is missing.
QString GetTagText(const QString &tag, QStringView text);

/// The offset from 0 just behind the first "<tag>"; -1 where it is missing, or a "</tag>" behind it.
qsizetype FindTag(const TextBuffer &text, const QString &tag);

/// Replaces what stands between the first "<tag>" from `start` on and the next "</tag>", as one edit that
/// leaves selection and view where they are. @param start counts from 1 @return where the new text stands, in
/// offsets from 0; no value when one of the tags is missing @throws RunTimeError 5 for a start below 1
std::optional<TextSpan> SetTagText(EditorContext &editor, const QString &tag, const QString &text,
                                   qsizetype start);

/// Puts "<tag>" and "</tag>", each on a line of its own, to the end of the text or just behind the first
/// "<parent>", as one edit that leaves selection and view where they are. @param parent empty for the end
/// @return false when there is no parent: the user has been told
bool CreateTag(EditorContext &editor, const QString &tag, const QString &parent);

/// CreateTag at the end of the text and SetTagText of this tag in one: a single edit.
void AppendTag(EditorContext &editor, const QString &tag, const QString &text);

} // namespace zelvane
