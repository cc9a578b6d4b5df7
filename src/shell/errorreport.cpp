// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/errorreport.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Escapes what would end a field of a mail address or start an escape; the desktop escapes what else an
/// address may not hold, so that the text of ordinary subjects stays readable here.
QString MailField(const QString &text)
{
    QString field;
    for (const QChar c : text) {
        if (c < u' ' || c == u'%' || c == u'&' || c == u'#' || c == u'+')
            field += u"%%1"_s.arg(uint(c.unicode()), 2, 16, QChar(u'0')).toUpper();
        else
            field += c;
    }
    return field;
}

/// Opens an address; when the shell cannot, tells so and leaves `remainder` on the clipboard.
void OpenAddress(Desktop &desktop, const QString &address, const QString &failure, const QString &remainder)
{
    if (desktop.ShellRun({.verb = u"open"_s, .file = address}) > ShellFailure)
        return;
    desktop.MessageBox({.text = failure, .icon = BoxIcon::Warning});
    desktop.SetClipboardText(remainder);
}

} // namespace

void ReportError(Desktop &desktop, const RunTimeError &error, const QString &context)
{
    const QString number = QString::number(int(error.Number()));
    const QString text = u"An error has occurred:\n"_s + context + u'\n' + error.Description() + u" ("_s +
                         number + u")\nError source: "_s + error.Source() +
                         u"\n\nDo you want to report this bug via email?"_s;
    if (desktop.MessageBox({.text = text, .icon = BoxIcon::Critical, .buttons = BoxButtons::OkCancel}) !=
        BoxAnswer::Ok)
        return;
    try {
        SendMail(desktop, QString::fromUtf16(AuthorAddress),
                 ApplicationTitle() + u" v"_s + ProgramVersion() + u" bug report"_s,
                 error.Description() + u" ("_s + number + u"); Error source: "_s + error.Source());
    } catch (const RunTimeError &) {
        // The clipboard could not be reached: the user has read the address, and a report needs no report.
    }
}

bool Guarded(Desktop &desktop, const std::function<void()> &work)
{
    try {
        work();
        return true;
    } catch (const RunTimeError &error) {
        ReportError(desktop, error);
    }
    return false;
}

void SendMail(Desktop &desktop, const QString &address, const QString &subject, const QString &body)
{
    OpenAddress(
        desktop, u"mailto:"_s + address + u"?subject="_s + MailField(subject) + u"&body="_s + MailField(body),
        u"Cannot start Mail program. The following E-mail address will be copied to Clipboard:\n\n"_s +
            address + u"\n\nPlease run your Mail program manually then paste text in the Address field."_s,
        address);
}

void OpenWebAddress(Desktop &desktop, const QString &url)
{
    OpenAddress(desktop, url,
                u"Cannot start Browser. The following URL will be copied to Clipboard:\n\n"_s + url +
                    u"\n\nPlease run your Internet Browser manually then paste text in the Address field."_s,
                url);
}

} // namespace zelvane
