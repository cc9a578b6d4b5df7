// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/documentcommands.h"

#include "shell/documentlifecycle.h"
#include "shell/exporttext.h"
#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

DocumentCommands::DocumentCommands(EditorContext &editor, DocumentLifecycle &documents, Commands &commands,
                                   std::function<void()> closeWindow, QObject *parent)
    : QObject(parent)
{
    commands.Bind(u"mnuNew"_s, [&documents](int) { documents.New(); });
    commands.Bind(u"mnuOpen"_s, [&documents](int) { documents.Open(); });
    commands.Bind(u"mnuSave"_s, [&documents](int) { documents.Save(); });
    commands.Bind(u"mnuSaveAs"_s, [&documents](int) { documents.SaveAs(); });
    commands.Bind(u"mnuNewInstance"_s, [&documents](int) { documents.NewInstance(); });
    commands.Bind(u"MRUfolder"_s, [&documents](int number) { documents.OpenRecent(number); });
    commands.Bind(u"mnuExit"_s, [closeWindow = std::move(closeWindow)](int) { closeWindow(); });
    for (const ExportFormat format : {ExportFormat::Pc, ExportFormat::Unix, ExportFormat::Mac})
        commands.Bind(u"mnuPlatformItem"_s, int(format),
                      [&editor, format](int) { ExportText(format, editor); });
    commands.OnMenuOpening(u"mnuFile"_s, [&documents] { documents.FileMenuOpening(); });
}

} // namespace zelvane
