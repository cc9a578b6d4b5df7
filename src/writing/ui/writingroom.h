// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"
#include "writing/ui/writingaid.h"

#include <map>
#include <memory>
#include <QString>

namespace zelvane
{

class OpcodeList;
class ScannedText;
class SettingsStore;
class TextDecorations;

/// The writing aids of the window. Each is there while its setting is on, from the start on and after each
/// change of the settings; without one the room holds nothing but what it remembers of files, and its menu is
/// out of sight.
class WritingRoom
{
public:
    WritingRoom(const WindowContext &context, const OpcodeList &opcodes);
    ~WritingRoom();

    /// How many aids there are.
    size_t AidCount() const { return m_aids.size(); }
    /// The aid of a setting, by the setting's name; null when it is off.
    WritingAid *Aid(const QString &key) const;
    /// What the aids show in the text; null while none is on.
    TextDecorations *Decorations() const { return m_decorations.get(); }

private:
    void Follow(const SettingsStore &settings);

    WindowContext m_context;
    const OpcodeList &m_opcodes;
    FileMemory m_memory;
    std::unique_ptr<TextDecorations> m_decorations;
    std::unique_ptr<ScannedText> m_scanned;
    std::unique_ptr<WritingContext> m_aidContext;
    std::map<QString, std::unique_ptr<WritingAid>> m_aids; ///< by the names of their settings
};

} // namespace zelvane
