// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace zelvane
{

class DocumentLifecycle;
struct EditorContext;

/// At the end of the start: asks about each text that an editor which is no longer there has left unsaved,
/// and about each file in the midst of whose writing one has ended. A Yes puts the text into this window, as
/// an untitled changed one that knows its name; where more are left another editor is started, which asks
/// about those. What gets a No is kept for its week and not asked about again, and what is the same as on the
/// disk goes without a word. What has been kept long enough, and what killed savings have left, is removed.
/// @param mayAsk whether an answer counts: once it says no, the rest is for the next editor
/// @throws RunTimeError when the other editor cannot be started; nothing is lost then
void OfferLeftWork(DocumentLifecycle &documents, EditorContext &editor, const std::function<bool()> &mayAsk);

} // namespace zelvane
