// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/typeenable.h"

#include "shell/documentview.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool TypeEnableRow::EnabledFor(FileKind kind) const
{
    switch (kind) {
    case FileKind::Orchestra:
        return orchestra;
    case FileKind::Score:
        return score;
    case FileKind::Unified:
        return unified;
    default:
        return other;
    }
}

std::span<const TypeEnableRow> TypeEnableTable()
{
    constexpr bool T = true;
    constexpr bool o = false;
    static const std::vector<TypeEnableRow> table = {
        // clang-format off
        //                    other orchestra score unified
        {u"mnuHeader"_s,     0, o,   T,        o,    T},
        {u"mnuNewInstr"_s,   0, o,   T,        o,    T},
        {u"mnuCSD"_s,        0, o,   T,        T,    o},
        {u"mnuCSD"_s,        1, o,   o,        o,    T},
        {u"mnuOrchestra"_s,  0, o,   o,        T,    T},
        {u"mnuScore"_s,      0, o,   T,        o,    T},
        {u"mnuInstrEdit"_s,  0, o,   T,        T,    T},
        {u"mnuInstrGUI"_s,   0, o,   o,        T,    T},
        {u"mnuPMapping"_s,   0, o,   T,        o,    T},
        {u"mnuNewMacro"_s,   0, o,   T,        T,    T},
        {u"mnuNewInclude"_s, 0, o,   T,        T,    T},
        // clang-format on
    };
    return table;
}

void TypeEnable(FileKind kind, DocumentView &view)
{
    for (const TypeEnableRow &row : TypeEnableTable())
        view.EnableCommand(row.name, row.index, row.EnabledFor(kind));
}

void EnableFileMenu(const DocumentRecord &document, DocumentView &view)
{
    for (const LineEndForm form : {LineEndForm::Pc, LineEndForm::Unix, LineEndForm::Mac})
        view.EnableCommand(u"mnuPlatformItem"_s, int(form), form != document.CurrentPlatform);
    const bool named = !document.CurrentFile.isEmpty();
    for (const int operation : {0, 1, 2, 3, 5})
        view.EnableCommand(u"mnuFSO"_s, operation, named);
    view.EnableCommand(u"mnuBackupNow"_s, 0, named);
}

} // namespace zelvane
