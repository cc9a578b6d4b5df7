// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/exporttext.h"

#include "platform/desktop.h"
#include "platform/fileoperations.h"
#include "platform/samefile.h"
#include "platform/styledtext.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/documentview.h"
#include "shell/lineends.h"
#include "shell/splitpath.h"
#include "texttools/htmlwriter.h"
#include "texttools/rtfwriter.h"

#include <optional>
#include <QByteArray>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// How one of the formats is offered.
struct Offer {
    QString name;
    std::vector<FileFilter> filters = {};
    QString extension = {}; ///< instead of the document's own; empty to leave that
};

Offer OfferOf(ExportFormat format)
{
    switch (format) {
    case ExportFormat::Pc:
        return {.name = PlatformName(LineEndForm::Pc)};
    case ExportFormat::Unix:
        return {.name = PlatformName(LineEndForm::Unix)};
    case ExportFormat::Mac:
        return {.name = PlatformName(LineEndForm::Mac)};
    case ExportFormat::Rtf:
        return {
            .name = u"RTF"_s, .filters = {{u"RTF (Rich Text Format)"_s, u"*.rtf"_s}}, .extension = u"rtf"_s};
    case ExportFormat::Html:
        return {.name = u"HTML"_s, .filters = {{u"HTML"_s, u"*.html;*.htm"_s}}, .extension = u"html"_s};
    }
    return {};
}

QString AskForFile(const Offer &offer, const EditorContext &editor)
{
    const QString &current = editor.document.CurrentFile;
    FileDialogRequest request{.title = u"Export to "_s + offer.name + u" format"_s,
                              .filters = offer.filters,
                              .folder = SplitPath(PathPart::Folder, current),
                              .fileName = current,
                              .defaultExtension = BareExtension(current)};
    if (!offer.extension.isEmpty()) {
        request.fileName =
            (current.isEmpty() ? u"Untitled"_s : SplitPath(PathPart::WithoutExtension, current)) + u'.' +
            offer.extension;
        request.defaultExtension = offer.extension;
    }
    return editor.desktop.SaveFileDialog(request).path;
}

/// The text with its line ends in another form, in the document's encoding.
QByteArray InLineEnds(QString (*convert)(QStringView), const EditorContext &editor)
{
    TextEncoding encoding = editor.document.Encoding;
    return EncodeText(convert(editor.text.Text()), encoding);
}

/// Asks before the colours' markup takes the place of the document itself, whatever name leads to its file.
bool MayReplaceDocument(const QString &path, const EditorContext &editor)
{
    if (!QFileInfo::exists(path) || !IsSameFile(path, editor.document.CurrentFile))
        return true;
    return editor.desktop.MessageBox(
               {.text = u"This is the file of the document itself. Replace its text with the exported one?"_s,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNo,
                .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

/// The coloured text. @return no value when the user stopped it
std::optional<QByteArray> Coloured(ExportFormat format, const QString &path, const EditorContext &editor,
                                   const ExportParts &parts)
{
    const bool html = format == ExportFormat::Html;
    const QString &current = editor.document.CurrentFile;
    const StyledText text = parts.coloured.Styled(0, editor.text.Length());
    const WriteProgress goOn = [&parts](qint64 done, qint64 total) {
        return parts.progress.GoOn(done, total);
    };
    parts.progress.Begin(u"Writing "_s + BareFileName(path) + u"..."_s);
    const auto end = qScopeGuard([&parts] { parts.progress.End(); });
    return html ? HtmlDocument(text, current.isEmpty() ? u"Untitled"_s : BareFileName(current), goOn)
                : RtfDocument(text, goOn);
}

} // namespace

void ExportText(ExportFormat format, const EditorContext &editor, const ExportParts &parts)
{
    const QString path = AskForFile(OfferOf(format), editor);
    if (path.isEmpty())
        return;
    switch (format) {
    case ExportFormat::Pc:
        WriteFileBytes(path, InLineEnds(ToPcLineEnds, editor));
        return;
    case ExportFormat::Unix:
        WriteFileBytes(path, InLineEnds(ToUnixLineEnds, editor));
        return;
    case ExportFormat::Mac:
        WriteFileBytes(path, InLineEnds(ToMacLineEnds, editor));
        return;
    case ExportFormat::Rtf:
    case ExportFormat::Html:
        break;
    }
    if (!MayReplaceDocument(path, editor))
        return;
    const bool tells = format == ExportFormat::Html;
    if (tells)
        editor.status.Show(u"Converting to HTML..."_s);
    parts.view.SetBusy(true);
    const auto ready = qScopeGuard([&] {
        parts.view.SetBusy(false);
        if (tells)
            editor.status.Show({});
    });
    if (const std::optional<QByteArray> bytes = Coloured(format, path, editor, parts))
        WriteFileBytes(path, *bytes);
}

} // namespace zelvane
