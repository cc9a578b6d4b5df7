// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentlifecycle.h"

#include "platform/replacefile.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "platform/withoutblanks.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/errorreport.h"
#include "shell/lineends.h"
#include "shell/loadedtext.h"
#include "shell/longlines.h"
#include "shell/recentlist.h"
#include "shell/splitpath.h"
#include "shell/statustexts.h"
#include "shell/typeenable.h"

#include <new>
#include <QCoreApplication>
#include <QFileInfo>
#include <QScopeGuard>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString UnifiedSkeleton()
{
    return u"<CsoundSynthesizer>\n"
           "<CsOptions>\n\n</CsOptions>\n"
           "<CsInstruments>\n\n</CsInstruments>\n"
           "<CsScore>\n\n</CsScore>\n"
           "</CsoundSynthesizer>"_s;
}

/// Before one save; a program that goes on writing the file is not to be caught up with.
constexpr int MostQuestions = 3;

/// What a file dialog answered, cut at the first NUL.
QString UpToNul(const QString &answer)
{
    const qsizetype nul = answer.indexOf(u'\0');
    return nul < 0 ? answer : answer.first(nul);
}

} // namespace

void DocumentLifecycle::OpenFile(const QString &quotedName, OpenOrigin origin)
{
    const QString name = DropOuterQuotes(quotedName);
    if (!name.isEmpty() && MayReplaceBy(name) && MayShow(name))
        OpenNow(name, origin);
}

void DocumentLifecycle::OpenNow(const QString &name, OpenOrigin origin)
{
    bool loaded = false;
    try {
        m_loadFailed = false;
        auto failed = qScopeGuard([this] { m_loadFailed = true; });
        auto putBack = qScopeGuard([this] {
            m_view.ShowText();
            m_status.Show({});
            m_view.SetBusy(false);
        });
        m_view.SetBusy(true);
        m_status.Show(u"Loading..."_s);
        m_steps.history->navBeforeOpen();
        m_document.Modified = m_document.Loading = true;
        m_view.HideText();
        m_text.SetSelection(0, 0);
        Load(name);
        loaded = true;
        m_steps.colour->performSyntaxHighlight();
        m_view.ShowText();
        m_steps.outline->ApplySingleSelection();
        BuildOutline();
        BuildRelatedFiles(origin);
        m_document.Loading = false;
        m_view.FocusText();
        m_view.SelectionChanged();
        StatusFileInfo();
        m_document.Modified = false;
        m_view.EnableSaveButton(false);
        m_steps.sound->SearchSoundFile();
        TypeEnable();
        if (origin == OpenOrigin::Command)
            MRUsalva();
        m_steps.history->navAfterOpen();
        m_view.SetBusy(false);
        putBack.dismiss();
        failed.dismiss();
    } catch (const RunTimeError &error) {
        // Loading and Modified stay as the failure found them, so the next question about the text is asked;
        // the user's next edit ends that.
        if (loaded)
            throw;
        m_desktop.MessageBox({.text = u"Unable to open "_s + name + u".\n\n"_s + error.Description(),
                              .icon = BoxIcon::Warning});
    }
}

