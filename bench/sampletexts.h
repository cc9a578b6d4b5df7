// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <random>

/// Texts of a wanted size that look like a composer's: the same at every run, ASCII only, so that characters
/// and file bytes are the same number.
namespace zelvane::bench
{

class SampleWriter
{
public:
    explicit SampleWriter(qsizetype size) : m_size(size) { m_text.reserve(size + 4096); }

    QString Orchestra()
    {
        m_text += QStringLiteral("sr = 44100\nksmps = 32\nnchnls = 2\n0dbfs = 1\n\n#define PORT #0.05#\n\n");
        while (m_text.size() < m_size)
            Instrument();
        return Done();
    }

    QString Score()
    {
        while (m_text.size() < m_size)
            Section();
        return Done();
    }

    /// A unified document, two thirds orchestra; its head and its tail are over the size.
    QString Unified()
    {
        const qsizetype whole = m_size;
        m_text += QStringLiteral(
            "<CsoundSynthesizer>\n<CsOptions>\n-odac -d ; real time\n</CsOptions>\n<CsInstruments>\n");
        m_size = whole / 3 * 2;
        while (m_text.size() < m_size)
            Instrument();
        m_text += QStringLiteral("</CsInstruments>\n<CsScore>\n");
        while (m_text.size() < whole)
            Section();
        m_text += QStringLiteral("</CsScore>\n</CsoundSynthesizer>\n");
        return std::move(m_text);
    }

private:
    int Below(int bound) { return int(m_random() % unsigned(bound)); }
    QString Number() { return QString::number(Below(20000) / 100.0); }

    void Instrument()
    {
        static const char16_t *const lines[] = {
            u"  kenv linsegr 0, .05, 1, %1, .8, .3, 0\n",
            u"  aosc oscili kenv * p4, cpspch(p5) * %1, 1\n",
            u"  a1 vco2 iamp*0.3, icps, 0 ; a sawtooth, not too loud\n",
            u"  afilt moogladder a1+aosc, %1 + kenv * 2000, .3\n",
            u"  kcut  portk  gkcut, $PORT\n",
            u"\tif (kcount > %1 && kgate == 1) then\n\t\tkgoto next\n\tendif\n",
            u"  ; the next line is the heart of the sound: two partials that beat against each other "
            u"slowly\n",
            u"  printks \"cutoff is now %f\\n\", .5, kcut\n",
            u"  kres = (kcut<%1 ? .1 : .7)\n",
            u"ilen\t=\tp3-.1\t\t;leave room for the release\n",
            u"  aL, aR  pan2 afilt, .5+.4*klfo\n",
            u"  garev += afilt * .2\n",
            u"/* kept for the second version:\n   a2 delay a1, %1\n   a3 delay a2, .01 */\n",
            u"  k1 chnget \"brightness\"\n",
            u"  asig reson arnd, %1, 50, 1\n",
            u"  outs aL * .8, aR * .8\n",
        };
        m_text +=
            QStringLiteral("instr %1 ;------------------------------------------\n").arg(Below(200) + 1);
        m_text += QStringLiteral("  icps = cpspch(p5)\n  iamp = ampdb(p4)\n");
        for (int count = 6 + Below(14); count > 0; --count)
            m_text += QString::fromUtf16(lines[Below(int(std::size(lines)))])
                          .replace(QStringLiteral("%1"), Number());
        m_text += QStringLiteral("endin\n\n");
    }

    void Section()
    {
        m_text += QStringLiteral("f %1 0 16384 10 1 .5 .3 .25 .2 ; a soft tone\n").arg(Below(90) + 1);
        m_text += QStringLiteral("t 0 %1\n").arg(60 + Below(90));
        for (int count = 20 + Below(60); count > 0; --count) {
            m_text += QStringLiteral("i%1 %2 %3").arg(Below(200) + 1).arg(Number(), Number());
            for (int field = 1 + Below(6); field > 0; --field)
                m_text += u'\t' + Number();
            m_text += Below(8) == 0 ? QStringLiteral(" ; accent\n") : QStringLiteral("\n");
        }
        if (Below(4) == 0)
            m_text += QStringLiteral("i 99 0 1 \"%1.wav\"\n#include \"more.sco\"\n").arg(Below(100));
        m_text += QStringLiteral("s\n");
    }

    QString Done()
    {
        m_text.truncate(m_size - 1);
        m_text += u'\n';
        return std::move(m_text);
    }

    qsizetype m_size;
    QString m_text;
    std::mt19937 m_random{20010307};
};

inline QString OrchestraText(qsizetype size)
{
    return SampleWriter(size).Orchestra();
}
inline QString ScoreText(qsizetype size)
{
    return SampleWriter(size).Score();
}
inline QString UnifiedText(qsizetype size)
{
    return SampleWriter(size).Unified();
}

} // namespace zelvane::bench
