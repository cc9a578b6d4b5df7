// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/longlinestyles.h"

#include <QChar>
#include <QString>

namespace zelvane
{

namespace
{

// In characters.
constexpr int StepLength = 2;

bool GoesOn(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80;
}

/// Whether a character looks the same wherever the text before it ends: a letter that joins others, or a mark
/// over one, does not.
bool StandsAlone(QByteArrayView character)
{
    if (character.size() == 1)
        return uchar(character.front()) < 0x80;
    const QString text = QString::fromUtf8(character);
    if (text.size() != 1 || text.front().isMark() || text.front().category() == QChar::Other_Format)
        return false;
    switch (text.front().script()) {
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
        return true;
    default:
        return false;
    }
}

} // namespace

void StepAlternation::Apply(QByteArrayView text, char *styles)
{
    for (qsizetype at = 0; at < text.size();) {
        qsizetype next = at + 1;
        while (next < text.size() && GoesOn(text[next]))
            ++next;
        if (m_taken >= StepLength && StandsAlone(text.sliced(at, next - at))) {
            m_bit ^= StepBit;
            m_taken = 0;
        }
        ++m_taken;
        for (; at < next; ++at)
            styles[at] = char(ClassOf(styles[at]) | m_bit);
    }
}

} // namespace zelvane
