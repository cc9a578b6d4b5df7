// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/toolbartable.h"

#include "shell/command.h"

namespace zelvane
{

namespace
{

constexpr ButtonGroup SameGroup = ButtonGroup::Same;
constexpr ButtonGroup NewGroup = ButtonGroup::New;
constexpr Command Larger = Cmd::mnuFontSize[FontSizeChange::Increase];
constexpr Command Smaller = Cmd::mnuFontSize[FontSizeChange::Decrease];

constexpr ToolButton Table[] = {
    {u"new", u"New", u"New", Cmd::mnuNew},
    {u"open", u"Open", u"Open", Cmd::mnuOpen},
    // Its row can always be chosen; the button can while there is something to save.
    {.key = u"save",
     .description = u"Save",
     .tooltip = u"Save",
     .command = Cmd::mnuSave,
     .followsRow = false},
    {u"cut", u"Cut", u"Cut", Cmd::mnuEditItem[EditItem::Cut], NewGroup},
    {u"copy", u"Copy", u"Copy", Cmd::mnuEditItem[EditItem::Copy]},
    {u"paste", u"Paste", u"Paste", Cmd::mnuEditItem[EditItem::Paste]},
    {u"comment",
     u"Comment",
     u"Comment",
     Cmd::mnuComment,
     SameGroup,
     {{{u"Comment", Cmd::mnuComment}, {u"Uncomment", Cmd::mnuUncomment}}}},
    {u"find",
     u"Find",
     u"Find",
     Cmd::mnuFind,
     SameGroup,
     {{{u"Find...", Cmd::mnuFind}, {u"Replace...", Cmd::mnuReplace}}}},
    {u"undo", u"Undo", u"Undo", Cmd::mnuUndo},
    {u"redo", u"Redo", u"Redo", Cmd::mnuRedo},
    {.key = u"back",
     .description = u"Back",
     .tooltip = u"Back",
     .command = Cmd::back,
     .group = NewGroup,
     .shortcut = u"Ctrl+PgUp",
     .dropDown = true},
    {.key = u"next",
     .description = u"Next",
     .tooltip = u"Next",
     .command = Cmd::next,
     .shortcut = u"Ctrl+PgDown",
     .dropDown = true},
    {u"fontsize",
     u"Font size",
     u"Increase font size",
     Larger,
     NewGroup,
     {{{u"Increase font size", Larger}, {u"Decrease font size", Smaller}}}},
    {u"orchestra", u"Orchestra", u"Orchestra", Cmd::mnuOrchestra, NewGroup},
    {u"score", u"Score", u"Score", Cmd::mnuScore},
    {u"browse", u"Outline", u"Code Outline", Cmd::mnuBrowse},
    {u"related", u"Related", u"Related Files", Cmd::mnuRelated},
    {u"runcsound", u"Run", u"Run Csound", Cmd::mnuRunCsound, NewGroup},
    {u"code",
     u"Code",
     u"Code Repository",
     Cmd::mnuCodeRes,
     SameGroup,
     {{{u"Code Repository...", Cmd::mnuCodeRes}, {u"Add to Code Repository...", Cmd::mnuCodeResAdd}}}},
    {u"slider",
     u"Statement",
     u"i statement gui",
     Cmd::mnuInstrGUI,
     SameGroup,
     {{{u"i statement gui...", Cmd::mnuInstrGUI}, {u"Instrument Properties...", Cmd::mnuInstrEdit}}}},
    {u"cshelp", u"Help", u"Csound Help", Cmd::mnuCsHelp, NewGroup},
};

} // namespace

std::span<const ToolButton> ToolbarTable()
{
    return Table;
}

} // namespace zelvane
