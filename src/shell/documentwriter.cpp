// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentwriter.h"

#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "platform/textbuffer.h"
#include "platform/textfile.h"
#include "shell/changedondisk.h"
#include "shell/document.h"
#include "shell/documentdialogs.h"
#include "shell/lineends.h"

#include <new>
#include <QByteArray>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Before one save; a program that goes on writing the file is not to be caught up with.
constexpr int MostQuestions = 3;

} // namespace

std::optional<TextEncoding> DocumentWriter::Save(const QString &name)
{
    // The disk is looked at last: any question may stand for long.
    if (!MayRewriteLineEnds(name) || !MaySaveOver(name))
        return {};
    try {
        return Write(name);
    } catch (const RunTimeError &error) {
        TellUnsaved(name, error.Description());
        return {};
    }
}

bool DocumentWriter::MaySaveOver(const QString &name)
{
    if (name != m_document.CurrentFile)
        return true;
    // The answer holds for the state that was asked about: the file may have been written again meanwhile.
    for (int questions = 0; m_disk.AskToSave(); ++questions) {
        if (questions == MostQuestions) {
            TellUnsaved(name, u"Another program writes it again and again"_s);
            return false;
        }
        if (!AskAboutState(name))
            return false;
        m_disk.LeaveToSave();
    }
    return true;
}

bool DocumentWriter::AskAboutState(const QString &name)
{
    if (m_disk.IsGone())
        return AskYesNo(m_desktop, name + u" is not there any more. Write it again?"_s, BoxAnswer::Yes);
    return AskYesNo(m_desktop,
                    name + (m_disk.IsNew() ? u" exists already. Save over it?"_s
                                           : u" was changed by another program. Save over it?"_s),
                    BoxAnswer::No);
}

bool DocumentWriter::MayRewriteLineEnds(const QString &name)
{
    return !m_document.HoldsNul ||
           AskYesNo(m_desktop,
                    name + u" holds NUL bytes: it may be no text. Saving it rewrites its line ends. "
                           "Save it?"_s,
                    BoxAnswer::No);
}

TextEncoding DocumentWriter::Write(const QString &name)
{
    try {
        TextEncoding encoding = m_document.Encoding;
        const QByteArray bytes = EncodeText(ToPcLineEnds(m_text.Text()), encoding);
        WriteFileBytes(name, bytes);
        m_disk.Remember(name, bytes);
        return encoding;
    } catch (const std::bad_alloc &) {
        throw OutOfMemory(name);
    }
}

void DocumentWriter::TellUnsaved(const QString &name, const QString &why)
{
    m_desktop.MessageBox({.text = u"Unable to save "_s + name + u".\n\n"_s + why, .icon = BoxIcon::Warning});
}

} // namespace zelvane
