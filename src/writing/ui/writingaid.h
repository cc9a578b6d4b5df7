// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"
#include "writing/keptlines.h"

#include <memory>

namespace zelvane
{

class NameKeeper;
class OpcodeList;
class ScannedText;
class TextDecorations;

/// What the window remembers of the files that were left in it, with the aids on or off.
struct FileMemory {
    LinesOfFiles folded;
    LinesOfFiles bookmarked;
};

/// What an aid works on. It all outlives the aid.
struct WritingContext {
    const WindowContext &window;
    TextDecorations &decorations;
    ScannedText &scanned;
    const OpcodeList &opcodes; ///< loaded, and never changed, before the first document comes
    FileMemory &memory;
    /// What is known of the names in the text (see SharedNames).
    mutable std::weak_ptr<NameKeeper> names = {};
};

/// A writing aid: it is made when its setting is on, works as long as it lives, and leaves no trace when it
/// goes. It shows what the present text needs when it is made: a document may stand in the window.
class WritingAid
{
public:
    WritingAid() = default;
    WritingAid(const WritingAid &) = delete;
    WritingAid &operator=(const WritingAid &) = delete;
    virtual ~WritingAid() = default;

    /// The settings have been applied, and the aid stays on.
    virtual void SettingsApplied() {}
};

} // namespace zelvane
