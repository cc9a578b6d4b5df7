// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/exporttext.h"

#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/lineends.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void ExportText(ExportFormat format, const EditorContext &editor)
{
    QString (*convert)(QStringView) = nullptr;
    LineEndForm form = LineEndForm::Pc;
    switch (format) {
    case ExportFormat::Pc:
        convert = ToPcLineEnds;
        form = LineEndForm::Pc;
        break;
    case ExportFormat::Unix:
        convert = ToUnixLineEnds;
        form = LineEndForm::Unix;
        break;
    case ExportFormat::Mac:
        convert = ToMacLineEnds;
        form = LineEndForm::Mac;
        break;
    case ExportFormat::Rtf:
    case ExportFormat::Html:
        return;
    }

    const QString &current = editor.document.CurrentFile;
    const FileDialogAnswer answer =
        editor.desktop.SaveFileDialog({.title = u"Export to "_s + PlatformName(form) + u" format"_s,
                                       .folder = SplitPath(PathPart::Folder, current),
                                       .fileName = current,
                                       .defaultExtension = BareExtension(current)});
    if (answer.path.isEmpty())
        return;
    TextEncoding encoding = editor.document.Encoding;
    WriteFileBytes(answer.path, EncodeText(convert(editor.text.Text()), encoding));
}

} // namespace zelvane
