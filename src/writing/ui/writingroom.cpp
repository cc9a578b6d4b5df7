// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/writingroom.h"

#include "platform/ui/textdecorations.h"
#include "shell/findkeys.h"
#include "shell/settingkey.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"
#include "writing/ui/argumenthint.h"
#include "writing/ui/autoindent.h"
#include "writing/ui/bookmarks.h"
#include "writing/ui/bracketmatch.h"
#include "writing/ui/completionaid.h"
#include "writing/ui/currentline.h"
#include "writing/ui/filefinder.h"
#include "writing/ui/folding.h"
#include "writing/ui/linenumbers.h"
#include "writing/ui/livecolours.h"
#include "writing/ui/movelines.h"
#include "writing/ui/sameword.h"
#include "writing/ui/scannedtext.h"
#include "writing/writingkeys.h"

#include <algorithm>
#include <iterator>
#include <QAction>
#include <QMenu>

namespace zelvane
{

namespace
{

using MakeAid = std::unique_ptr<WritingAid> (*)(const WritingContext &context);

template <typename Aid> std::unique_ptr<WritingAid> Make(const WritingContext &context)
{
    return std::make_unique<Aid>(context);
}

struct AidRow {
    FlagKey key;
    MakeAid make; ///< null for what another aid, or a dialog, reads of the settings
};

/// All aids, in the order in which they are made.
constexpr AidRow Aids[] = {
    // What stands beside the text.
    {Keys::LineNumbers, Make<LineNumbers>},
    {Keys::CurrentLine, Make<CurrentLine>},
    {Keys::LiveColours, Make<LiveColours>},

    // What is marked in the text.
    {Keys::BracketMatch, Make<BracketMatch>},
    {Keys::SameWord, Make<SameWord>},
    {Keys::Folding, Make<Folding>},
    {Keys::Bookmarks, Make<Bookmarks>},

    // What keys do.
    {Keys::AutoIndent, Make<AutoIndent>},
    {Keys::MoveLines, Make<MoveLinesAid>},

    // What may come next.
    {Keys::Completion, Make<CompletionAid>},
    {Keys::ArgumentHint, Make<ArgumentHintAid>},

    // Searches.
    {Keys::FindInFiles, Make<FileFinder>},
    {Keys::RegularExpressions, nullptr},
};

} // namespace

WritingRoom::WritingRoom(const WindowContext &context, const OpcodeList &opcodes)
    : m_context(context), m_opcodes(opcodes)
{
    context.menus.Menu(Menu::mnuExtras)->menuAction()->setVisible(false);
    context.appearance.Add(Look::WritingAids, [this](const SettingsStore &settings) { Follow(settings); });
}

WritingRoom::~WritingRoom()
{
    m_aids.clear(); // before what they work on
}

WritingAid *WritingRoom::Aid(const QString &key) const
{
    const auto found = m_aids.find(key);
    return found == m_aids.end() ? nullptr : found->second.get();
}

void WritingRoom::Follow(const SettingsStore &settings)
{
    const bool any = std::any_of(std::begin(Aids), std::end(Aids),
                                 [&](const AidRow &row) { return settings.Flag(row.key); });
    m_context.menus.Menu(Menu::mnuExtras)->menuAction()->setVisible(any);
    for (const AidRow &row : Aids) {
        if (!settings.Flag(row.key))
            m_aids.erase(row.key.Name());
        else if (WritingAid *aid = Aid(row.key.Name()))
            aid->SettingsApplied();
    }
    if (!any) {
        m_aidContext.reset();
        m_scanned.reset();
        m_decorations.reset();
        return;
    }
    if (!m_decorations) {
        m_decorations = std::make_unique<TextDecorations>(m_context.text);
        m_scanned = std::make_unique<ScannedText>(m_context);
        m_aidContext.reset(new WritingContext{m_context, *m_decorations, *m_scanned, m_opcodes, m_memory});
    }
    for (const AidRow &row : Aids) {
        if (row.make && settings.Flag(row.key) && !Aid(row.key.Name()))
            m_aids.emplace(row.key.Name(), row.make(*m_aidContext));
    }
}

} // namespace zelvane
