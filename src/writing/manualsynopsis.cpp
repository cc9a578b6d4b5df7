// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/manualsynopsis.h"

#include <algorithm>
#include <QFile>
#include <QIODevice>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A page is small; what is larger than this is something else.
constexpr qint64 LargestPage = 4 * 1024 * 1024;

/// A character reference without "&" and ";". @return nothing for one that is not known
QString Character(QStringView reference)
{
    static const std::pair<QStringView, char16_t> names[] = {
        {u"amp", u'&'}, {u"lt", u'<'}, {u"gt", u'>'}, {u"quot", u'"'}, {u"apos", u'\''}, {u"nbsp", u' '}};
    for (const auto &[name, c] : names) {
        if (reference == name)
            return QString(QChar(c));
    }
    if (!reference.startsWith(u'#'))
        return {};
    reference = reference.sliced(1);
    bool isNumber = false;
    const bool hex = reference.startsWith(u'x');
    const char32_t code = reference.sliced(hex ? 1 : 0).toUInt(&isNumber, hex ? 16 : 10);
    return isNumber && code >= 32 && code <= QChar::LastValidCodePoint ? QString::fromUcs4(&code, 1)
                                                                       : QString();
}

/// The text without tags, character references put in.
QString PlainText(QStringView html)
{
    QString plain;
    for (qsizetype at = 0; at < html.size(); ++at) {
        if (html[at] == u'<') {
            const qsizetype close = html.indexOf(u'>', at);
            if (close < 0)
                break;
            at = close;
            continue;
        }
        if (html[at] == u'&') {
            const qsizetype close = html.sliced(at, std::min<qsizetype>(html.size() - at, 12)).indexOf(u';');
            const QString c = close < 0 ? QString() : Character(html.sliced(at + 1, close - 1));
            if (!c.isEmpty()) {
                plain += c;
                at += close;
                continue;
            }
        }
        plain += html[at];
    }
    return plain;
}

} // namespace

std::vector<Synopsis> ReadManualPage(const QString &html, const QString &opcode)
{
    static const QString opening = u"<pre class=\"synopsis\">"_s, closing = u"</pre>"_s;
    std::vector<Synopsis> forms;
    for (qsizetype at = 0; (at = html.indexOf(opening, at)) >= 0;) {
        at += opening.size();
        const qsizetype end = html.indexOf(closing, at);
        if (end < 0)
            break;
        if (auto form = ReadSynopsis(PlainText(QStringView(html).sliced(at, end - at)), opcode))
            forms.push_back(std::move(*form));
        at = end;
    }
    return forms;
}

void ManualSynopses::SetHelpFile(const QString &helpFile)
{
    if (helpFile == m_helpFile)
        return;
    m_helpFile = helpFile;
    m_manual = helpFile.isEmpty() ? std::nullopt : ReadManual(helpFile);
    m_read.clear();
}

const std::vector<Synopsis> &ManualSynopses::Forms(const QString &opcode)
{
    if (const auto read = m_read.constFind(opcode); read != m_read.constEnd())
        return *read;
    std::vector<Synopsis> forms;
    if (m_manual && m_manual->IsLocal()) {
        const QString page = m_manual->PageOf(opcode);
        QFile file(page);
        if (page != m_manual->ContentsPage() && file.size() <= LargestPage && file.open(QIODevice::ReadOnly))
            forms = ReadManualPage(QString::fromUtf8(file.readAll()), opcode);
    }
    return *m_read.insert(opcode, std::move(forms));
}

} // namespace zelvane
