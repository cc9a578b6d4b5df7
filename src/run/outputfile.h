// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

struct EditorContext;

/// The path of the current document with another extension; empty without a document, and when the file is
/// there and the user does not want it overwritten (asked only with `OverwritePrompt`).
QString OutputFileFor(const QString &extension, EditorContext &context);

} // namespace zelvane
