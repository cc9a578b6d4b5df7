// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/printtext.h"

#include "platform/printing.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void PrintText(const EditorContext &editor, const StyledSource &coloured, Printing &printing)
{
    const QString &current = editor.document.CurrentFile;
    const TextSpan selection = editor.text.Selection();
    try {
        const PrintedPart part = printing.ShowPrinter(
            current.isEmpty() ? u"Untitled"_s : BareFileName(current), !selection.IsEmpty());
        const TextSpan span = part == PrintedPart::Selection ? selection : TextSpan{0, editor.text.Length()};
        printing.Print(coloured.Styled(span.start, span.end));
    } catch (const RunTimeError &error) {
        if (error.Number() != ErrorNumber::DialogCancelled)
            throw;
    }
}

} // namespace zelvane
