// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/sections.h"

#include "language/highlighter.h"
#include "language/languagekeys.h"
#include "language/scanner.h"
#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "platform/samefile.h"
#include "platform/textbuffer.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/documentlifecycle.h"
#include "shell/documentsteps.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/findtext.h"
#include "shell/kindsearch.h"
#include "shell/lineends.h"
#include "shell/loadedtext.h"
#include "shell/settings.h"
#include "shell/splitpath.h"
#include "shell/textops.h"
#include "shell/typeenable.h"

#include <algorithm>
#include <new>
#include <QChar>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString ExtractTag(const QString &text, const QString &tag)
{
    const QString opening = u'<' + tag + u'>';
    const qsizetype open = text.indexOf(opening);
    const qsizetype close = text.indexOf(u"</"_s + tag + u'>');
    if (open < 0 || close < 0)
        return {};
    const qsizetype start = open + opening.size();
    if (close < start)
        throw RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);
    return text.sliced(start, close - start);
}

QString UnifiedText(const QString &orchestra, const QString &score)
{
    return u"<CsoundSynthesizer>\n"
           "<CsOptions>\n\n</CsOptions>\n"
           "<CsInstruments>\n"_s +
           orchestra + u"\n</CsInstruments>\n<CsScore>\n"_s + score + u"\n</CsScore>\n</CsoundSynthesizer>"_s;
}

namespace
{

/// Whether a text is ASCII without a mark, which is the same bytes in Windows-1252 and in UTF-8.
bool IsPlain(const QString &text, const TextEncoding &encoding)
{
    return encoding == TextEncoding() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 128; });
}

} // namespace

PieceSections::PieceSections(EditorContext &editor, DocumentLifecycle &documents, DocumentView &view,
                             DocumentSteps &steps, Highlighter &highlighter)
    : m_editor(editor), m_documents(documents), m_view(view), m_steps(steps), m_highlighter(highlighter)
{
}

void PieceSections::mnuOrchestra()
{
    Go({.kind = FileKind::Orchestra,
        .opening = u"<CsInstruments>"_s,
        .missing = u"There is no <CsInstruments> tag in this file."_s,
        .ours = m_orchestraSide,
        .other = m_scoreSide});
}

void PieceSections::mnuScore()
{
    Go({.kind = FileKind::Score,
        .opening = u"<CsScore>"_s,
        .missing = u"There is no <CsScore> tag in this file."_s,
        .ours = m_scoreSide,
        .other = m_orchestraSide});
}

void PieceSections::Go(const Way &way)
{
    if (m_editor.document.CurrentFile.isEmpty())
        return;
    if (m_editor.document.DocumentKind == FileKind::Unified)
        GoToTag(way);
    else
        GoToFile(way);
}

void PieceSections::GoToTag(const Way &way)
{
    const qsizetype hit = FindText(m_editor.text.Text(), way.opening, 0, -1, FindAnywhere);
    if (hit >= 0)
        PutCaretOnTop(m_editor.text, hit);
    else
        m_editor.desktop.MessageBox({.text = way.missing, .icon = BoxIcon::Information});
}

void PieceSections::GoToFile(const Way &way)
{
    const DocumentRecord &document = m_editor.document;
    const QString companion = SearchKindFile(way.kind, false, false, m_editor);
    if (companion.isEmpty() || companion == document.CurrentFile)
        return;
    // When it cannot be saved, the opening asks about the text once more.
    if (document.Modified && m_editor.settings.Flag(Keys::SaveOnSwitch))
        m_editor.operations.SaveFile(document.CurrentFile);
    way.ours = {document.CurrentFile, qint32(m_editor.text.Selection().start)};
    // The list of related files stays as it is, since both files belong to it.
    m_editor.operations.OpenFile(companion, OpenOrigin::RelatedFiles);
    if (m_editor.settings.Flag(Keys::RememberCaret) &&
        document.CurrentFile.compare(way.other.file, Qt::CaseInsensitive) == 0)
        PutCaretOnTop(m_editor.text, way.other.caret);
}

void PieceSections::mnuCSD(Conversion conversion)
{
    if (m_editor.document.CurrentFile.isEmpty()) {
        m_editor.desktop.MessageBox(
            {.text = u"You should save the current document first."_s, .icon = BoxIcon::Information});
        return;
    }
    try {
        if (conversion == Conversion::ToUnified)
            ConvertToUnified();
        else
            ConvertToPair();
    } catch (const std::bad_alloc &) {
        throw OutOfMemory();
    }
}

