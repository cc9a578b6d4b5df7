// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/documentsteps.h"
#include "support/printers.h"

#include <QtGlobal>
#include <vector>

namespace zelvane::test
{

/// The colouring step, and what was given to it to colour.
struct RecordedColour : ColourStep {
    std::vector<TextSpan> inserted;
    void HighlightInserted(qsizetype start, qsizetype end) override { inserted.push_back({start, end}); }
};

} // namespace zelvane::test