bool DocumentLifecycle::MayReplaceBy(const QString &name)
{
    if (name != m_document.CurrentFile)
        return QuerySave();
    return !m_document.Modified ||
           m_desktop.MessageBox({.text = u"Load last saved version of "_s + name + u'?',
                                 .icon = BoxIcon::Warning,
                                 .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes;
}

bool DocumentLifecycle::MayShow(const QString &name)
{
    const qsizetype line = UnwieldyLineOf(name);
    // Whoever has such a line of this file before him has been asked.
    const bool asked = line != 0 && name == m_document.CurrentFile && UnwieldyLineIn(m_text.Text()) != 0;
    return asked || MayShowLine(name, line);
}

bool DocumentLifecycle::MayShowText(const QString &name, QStringView text)
{
    return MayShowLine(name, UnwieldyLineIn(text));
}

bool DocumentLifecycle::MayShowLine(const QString &name, qsizetype line)
{
    return line == 0 ||
           AskYesNo(name + u" holds a line of "_s + QString::number(line) +
                        u" characters. So long a line is not shown well up to its end, and keys in it take "
                        "seconds. Open it?"_s,
                    BoxAnswer::No);
}

void DocumentLifecycle::Load(const QString &name)
{
    m_copy.Secure();
    LoadedText loaded = LoadTextFile(name);
    RemoveLeftBeside(name);
    m_text.LoadText(std::move(loaded.text));
    m_copy.Discarded();
    m_disk.Remember(name, std::move(loaded.picture));
    m_document.CurrentFile = name;
    m_document.CurrentPlatform = loaded.form;
    m_document.Encoding = loaded.encoding;
    m_document.HoldsNul = loaded.holdsNul;
    m_document.OfferedName.clear();
    ClassifyDocument(m_document, m_settings);
    ShowCaption();
}

void DocumentLifecycle::BuildOutline()
{
    if (!m_steps.outline->OutlineShown())
        return;
    m_status.Show(u"Code outline..."_s);
    m_steps.outline->BuildOutline();
}

void DocumentLifecycle::BuildRelatedFiles(OpenOrigin origin)
{
    if (!m_steps.relatedFiles->RelatedFilesShown() || origin == OpenOrigin::RelatedFiles)
        return;
    m_status.Show(u"Related files..."_s);
    m_steps.relatedFiles->BuildRelatedFiles();
}

bool DocumentLifecycle::SaveFile(const QString &name)
{
    if (name.isEmpty())
        return true;
    // The disk is looked at last: any question may stand for long.
    if (!MayRewriteLineEnds(name) || !MaySaveOver(name))
        return false;
    TextEncoding encoding = m_document.Encoding;
    try {
        Write(name, encoding);
    } catch (const RunTimeError &error) {
        TellUnsaved(name, error.Description());
        return false;
    }
    m_document.CurrentFile = name;
    m_document.Encoding = encoding;
    m_document.HoldsNul = false;
    m_document.OfferedName.clear();
    m_document.Modified = false;
    // A load that failed has left it set; from here on every change counts again.
    m_document.Loading = m_loadFailed = false;
    m_copy.Saved();
    m_view.EnableSaveButton(false);
    ClassifyDocument(m_document, m_settings);
    ShowCaption();
    StatusFileInfo();
    MRUsalva();
    return true;
}

void DocumentLifecycle::WindowActivated()
{
    if (!m_disk.AskToLoad())
        return;
    const QString name = m_document.CurrentFile;
    if (!AskYesNo(name + u" was changed by another program. Load it again?"_s,
                  m_document.Modified ? BoxAnswer::No : BoxAnswer::Yes))
        m_disk.LeaveToSave();
    else if (MayShow(name))
        OpenNow(name, OpenOrigin::Command);
}

bool DocumentLifecycle::MaySaveOver(const QString &name)
{
    if (name != m_document.CurrentFile)
        return true;
    // The answer holds for the state that was asked about: the file may have been written again meanwhile.
    for (int questions = 0; m_disk.AskToSave(); ++questions) {
        if (questions == MostQuestions) {
            TellUnsaved(name, u"Another program writes it again and again"_s);
            return false;
        }
        if (!AskYesNo(name + (m_disk.IsNew() ? u" exists already. Save over it?"_s
                                             : u" was changed by another program. Save over it?"_s),
                      BoxAnswer::No))
            return false;
        m_disk.LeaveToSave();
    }
    return true;
}

bool DocumentLifecycle::MayRewriteLineEnds(const QString &name)
{
    return !m_document.HoldsNul ||
           AskYesNo(name + u" holds NUL bytes: it may be no text. Saving it rewrites its line ends. "
                           "Save it?"_s,
                    BoxAnswer::No);
}

void DocumentLifecycle::Write(const QString &name, TextEncoding &encoding)
{
    try {
        const QByteArray bytes = EncodeText(ToPcLineEnds(m_text.Text()), encoding);
        WriteFileBytes(name, bytes);
        m_disk.Remember(name, bytes);
    } catch (const std::bad_alloc &) {
        throw RunTimeError(ErrorNumber::OutOfMemory, u"Out of memory"_s, name);
    }
}

void DocumentLifecycle::TellUnsaved(const QString &name, const QString &why)
{
    m_desktop.MessageBox({.text = u"Unable to save "_s + name + u".\n\n"_s + why, .icon = BoxIcon::Warning});
}

bool DocumentLifecycle::AskYesNo(const QString &question, BoxAnswer byDefault)
{
    return m_desktop.MessageBox({.text = question,
                                 .icon = BoxIcon::Warning,
                                 .buttons = BoxButtons::YesNo,
                                 .defaultAnswer = byDefault}) == BoxAnswer::Yes;
}

bool DocumentLifecycle::QuerySave()
{
    if (!m_document.Modified)
        return true;
    const BoxAnswer answer = m_desktop.MessageBox({.text = u"Save changes to "_s + CaptionName() + u'?',
                                                   .icon = BoxIcon::Warning,
                                                   .buttons = BoxButtons::YesNoCancel});
    if (answer == BoxAnswer::Yes)
        return WriteCurrent(); // a cancelled Save dialog discards the text, a failed write does not
    return answer == BoxAnswer::No;
}

void DocumentLifecycle::NewFile(FileKind kind, const QString &name)
{
    const FileKind chosen = kind == FileKind::Cancelled ? m_view.ChooseNewKind() : kind;
    if (chosen == FileKind::Cancelled)
        return;
    Begin(chosen, name, chosen == FileKind::Unified ? UnifiedSkeleton() : QString(), {});
}

void DocumentLifecycle::NewText(FileKind kind, const QString &name, const QString &text,
                                const TextEncoding &encoding)
{
    Begin(kind, name, text, encoding);
    TextChanged();
}

void DocumentLifecycle::Begin(FileKind kind, const QString &name, const QString &text,
                              const TextEncoding &encoding)
{
    m_copy.Secure();
    {
        auto putBack = qScopeGuard([this, loading = m_document.Loading, failed = m_loadFailed] {
            m_document.Loading = loading;
            m_loadFailed = failed;
        });
        m_document.Loading = true;
        m_loadFailed = false;
        m_text.LoadText(text);
        putBack.dismiss();
    }
    // Also where a load that failed has left it set: the new text is to be watched for changes.
    m_document.Loading = false;
    m_document.DocumentKind = kind;
    m_copy.Discarded();
    m_view.ApplyTextColours();
    m_disk.RememberNew(name);
    m_document.CurrentFile = name;
    m_document.Encoding = encoding;
    m_document.HoldsNul = text.contains(QChar(0));
    m_document.OfferedName.clear();
    ShowCaption();
    m_view.EnableSaveButton(false);
    m_status.Show({});
    m_document.Modified = false;
    TypeEnable();
    if (m_steps.outline->OutlineShown())
        m_steps.outline->BuildOutline();
    m_steps.relatedFiles->ClearRelatedFiles();
}

void DocumentLifecycle::OpenCopy(const CopyInfo &info, const QString &text, const TextEncoding &encoding,
                                 UnsavedCopy copy)
{
    const auto kind = FileKind(info.kind);
    const bool known = kind == FileKind::Orchestra || kind == FileKind::Score || kind == FileKind::Unified;
    Begin(known ? kind : KindOfPath(m_settings, info.name), {}, text, encoding);
    m_document.OfferedName = info.name;
    m_document.Modified = true;
    m_copy.Adopt(std::move(copy));
    m_steps.colour->performSyntaxHighlight();
    BringTextBack();
    m_view.EnableSaveButton(true);
    ShowCaption(u"*"_s);
    if (!info.name.isEmpty())
        m_status.Show(u"Not saved: "_s + info.name);
}

void DocumentLifecycle::KeepUnsaved()
{
    m_copy.Secure();
    m_copy.Discarded();
}

void DocumentLifecycle::FileMoved(const QString &name)
{
    m_disk.Follow(name);
    m_document.CurrentFile = name;
    const bool load = QuerySave();
    // Also before a load: where it fails, the text goes on under the new name.
    ClassifyDocument(m_document, m_settings);
    TypeEnable();
    ShowCaption(m_document.Modified ? u"*"_s : QString());
    MRUsalva();
    if (load)
        OpenNow(name, OpenOrigin::Command);
}

bool DocumentLifecycle::SecureText()
{
    return m_copy.Finish();
}

void DocumentLifecycle::BringTextBack()
{
    if (!m_document.Loading)
        return;
    m_document.Loading = false;
    m_view.ShowText();
    m_view.FocusText();
}

void DocumentLifecycle::InsertFile(const QString &quotedName)
{
    const QString name = DropOuterQuotes(quotedName);
    if (name.isEmpty())
        return;
    const QString inserted = ReadTextFile(name);
    const qsizetype start = m_text.Selection().start;
    m_text.ReplaceSelection(inserted);
    m_text.SetSelection(start, m_text.Selection().end);
    m_status.Show(m_status.Text());
    if (m_steps.outline->OutlineShown())
        m_steps.outline->BuildOutline();
}

void DocumentLifecycle::New()
{
    if (QuerySave())
        NewFile(FileKind::Cancelled, {});
}

void DocumentLifecycle::Open()
{
    OpenFile(OpenBox());
}

void DocumentLifecycle::Save()
{
    WriteCurrent();
}

bool DocumentLifecycle::WriteCurrent()
{
    return SaveFile(m_document.CurrentFile.isEmpty() ? SaveBox() : m_document.CurrentFile);
}

void DocumentLifecycle::SaveAs()
{
    SaveFile(SaveBox());
}

void DocumentLifecycle::NewInstance()
{
    const QString program = QCoreApplication::applicationFilePath();
    if (m_desktop.ShellRun({.verb = u"open"_s, .file = program, .parameters = u"/i"_s}) <= ShellFailure)
        throw RunTimeError(ErrorNumber::FileNotFound, u"Cannot start "_s + program);
}

void DocumentLifecycle::OpenRecent(int number)
{
    OpenFile(m_settings.GetSetting(Sections::RecentFiles, QString::number(number)));
}

void DocumentLifecycle::FileMenuOpening()
{
    EnableFileMenu(m_document, m_view);
}

QString DocumentLifecycle::OpenBox()
{
    const QStringList orchestra = KindExtensions(m_settings, FileKind::Orchestra);
    const QStringList score = KindExtensions(m_settings, FileKind::Score);
    const QStringList unified = KindExtensions(m_settings, FileKind::Unified);
    FileDialogRequest request;
    request.filters = {{u"All Csound types"_s, ExtensionPatterns(orchestra + score + unified)},
                       {u"Orchestra files"_s, ExtensionPatterns(orchestra)},
                       {u"Score files"_s, ExtensionPatterns(score)},
                       {u"Unified Format files"_s, ExtensionPatterns(unified)},
                       {u"Text files"_s, u"*.txt"_s},
                       {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                       {u"All files"_s, u"*.*"_s}};
    const int filter = m_settings.Integer(Keys::FilterIndex);
    request.filterIndex = filter >= 0 && filter < int(request.filters.size()) ? filter : 0;
    request.folder = m_document.CurrentFile.isEmpty() ? m_settings.Text(Keys::OpenFolder, QString())
                                                      : m_document.CurrentFile;
    const FileDialogAnswer answer = m_desktop.OpenFileDialog(request);
    const QString picked = UpToNul(answer.path);
    // The blanks may belong to the name of a file.
    const QString path = QFileInfo::exists(picked) ? picked : WithoutBlanks(picked).toString();
    if (path.isEmpty())
        return {};
    // A store that cannot be written is told, and keeps nobody from his files; so below.
    Guarded(m_desktop, [&] {
        m_settings.InOneStep([&] {
            m_settings.SaveNumber(Keys::FilterIndex, answer.filterIndex);
            m_settings.SaveText(Keys::OpenFolder, SplitPath(PathPart::Folder, path));
        });
    });
    return path;
}

QString DocumentLifecycle::SaveBox()
{
    const QString &current =
        m_document.CurrentFile.isEmpty() ? m_document.OfferedName : m_document.CurrentFile;
    QStringList extensions = KindExtensions(m_settings, m_document.DocumentKind);
    if (extensions.isEmpty())
        extensions = SplitExtensions(BareExtension(current));
    FileDialogRequest request;
    if (!extensions.isEmpty())
        request.filters.push_back(
            {KindLabel(m_document.DocumentKind, m_document, m_desktop), ExtensionPatterns(extensions)});
    request.filters.push_back({u"All files"_s, u"*.*"_s});
    request.fileName = BareFileName(current);
    request.defaultExtension = current.isEmpty() ? extensions.value(0) : BareExtension(current);
    // A text that was left by another editor goes back where it came from.
    request.folder = m_document.CurrentFile.isEmpty() && !current.isEmpty()
                         ? current
                         : m_settings.Text(Keys::SaveFolder, current);
    const QString picked = UpToNul(m_desktop.SaveFileDialog(request).path);
    // The dialog has asked about overwriting the name as it was picked: another file must not be meant by
    // trimming.
    const QString trimmed = WithoutBlanks(picked).toString();
    const QString path = QFileInfo::exists(picked) || QFileInfo::exists(trimmed) ? picked : trimmed;
    if (!path.isEmpty())
        Guarded(m_desktop, [&] { m_settings.SaveText(Keys::SaveFolder, SplitPath(PathPart::Folder, path)); });
    return path;
}

void DocumentLifecycle::MRUsalva()
{
    Guarded(m_desktop, [&] { AddRecentFile(m_settings, m_document.CurrentFile); });
    MRUAggiornaMenu();
}

void DocumentLifecycle::MRUAggiornaMenu()
{
    m_view.ShowRecentFiles(RecentItems(m_settings, Sections::RecentFiles, RecentFileCount));
}

void DocumentLifecycle::StatusFileInfo()
{
    if (!m_document.CurrentFile.isEmpty())
        m_status.Show(DocumentInfoText(m_document, m_text, m_desktop));
}

void DocumentLifecycle::StatusInfo(const QString &name)
{
    m_status.Show(FileInfoLine(name, m_desktop));
}

void DocumentLifecycle::TypeEnable()
{
    zelvane::TypeEnable(m_document.DocumentKind, m_view);
}

void DocumentLifecycle::TextChanged()
{
    if (m_document.Loading && !m_loadFailed)
        return;
    m_copy.Edited();
    if (m_document.Modified && !m_loadFailed)
        return;
    m_document.Loading = m_loadFailed = false;
    m_document.Modified = true;
    m_view.EnableSaveButton(true);
    ShowCaption(u"*"_s);
}

QString DocumentLifecycle::CaptionName() const
{
    return m_document.CurrentFile.isEmpty() ? u"Untitled"_s : m_document.CurrentFile;
}

void DocumentLifecycle::ShowCaption(const QString &mark)
{
    m_view.ShowCaption(ApplicationTitle() + u" - "_s + CaptionName() + mark + u" ("_s +
                       KindLabel(m_document.DocumentKind, m_document, m_desktop) + u')');
}

QString RecentFileCaption(int number, const QString &path)
{
    return u'&' + QString::number(number) + u' ' + QString(path).replace(u"&"_s, u"&&"_s);
}

} // namespace zelvane
