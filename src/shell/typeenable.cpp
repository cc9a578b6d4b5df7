// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/typeenable.h"

#include "shell/documentview.h"

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
    static constexpr TypeEnableRow table[] = {
        // clang-format off
        //                                  other orchestra score unified
        {Cmd::mnuHeader,                      o,   T,        o,    T},
        {Cmd::mnuNewInstr,                    o,   T,        o,    T},
        {Cmd::mnuCSD[Conversion::ToUnified],  o,   T,        T,    o},
        {Cmd::mnuCSD[Conversion::ToPair],     o,   o,        o,    T},
        {Cmd::mnuOrchestra,                   o,   o,        T,    T},
        {Cmd::mnuScore,                       o,   T,        o,    T},
        {Cmd::mnuInstrEdit,                   o,   T,        T,    T},
        {Cmd::mnuInstrGUI,                    o,   o,        T,    T},
        {Cmd::mnuPMapping,                    o,   T,        o,    T},
        {Cmd::mnuNewMacro,                    o,   T,        T,    T},
        {Cmd::mnuNewInclude,                  o,   T,        T,    T},
        // clang-format on
    };
    return table;
}

void TypeEnable(FileKind kind, DocumentView &view)
{
    for (const TypeEnableRow &row : TypeEnableTable())
        view.EnableCommand(row.command, row.EnabledFor(kind));
}

void EnableFileMenu(const DocumentRecord &document, DocumentView &view)
{
    view.EnableCommand(Cmd::mnuPlatformItem[ExportFormat::Pc], document.CurrentPlatform != LineEndForm::Pc);
    view.EnableCommand(Cmd::mnuPlatformItem[ExportFormat::Unix],
                       document.CurrentPlatform != LineEndForm::Unix);
    view.EnableCommand(Cmd::mnuPlatformItem[ExportFormat::Mac], document.CurrentPlatform != LineEndForm::Mac);
    const bool named = !document.CurrentFile.isEmpty();
    for (const FileOperation operation : {FileOperation::Move, FileOperation::Copy, FileOperation::Rename,
                                          FileOperation::Delete, FileOperation::Properties})
        view.EnableCommand(Cmd::mnuFSO[operation], named);
    view.EnableCommand(Cmd::mnuBackupNow, named);
}

} // namespace zelvane
