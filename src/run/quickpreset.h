// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/presetstore.h"

#include <QString>

namespace zelvane
{

struct EditorContext;

/// The caption of the preset chooser.
QString QuickPresetCaption();

/// The chooser's line about the document: its bare name and, in brackets, the name of its kind.
QString QuickPresetFileLine(const EditorContext &context);

/// What the chooser shows of the selected preset.
struct QuickPresetPreview {
    QString tooltip = {};
    int imageNumber = 0; ///< a built-in image; 0 for none, also where the preset has a picture file

    bool operator==(const QuickPresetPreview &) const = default;
};
QuickPresetPreview PreviewOf(const PresetKey &name, const EditorContext &context);

/// Starts the editor on the document of the chooser; says so when it cannot be started.
void EditFromChooser(EditorContext &context);

} // namespace zelvane
