// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzinput.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::fuzz
{

namespace
{

/// What the bytes from 0x80 on stand for. The kept corpora are written in these: change no row, add behind.
const QString &Piece(quint8 byte)
{
    static const QString pieces[] = {
        // Csound's text.
        u"/*"_s,
        u"*/"_s,
        u"<CsInstruments>"_s,
        u"</CsInstruments>"_s,
        u"<CsScore>"_s,
        u"</CsScore>"_s,
        u"<CsoundSynthesizer>"_s,
        u"</CsoundSynthesizer>"_s,
        u"<CsOptions>"_s,
        u"</CsOptions>"_s,
        u"instr 1"_s,
        u"endin"_s,
        u"opcode "_s,
        u"endop"_s,
        u"#define "_s,
        u"#include "_s,
        u"#define"_s,
        u"#include\t"_s,
        u"oscil"_s,
        u" out "_s,
        u"a1"_s,
        u"$x;"_s,
        u"\"a\""_s,
        u"0dbfs"_s,
        u"f 1 0 "_s,
        u"i1 0 1"_s,
        u"s\n"_s,
        u"e\n"_s,
        u"sr = "_s,
        u"\\\n"_s,
        u"{{"_s,
        u"}}"_s,
        // Line ends, blanks, and stretches that cross the blocks of a scan.
        u"\r\n"_s,
        u"\r"_s,
        u"\n\n"_s,
        u" \n"_s,
        u"\t\n"_s,
        u"  "_s,
        u"        "_s,
        QString(31, u' '),
        QString(64, u' '),
        QString(15, u'a'),
        QString(40, u'x'),
        u";;"_s,
        u"\n;"_s,
        u"//"_s,
        u"/**/"_s,
        u"/*/"_s,
        // Macros, command lines and files.
        u"$CSOUND$"_s,
        u"$csound2$"_s,
        u"$EDITOR$"_s,
        u"$SEL$"_s,
        u"$CLIP$"_s,
        u"$DOCUMENT$"_s,
        u"$WAVE$"_s,
        u"$ORCHESTRA$"_s,
        u"$SCORE$"_s,
        u"$SFDIR$"_s,
        u"$NAME$"_s,
        u"$SOUNDINPUT$"_s,
        u"$$"_s,
        u"/p "_s,
        u"/r "_s,
        u"/i"_s,
        u"/p"_s,
        u"/r"_s,
        u"x.orc"_s,
        u"x y.sco"_s,
        u"../"_s,
        u"--help"_s,
        u"-o "_s,
        u"\"\""_s,
        u".wav"_s,
        u"fnam"_s,
        // The settings' file.
        u"[Options]"_s,
        u"[Presets]\n"_s,
        u"FontSize="_s,
        u"\\u00"_s,
        u"\\u0041"_s,
        u"\\n"_s,
        u"\\s"_s,
        u"\\\\"_s,
        u"\n["_s,
        u"]\n"_s,
        u"=\n"_s,
        u"True"_s,
        u"1e400"_s,
        u"&H80000008&"_s,
        // Characters.
        QString(QChar(0)),
        u"\u0001"_s,
        u"\u001f"_s,
        u"\u007f"_s,
        u"\u0085"_s,
        u"\u00a0"_s,
        u"\u00b2"_s,
        u"\u00c3\u00a9"_s,
        u"\u00e9"_s,
        u"\u00c9"_s,
        u"\u00d7"_s,
        u"\u00df"_s,
        u"\u00ff"_s,
        u"\u00ff\u00fe"_s,
        u"\u0130"_s,
        u"\u0131"_s,
        u"\u0160"_s,
        u"\u0192"_s,
        u"\u01c5"_s,
        u"\u0301"_s,
        u"\u03a3"_s,
        u"\u0416"_s,
        u"\u0660"_s,
        u"\u1e9e"_s,
        u"\u2028"_s,
        u"\u20ac"_s,
        u"\u212a"_s,
        u"\u2170"_s,
        u"\u4e2d"_s,
        u"\ufeff"_s,
        u"\ufb01"_s,
        u"\ufffd"_s,
        u"\uffff"_s,
        QString::fromUcs4(U"\U0001D11E"),
        QString::fromUcs4(U"\U00010400"),
        QString::fromUcs4(U"\U00010428"),
        QString(QChar(0xD834)),
        QString(QChar(0xDD1E)),
        QString(QChar(0xD801)),
        QString(QChar(0xDC28)),
    };
    static_assert(std::size(pieces) == 128);
    return pieces[byte & 0x7F];
}

/// What the control characters stand for that no text needs; empty for the others.
const QString &LinePiece(quint8 byte)
{
    static const QString pieces[32] = {
        // 0 and 1 are no characters.
        QString(),
        QString(),
        u"instr 1\n"_s,
        u"\nendin\n"_s,
        u"\n lab:"_s,
        u":"_s,
        u"#define A #1#\n"_s,
        u"#define A(x)#"_s,
        u" $A "_s,
        QString(), // tab, line feed and the others between are themselves
        QString(),
        QString(),
        QString(),
        QString(),
        u"$A(1)"_s,
        u"#include \"a.orc\"\n"_s,
        u"f1 0 8 10 1\n"_s,
        u"\nm name\n"_s,
        u"\ns\n"_s,
        u"<a>"_s,
        u"</a>"_s,
        u"<a b>"_s,
        u"</a b>"_s,
        u"\n; c\n"_s,
        u"/* c */"_s,
    };
    return pieces[byte];
}

} // namespace

QString Input::Text()
{
    constexpr qsizetype longest = 400; // the loops that define the results take the square of it

    QString text;
    text.reserve(2 * (m_end - m_at));
    while (m_at != m_end) {
        const quint8 byte = *m_at++;
        if (byte == 0)
            break;
        if (byte == 1) {
            const quint8 high = Byte();
            text += QChar(high << 8 | Byte());
        } else if (byte < 0x20 && !LinePiece(byte).isEmpty()) {
            text += LinePiece(byte);
        } else if (byte < 0x80) {
            text += QChar(char16_t(byte));
        } else {
            text += Piece(byte);
        }
    }
    text.truncate(longest);
    return text;
}

QString WithoutHalves(const QString &text)
{
    if (text.isValidUtf16())
        return text;
    QString whole;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            whole += QStringView(text).sliced(i, 2);
            ++i;
        } else if (!text[i].isSurrogate()) {
            whole += text[i];
        }
    }
    return whole;
}

} // namespace zelvane::fuzz
