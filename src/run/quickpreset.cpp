// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/quickpreset.h"

#include "platform/parameters.h"
#include "run/presetbuttons.h"
#include "run/presetkeys.h"
#include "shell/documentkind.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString QuickPresetCaption()
{
    return u"Run "_s + ApplicationTitle() + u" Preset"_s;
}

QString QuickPresetFileLine(const EditorContext &context)
{
    const DocumentRecord &document = context.document;
    return BareFileName(document.CurrentFile) + u" ("_s +
           KindLabel(document.DocumentKind, document, context.desktop) + u')';
}

QuickPresetPreview PreviewOf(const PresetKey &name, const EditorContext &context)
{
    const PresetStore store(context.settings);
    const PresetImage image = ImageOf(store.Text(name, PresetKeys::Image));
    return {.tooltip = store.Text(name, PresetKeys::Tooltip, {}), .imageNumber = image.number};
}

void EditFromChooser(EditorContext &context)
{
    const QString &document = context.document.CurrentFile;
    const int result =
        context.desktop.ShellRun({.verb = u"open"_s,
                                  .file = QDir::toNativeSeparators(QCoreApplication::applicationFilePath()),
                                  .parameters = QuoteFile(document)});
    if (result <= ShellFailure)
        context.desktop.MessageBox({.text = u"Cannot start "_s + document, .icon = BoxIcon::Warning});
}

} // namespace zelvane