void PieceSections::ConvertToUnified()
{
    // Unsaved edits do not enter the unified text. Their copy keeps them; where there is none, the user is
    // asked as before any other loss.
    if (!m_documents.SecureText() && !m_editor.operations.QuerySave())
        return;
    // Both halves are here before the text on the screen goes.
    const std::optional<Half> orchestra = ReadHalf(FileKind::Orchestra);
    if (!orchestra)
        return;
    const std::optional<Half> score = ReadHalf(FileKind::Score);
    if (!score)
        return;
    const QString name = SplitPath(PathPart::WithoutExtension, m_editor.document.CurrentFile) + u".csd"_s;
    ShowUnified(name, UnifiedText(orchestra->text, score->text), CommonEncoding(*orchestra, *score));
}

TextEncoding PieceSections::CommonEncoding(const Half &orchestra, const Half &score)
{
    if (IsPlain(score.text, score.encoding))
        return orchestra.encoding;
    if (IsPlain(orchestra.text, orchestra.encoding) || orchestra.encoding == score.encoding)
        return score.encoding;
    return {};
}

std::optional<PieceSections::Half> PieceSections::ReadHalf(FileKind kind)
{
    const QString &current = m_editor.document.CurrentFile;
    const QString name = SearchKindFile(kind, false, false, m_editor);
    if (name.isEmpty()) {
        // Without a bare name nothing was looked for; else the user has cancelled.
        if (SplitPath(PathPart::BaseName, current).isEmpty())
            TellWhyNoHalfIsFound();
        return {};
    }
    LoadedText file = LoadTextFile(name);
    return Half{std::move(file.text), file.encoding};
}

void PieceSections::TellWhyNoHalfIsFound()
{
    const QString &current = m_editor.document.CurrentFile;
    // Where the document is not on disk, what reading it meets is told.
    ReadFileBytes(current);
    m_editor.desktop.MessageBox({.text = BareFileName(current) + u" has no name before its extension, so its "
                                                                 "other half cannot be found."_s,
                                 .icon = BoxIcon::Information});
}

void PieceSections::ShowUnified(const QString &name, const QString &text, const TextEncoding &encoding)
{
    {
        m_view.HideText();
        const auto shown = qScopeGuard([this] {
            m_view.ShowText();
            m_view.FocusText();
        });
        m_documents.NewText(FileKind::Unified, name, text, encoding);
        if (m_editor.settings.Flag(Keys::ColorComments)) {
            m_highlighter.HighlightRange(0, 0, int(ScanMode::Orchestra));
            m_documents.BringTextBack();
        }
    }
    TypeEnable(m_editor.document.DocumentKind, m_view);
    if (m_steps.outline->OutlineShown())
        m_steps.outline->BuildOutline();
}

void PieceSections::ConvertToPair()
{
    const QString text = m_editor.text.Text();
    const QString orchestra = ExtractTag(text, u"CsInstruments"_s);
    const QString score = ExtractTag(text, u"CsScore"_s);
    const QString &current = m_editor.document.CurrentFile;
    const QString file = SaveHalf(FileKind::Orchestra, orchestra, {current});
    if (file.isEmpty() || SaveHalf(FileKind::Score, score, {current, file}).isEmpty())
        return;
    const QString question = BareFileName(file) + u" successfully converted to Orchestra/Score pair. "
                                                  "Would you like to open Orchestra now?"_s;
    if (m_editor.desktop.MessageBox({.text = question, .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes)
        m_editor.operations.OpenFile(file);
}

QString PieceSections::SaveHalf(FileKind kind, const QString &text, const QStringList &taken)
{
    const QString file = AskForHalf(kind, taken);
    if (file.isEmpty())
        return {};
    TextEncoding encoding = m_editor.document.Encoding;
    WriteFileBytes(file, EncodeText(ToPcLineEnds(text + u'\n'), encoding));
    return file;
}

QString PieceSections::AskForHalf(FileKind kind, const QStringList &taken)
{
    const QString &current = m_editor.document.CurrentFile;
    const QString label = KindName(kind);
    const QString extension = FirstExtension(kind, m_editor.settings);
    const QString base = BareFileName(SplitPath(PathPart::WithoutExtension, current));
    const FileDialogRequest request{.title = u"Save "_s + label,
                                    .filters = {{label + u" Files"_s, u"*."_s + extension}},
                                    .folder = current,
                                    .fileName = base + u'.' + extension,
                                    .defaultExtension = extension};
    while (true) {
        const QString file = m_editor.desktop.SaveFileDialog(request).path;
        const auto other = std::find_if(taken.begin(), taken.end(),
                                        [&](const QString &name) { return IsSameFile(name, file); });
        if (file.isEmpty() || other == taken.end())
            return file;
        const QString refusal =
            BareFileName(*other) + u" holds the other half. Choose another file for the "_s + label + u'.';
        m_editor.desktop.MessageBox({.text = refusal, .icon = BoxIcon::Warning});
    }
}

} // namespace zelvane
