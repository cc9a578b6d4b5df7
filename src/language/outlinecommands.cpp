// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outlinecommands.h"

#include "platform/numbers.h"
#include "platform/textfile.h"
#include "shell/documentkind.h"
#include "shell/lineends.h"
#include "shell/splitpath.h"
#include "shell/textops.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A caret that is there already stays, and so does what is selected from there on.
void ShowPlace(TextBuffer &text, qsizetype offset)
{
    if (text.Selection().start != offset)
        PutCaretOnTop(text, offset);
}

QString TextWithLineEnd(const TextBuffer &text, const TextSpan &instrument)
{
    return text.TextRange(instrument.start, std::min(instrument.end + 1, text.Length()));
}

/// The full path of an include file: as it is named, else beside the document, else in the folder of
/// includes. Empty, and told, when it is in none of them.
QString FindInclude(const EditorContext &editor, const QString &name)
{
    const QString includes = editor.desktop.EnvironmentVariable(u"INCDIR"_s);
    QStringList paths{name};
    if (!editor.document.CurrentFile.isEmpty())
        paths += QDir(SplitPath(PathPart::Folder, editor.document.CurrentFile)).filePath(name);
    if (!includes.isEmpty())
        paths += QDir(includes).filePath(name);
    for (const QString &path : paths) {
        const QFileInfo file(path);
        if (file.isFile())
            return file.absoluteFilePath();
    }
    editor.desktop.MessageBox({.text = u"Cannot find "_s + name, .icon = BoxIcon::Warning});
    return {};
}

} // namespace

void ShowOutlineNode(EditorContext &editor, const Outline &outline, qsizetype place)
{
    const OutlineNode node = outline.At(place);
    if (node.isRoot) {
        if (node.kind != OutlineKind::Tag)
            editor.status.Show(QString::number(outline.ChildCount(place)) + u' ' + outline.Caption(place));
    } else if (node.kind == OutlineKind::Instrument) {
        const TextSpan instrument = outline.Instrument(node.tag);
        ShowPlace(editor.text, instrument.start);
        const qsizetype lines =
            editor.text.LineOfOffset(instrument.end) - editor.text.LineOfOffset(instrument.start) + 1;
        editor.status.Show(u"Instrument: %1 lines - %2 characters"_s.arg(lines).arg(instrument.Length()));
    } else {
        ShowPlace(editor.text, node.tag);
        editor.status.Show(outline.ShownCaption(place) + u" @ character "_s + QString::number(node.tag));
    }
}

qsizetype InstrumentOfNode(const Outline &outline, qsizetype place)
{
    const OutlineNode node = outline.At(place);
    if (node.isRoot)
        return 0;
    if (node.kind == OutlineKind::Label)
        return outline.At(node.parent).number;
    return node.kind == OutlineKind::Instrument ? node.number : 0;
}

void CopyInstrument(EditorContext &editor, const TextSpan &instrument)
{
    editor.desktop.SetClipboardText(TextWithLineEnd(editor.text, instrument));
}

void ExportInstrument(EditorContext &editor, const TextSpan &instrument, const QString &caption)
{
    const QStringList extensions = KindExtensions(editor.settings, FileKind::Orchestra);
    const QString extension = extensions.value(0);
    const FileDialogAnswer answer = editor.desktop.SaveFileDialog(
        {.filters = {{KindName(FileKind::Orchestra), ExtensionPatterns(extensions)}},
         .folder = editor.document.CurrentFile,
         .fileName = u"Instr"_s + NumberText(Val(caption)) + u'.' + extension,
         .defaultExtension = extension});
    if (answer.path.isEmpty())
        return;
    TextEncoding encoding = editor.document.Encoding;
    WriteFileBytes(answer.path,
                   EncodeText(ToPcLineEnds(TextWithLineEnd(editor.text, instrument) + u'\n'), encoding));
}

void OpenInclude(EditorContext &editor, const QString &name)
{
    const QString path = FindInclude(editor, name);
    if (!path.isEmpty())
        editor.operations.OpenFile(path);
}

void InsertInclude(EditorContext &editor, const QString &name, qsizetype offset)
{
    const QString path = FindInclude(editor, name);
    if (path.isEmpty())
        return;
    editor.text.SetSelection(GetLineStart(editor.text, offset), GetLineEnd(editor.text, offset));
    editor.operations.InsertFile(path);
}

} // namespace zelvane
