// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentlifecycle.h"

#include "platform/replacefile.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "shell/documentdialogs.h"
#include "shell/documentkind.h"
#include "shell/documentwriter.h"
#include "shell/errorreport.h"
#include "shell/loadedtext.h"
#include "shell/longlines.h"
#include "shell/recentlist.h"
#include "shell/splitpath.h"
#include "shell/statustexts.h"
#include "shell/typeenable.h"

#include <QCoreApplication>
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
           AskYesNo(m_desktop,
                    name + u" holds a line of "_s + QString::number(line) +
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
    if (name == m_document.CurrentFile && m_disk.FolderIsGone())
        return SaveElsewhere();
    const auto encoding = DocumentWriter(m_document, m_text, m_desktop, m_disk).Save(name);
    if (!encoding)
        return false;
    m_document.CurrentFile = name;
    m_document.Encoding = *encoding;
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

bool DocumentLifecycle::SaveElsewhere()
{
    if (!AskYesNo(m_desktop,
                  u"The folder of "_s + m_document.CurrentFile +
                      u" is not there any more. Save the text under another name?"_s,
                  BoxAnswer::Yes))
        return false;
    // A text that has had a file is not discarded by Cancel.
    const QString name = SaveBox();
    return !name.isEmpty() && SaveFile(name);
}

void DocumentLifecycle::WindowActivated()
{
    if (!m_disk.AskToLoad())
        return;
    const QString name = m_document.CurrentFile;
    if (!AskYesNo(m_desktop, name + u" was changed by another program. Load it again?"_s,
                  m_document.Modified ? BoxAnswer::No : BoxAnswer::Yes))
        m_disk.LeaveToSave();
    else if (MayShow(name))
        OpenNow(name, OpenOrigin::Command);
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
    return AskOpenPath(m_document, m_settings, m_desktop);
}

QString DocumentLifecycle::SaveBox()
{
    return AskSavePath(m_document, m_settings, m_desktop);
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
