// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/codemap.h"

#include "language/charblocks.h"
#include "language/findmark.h"
#include "language/opcodelist.h"
#include "platform/stylerun.h"

#include <QString>

namespace zelvane
{

namespace
{

/// Reads the sections of a text, one behind the other.
class Reader
{
public:
    Reader(QStringView text, std::vector<CodeStretch> &stretches) : m_text(text), m_stretches(stretches)
    {
        FindLastMarks();
    }

    void Read(const ScannedSection &section)
    {
        m_end = section.end;
        m_noneCloses = m_ended = false;
        // A comment may run on behind the section that it began in.
        qsizetype at = std::max(section.start, ReadSoFar());
        if (section.mode == ScanMode::Score)
            Scan(at, m_end);
        else
            ReadOrchestra(at);
    }

private:
    qsizetype ReadSoFar() const { return m_stretches.empty() ? 0 : m_stretches.back().end; }

    /// Where the scan goes on behind the last stretch: the slash that closes a comment may open the next one.
    qsizetype BehindStretch() const
    {
        const bool isComment = m_stretches.back().part == CodePart::BlockComment;
        return m_stretches.back().end - (isComment ? 1 : 0);
    }

    void FindLastMarks()
    {
        const char16_t *begin = m_text.utf16();
        const char16_t *end = begin + m_text.size();
        for (const char16_t *at = begin; (at = Find(at, end, u'/')) != end; ++at) {
            if (at > begin && at[-1] == u'*')
                m_lastClosing = at - 1 - begin;
            if (at + 1 < end && at[1] == u'*')
                m_lastOpening = at - begin;
        }
    }

    void ReadOrchestra(qsizetype at)
    {
        while (at < m_end) {
            // No token begins at the last character that is scanned: that is the brace.
            const qsizetype brace = FindMark(m_text.first(m_end), u'{', u'{', at);
            if (brace < 0) {
                Scan(at, m_end);
                return;
            }
            Scan(at, brace + 1);
            if (m_ended)
                return;
            at = ReadSoFar() > brace ? BehindStretch() : BehindBraces(brace);
        }
    }

    /// Scans for tokens that begin before the last character; a string goes on to its end all the same.
    void Scan(qsizetype start, qsizetype last)
    {
        if (start >= last)
            return;
        qsizetype gap = start;
        for (const StyleRun &run : ScanRange(m_text, start, last, ScanMode::Score, m_noOpcodes).runs) {
            qsizetype end = run.start + run.length;
            LookForOpenComment(gap, run.start);
            if (run.style == StyleClass::Literal)
                Put(run.start, end = EndOfString(end, last), CodePart::Quoted);
            else if (run.style == StyleClass::Comment)
                Put(run.start, end,
                    m_text[run.start] == u';' ? CodePart::LineComment : CodePart::BlockComment);
            // What ends a name is not looked at.
            gap = run.style == StyleClass::Comment ? BehindStretch()
                  : run.style == StyleClass::Macro ? end + 1
                                                   : end;
        }
        LookForOpenComment(gap, last);
    }

    /// A comment that nothing closes ends the scan of a section: what is behind it is not known.
    void LookForOpenComment(qsizetype start, qsizetype end)
    {
        if (start < end && end > m_lastClosing && start <= m_lastOpening)
            m_ended = m_ended || FindMark(m_text.first(end), u'/', u'*', start) >= 0;
    }

    qsizetype EndOfString(qsizetype end, qsizetype last) const
    {
        if (end < last || m_text[end - 1] == u'"')
            return end;
        const qsizetype quote = m_text.first(m_end).indexOf(u'"', end);
        return quote < 0 ? m_end : quote + 1;
    }

    /// Where the scan goes on behind two opening braces. Without a partner they are code.
    qsizetype BehindBraces(qsizetype brace)
    {
        const qsizetype closing = m_noneCloses ? -1 : FindMark(m_text.first(m_end), u'}', u'}', brace + 2);
        if (closing < 0) {
            m_noneCloses = true;
            return brace + 2;
        }
        Put(brace, closing + 2, CodePart::Braced);
        return closing + 2;
    }

    void Put(qsizetype start, qsizetype end, CodePart part)
    {
        m_stretches.push_back({qint32(std::max(start, ReadSoFar())), qint32(end), part});
    }

    QStringView m_text;
    std::vector<CodeStretch> &m_stretches;
    qsizetype m_end = 0;
    qsizetype m_lastClosing = -1; ///< the last mark that closes a comment, and that opens one
    qsizetype m_lastOpening = -1;
    bool m_ended = false;
    bool m_noneCloses = false; ///< there is no closing brace in the rest of the section
    OpcodeList m_noOpcodes;
};

std::vector<ScannedSection> SectionsOf(QStringView text, FileKind kind)
{
    switch (kind) {
    case FileKind::Orchestra:
        return {{0, text.size(), ScanMode::Orchestra}};
    case FileKind::Score:
        return {{0, text.size(), ScanMode::Score}};
    case FileKind::Unified: {
        std::vector<ScannedSection> sections = FindScannedSections(text);
        if (sections.size() == 2) {
            if (sections[1].start < sections[0].start)
                std::swap(sections[0], sections[1]);
            // One that begins in the other counts from the other's end on.
            sections[1].start = std::max(sections[1].start, sections[0].end);
            sections[1].end = std::max(sections[1].start, sections[1].end);
        }
        return sections;
    }
    default:
        return {};
    }
}

std::vector<CodeStretch> ReadSections(QStringView text, std::vector<ScannedSection> sections)
{
    std::vector<CodeStretch> stretches;
    if (sections.empty())
        return stretches;
    // A line comment needs a line end behind it, and no token begins at a section's last character.
    const bool isWhole = sections.back().end == text.size();
    const QString ended = isWhole || !text.endsWith(u'\n') ? text.toString() + u'\n' : QString();
    if (isWhole)
        ++sections.back().end;
    Reader reader(ended.isEmpty() ? text : QStringView(ended), stretches);
    for (const ScannedSection &section : sections) {
        if (section.start < section.end)
            reader.Read(section);
    }
    if (!stretches.empty())
        stretches.back().end = std::min(stretches.back().end, qint32(text.size()));
    return stretches;
}

} // namespace

CodeMap::CodeMap(QStringView text, FileKind kind)
    : m_sections(SectionsOf(text, kind)), m_stretches(ReadSections(text, m_sections))
{
}

CodeMap::CodeMap(QStringView text, ScanMode mode) : m_sections({{0, text.size(), mode}})
{
    if (mode == ScanMode::Orchestra || mode == ScanMode::Score)
        m_stretches = ReadSections(text, m_sections);
}

std::size_t CodeMap::FirstEndingBehind(qsizetype offset) const
{
    const auto found =
        std::upper_bound(m_stretches.begin(), m_stretches.end(), offset,
                         [](qsizetype at, const CodeStretch &stretch) { return at < stretch.end; });
    return std::size_t(found - m_stretches.begin());
}

CodePart CodeMap::At(qsizetype offset) const
{
    const std::size_t place = FirstEndingBehind(offset);
    return place < m_stretches.size() && m_stretches[place].start <= offset ? m_stretches[place].part
                                                                            : CodePart::Code;
}

} // namespace zelvane
