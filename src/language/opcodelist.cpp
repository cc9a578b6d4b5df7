// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/opcodelist.h"

#include "language/opcodeset.h"
#include "platform/textfile.h"
#include "shell/errorreport.h"
#include "shell/separators.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool OpcodeWalk::Next()
{
    while (m_position < m_text.size() && IsSeparator(m_text[m_position]))
        ++m_position;
    if (m_position == m_text.size())
        return false;
    const qsizetype start = m_position;
    while (m_position < m_text.size() && !IsSeparator(m_text[m_position]))
        ++m_position;
    if (m_position < m_text.size())
        m_length = m_position - start;
    m_word = m_text.sliced(start, std::min(m_length, m_text.size() - start));
    return true;
}

OpcodeList::OpcodeList() : m_words(u" "_s), m_opcodes(QString()), m_set(std::make_unique<OpcodeSet>()) {}

OpcodeList::~OpcodeList() = default;

void OpcodeList::Add(const QString &text)
{
    m_words.reserve(m_words.size() + text.size() + 1);
    for (OpcodeWalk walk(text); walk.Next();) {
        m_words += u' ';
        m_words += walk.Word();
        m_opcodes += walk.Word().toString();
    }

    // The first two blanks and the word behind the last blank stand outside: what is left are the words that
    // have a blank on either side.
    std::vector<QStringView> found;
    found.reserve(m_opcodes.size());
    QStringView rest = QStringView(m_words).sliced(1);
    while (!rest.isEmpty()) {
        rest = rest.sliced(1);
        const qsizetype blank = rest.indexOf(u' ');
        if (blank < 0)
            break;
        found.push_back(rest.first(blank));
        rest = rest.sliced(blank);
    }
    m_set->Assign(found);
}

bool OpcodeList::Contains(QStringView word) const
{
    // A text with blanks, or none at all, is no word, but it may stand in the string nonetheless.
    if (word.isEmpty() || word.contains(u' '))
        return m_words.contains(u' ' + word.toString() + u' ');
    return m_set->Contains(word);
}

QString OpcodeFile(const QString &folder)
{
    return QDir(folder).filePath(u"opcodes.txt"_s);
}

void LoadOpcodes(OpcodeList &list, const QString &folder, Desktop &desktop)
{
    try {
        list.Add(ReadTextFile(OpcodeFile(folder)));
    } catch (const RunTimeError &error) {
        ReportError(desktop, error);
    }
}

} // namespace zelvane
